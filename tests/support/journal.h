#pragma once

#include <string>
#include <utility>

namespace chimewerk {

/// What the fakes of a test note of their use, in order.
class Journal {
public:
    void note(const char* what) { text_ += text_.empty() ? what : std::string(" ") + what; }
    /// All since the last look.
    std::string take() { return std::exchange(text_, {}); }

private:
    std::string text_;
};

/// What a fake that can keep a journal derives from.
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
