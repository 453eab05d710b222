#pragma once

#include <QString>

namespace Common {

/// A random name for this computer and account, without braces. The first call makes it and keeps
/// it in the application's settings store under "SLog/ComputerId", in braces; where the store
/// cannot be written, that is logged and each call makes another. Any thread.
QString computerId();

} // namespace Common
