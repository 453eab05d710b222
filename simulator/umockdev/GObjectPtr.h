#pragma once

#include <glib-object.h>
#include <memory>

namespace VirtualUnit {

struct GObjectUnref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};

/// Owns one reference of a GObject.
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

struct GErrorFree
{
    void operator()(GError* error) const { g_error_free(error); }
};
using GErrorPtr = std::unique_ptr<GError, GErrorFree>;

/// The error's text, for a call that may fail without one.
inline const char* messageOf(const GError* error)
{
    return error != nullptr ? error->message : "no reason given";
}

} // namespace VirtualUnit
