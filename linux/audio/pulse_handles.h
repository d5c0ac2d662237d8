// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <pulse/pulseaudio.h>

#include <memory>

namespace chimewerk {

/// Releases one reference to an object of libpulse, or frees one that has no references.
struct PulseDeleter {
    void operator()(pa_threaded_mainloop* loop) const { pa_threaded_mainloop_free(loop); }
    void operator()(pa_context* context) const { pa_context_unref(context); }
    void operator()(pa_stream* stream) const { pa_stream_unref(stream); }
    void operator()(pa_operation* operation) const { pa_operation_unref(operation); }
    void operator()(pa_proplist* properties) const { pa_proplist_free(properties); }
};

/// Owns an object of libpulse, or is null. What runs for the object is stopped before its
/// handle goes: a context or a stream is disconnected, an operation cancelled if its callback
/// must not come.
template <typename Object>
using PulseHandle = std::unique_ptr<Object, PulseDeleter>;

}  // namespace chimewerk
