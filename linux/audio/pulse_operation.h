// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <utility>

#include "linux/audio/pulse_handles.h"

namespace chimewerk {

/// A pending request to the audio server. Its callback is not called any more once this object is
/// destroyed or holds another request. Used, and destroyed, under the connection's lock.
class PulseOperation {
public:
    PulseOperation() = default;
    PulseOperation(const PulseOperation&) = delete;
    PulseOperation& operator=(const PulseOperation&) = delete;
    ~PulseOperation() { reset(nullptr); }

    /// Takes ownership of `operation` and cancels the previous one. Returns false if `operation` is
    /// null, because the request could not be made.
    bool reset(pa_operation* operation) {
        if (operation_) {
            pa_operation_cancel(operation_.get());
        }
        operation_.reset(operation);
        return operation_ != nullptr;
    }

private:
    PulseHandle<pa_operation> operation_;
};

/// A query of the server's state, in one or more consecutive requests, that is repeated when the
/// state may have changed. Only one runs at a time: any number of changes during it lead to one
/// repetition. Used under the connection's lock.
class PulseQuery {
public:
    /// `start` makes the first request.
    explicit PulseQuery(std::function<void()> start) : start_(std::move(start)) {}

    /// Starts the query, or schedules a repetition if it is running.
    void refresh() {
        if (std::exchange(pending_, true)) {
            refreshAgain_ = true;
        } else {
            start_();
        }
    }
    /// Takes ownership of the query's next request. Returns false if it is null because it could
    /// not be made.
    bool request(pa_operation* operation) { return operation_.reset(operation); }
    /// Ends the query. Call this when the last request has been answered or the next one could not
    /// be made.
    void finish() {
        pending_ = false;
        if (std::exchange(refreshAgain_, false)) {
            refresh();
        }
    }
    /// Ends the query without an answer.
    void cancel() {
        operation_.reset(nullptr);
        pending_ = refreshAgain_ = false;
    }

private:
    const std::function<void()> start_;
    PulseOperation operation_;
    bool pending_ = false;
    bool refreshAgain_ = false;
};

}  // namespace chimewerk
