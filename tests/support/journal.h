// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <utility>

namespace chimewerk {

/// Records the calls that a test makes on its fakes, in order.
class Journal {
public:
    void note(const char* what) { text_ += text_.empty() ? what : std::string(" ") + what; }
    /// Returns all entries and clears them.
    std::string take() { return std::exchange(text_, {}); }

private:
    std::string text_;
};

/// Base class of fakes that can keep a journal.
class Noting {
public:
    Journal* journal = nullptr;

protected:
    void note(const char* what) const {
        if (journal != nullptr) {
            journal->note(what);
        }
    }
};

}  // namespace chimewerk
