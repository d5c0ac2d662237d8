#pragma once

#include <pulse/pulseaudio.h>

namespace chimewerk {

/// A request to the sound server under way; its callback does not come once this is gone or holds another.
/// Used under the lock of the connection, its end included.
class PulseOperation {
public:
    PulseOperation() = default;
    PulseOperation(const PulseOperation&) = delete;
    PulseOperation& operator=(const PulseOperation&) = delete;
    ~PulseOperation() { reset(nullptr); }

    /// Takes over the operation; false when there is none, because the request could not be made.
    bool reset(pa_operation* operation) {
        if (operation_ != nullptr) {
            pa_operation_cancel(operation_);
            pa_operation_unref(operation_);
        }
        operation_ = operation;
        return operation_ != nullptr;
    }

private:
    pa_operation* operation_ = nullptr;
};

}  // namespace chimewerk
