#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <utility>

#include "monitors/trash_monitor.h"
#include "support/journal.h"

namespace chimewerk {

/// A trash of numbers. Counts wait until the test answers them, unless it lets them answer by themselves.
class FakeTrashSource final : public TrashSource, public Noting {
public:
    double modified = 1000.0;
    std::int64_t items = 0;
    /// Whether a count answers at once with `items`.
    bool countsAtOnce = true;

    double modificationTime() const override {
        note("trash");
        return modified;
    }
    void countItems(CountCompletion completion) override {
        ++countsBegun;
        if (countsAtOnce) {
            completion(items);
        } else {
            waiting_.push_back(std::move(completion));
        }
    }

    int countsBegun = 0;

    /// Puts this many items in (or takes them out) and touches the folder.
    void change(std::int64_t by) {
        items += by;
        modified += 1.0;
    }
    /// Answers the oldest waiting count.
    void answer(std::optional<std::int64_t> count) {
        const CountCompletion completion = std::move(waiting_.front());
        waiting_.pop_front();
        completion(count);
    }
    std::size_t waiting() const { return waiting_.size(); }

private:
    std::deque<CountCompletion> waiting_;
};

}  // namespace chimewerk
