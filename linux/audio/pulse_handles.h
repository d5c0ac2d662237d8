// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <pulse/pulseaudio.h>

#include <memory>

namespace chimewerk {

/// Releases one reference to a libpulse object, or frees an object without reference counting.
struct PulseDeleter {
    void operator()(pa_threaded_mainloop* loop) const { pa_threaded_mainloop_free(loop); }
    void operator()(pa_context* context) const { pa_context_unref(context); }
    void operator()(pa_stream* stream) const { pa_stream_unref(stream); }
    void operator()(pa_operation* operation) const { pa_operation_unref(operation); }
    void operator()(pa_proplist* properties) const { pa_proplist_free(properties); }
};

/// Owns a libpulse object, or is null. Stop its activity before the handle is destroyed: disconnect
/// a context or a stream, cancel an operation whose callback must not be called.
template <typename Object>
using PulseHandle = std::unique_ptr<Object, PulseDeleter>;

}  // namespace chimewerk
