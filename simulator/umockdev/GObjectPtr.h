// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <glib-object.h>
#include <memory>
#include <stdexcept>
#include <string>

namespace VirtualUnit {

struct GObjectUnref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};

/// Owns one reference of a GObject.
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

/// Throws std::runtime_error, with @p what and the error's text, unless @p ok. Frees @p error.
inline void throwUnless(gboolean ok, const std::string& what, GError* error)
{
    if (ok != FALSE)
        return;
    const std::string reason = error != nullptr ? error->message : "no reason given";
    g_clear_error(&error);
    throw std::runtime_error(what + ": " + reason);
}

} // namespace VirtualUnit
