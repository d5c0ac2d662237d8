#pragma once

#include <functional>
#include <utility>

#include "linux/audio/pulse_operation.h"

namespace chimewerk {

/// A question to the sound server that is asked anew at each news, in one or more steps. It is asked once at
/// a time: whatever news comes before the answer leads to one more asking. Used under the lock of the
/// connection.
class PulseQuery {
public:
    /// `begin` takes the first step.
    explicit PulseQuery(std::function<void()> begin) : begin_(std::move(begin)) {}

    void ask() {
        if (std::exchange(asking_, true)) {
            askAgain_ = true;
        } else {
            begin_();
        }
    }
    /// The request that is the next step; false when it could not be made.
    bool step(pa_operation* operation) { return operation_.reset(operation); }
    /// The last step has been answered, or could not be taken.
    void done() {
        asking_ = false;
        if (std::exchange(askAgain_, false)) {
            ask();
        }
    }
    /// No answer is wanted any more.
    void cancel() {
        operation_.reset(nullptr);
        asking_ = askAgain_ = false;
    }

private:
    const std::function<void()> begin_;
    PulseOperation operation_;
    bool asking_ = false;
    bool askAgain_ = false;
};

}  // namespace chimewerk
