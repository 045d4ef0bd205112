#pragma once

#include <gst/gst.h>

#include <memory>

namespace netcommon {

struct GstUnref {
    void operator()(gpointer object) const { gst_object_unref(object); }
};
struct GstCapsUnref {
    void operator()(GstCaps *caps) const { gst_caps_unref(caps); }
};

// Owns one reference to a GstObject.
template <typename T>
using GstOwner = std::unique_ptr<T, GstUnref>;
using GstCapsOwner = std::unique_ptr<GstCaps, GstCapsUnref>;

} // namespace netcommon
