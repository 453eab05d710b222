// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>

#undef NDEBUG // what a target asserts is checked in every kind of build
#include <cassert>

/// Each target defines this: it asserts all that must hold for one input. Includes this once.
void check(const QByteArray& input);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    check(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    return 0;
}
