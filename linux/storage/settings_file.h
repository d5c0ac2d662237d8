#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace chimewerk {

/// A text file that always holds one whole text, whatever happens while it is written. It may be a symbolic
/// link, which it stays; the file that the link names is then the one that is meant. One thread at a time.
class SettingsFile {
public:
    enum class Finding {
        text,
        /// There is no file.
        absent,
        /// Something is there that is no readable file of a sensible size.
        unreadable,
    };
    struct Contents {
        Finding finding;
        std::string text;
    };

    /// `path` is absolute. The empty path is a file that is never there and that takes all that is written to
    /// it.
    explicit SettingsFile(std::string path) : path_(std::move(path)) {}

    /// What the file holds. Never waits for anything but the disk.
    Contents read() const;

    /// Moves what is there out of the way, to a free name beside it. When that fails now, `replace()` tries
    /// it again before it writes: what has been set aside once is never overwritten.
    void setAside() { inTheWay_ = !moveAside(); }

    /// A copy of what is there now is to stay beside it when it is replaced the next time.
    void copyAsideFirst() { copyFirst_ = true; }

    /// Makes `text` the file's contents and the disk's, folders included, and returns when it is there. On
    /// failure the file is as it was. Whoever reads meanwhile, and whoever starts after a crash, finds the
    /// old text or the new one. The first call also removes what crashes have left of unfinished writes a
    /// minute ago or longer.
    bool replace(std::string_view text);

private:
    bool moveAside() const;
    bool copyAside() const;
    void removeLeftovers() const;
    bool takePlace(const std::string& temporary, const std::string& target) const;

    const std::string path_;
    /// What is there is to be set aside before anything is written.
    bool inTheWay_ = false;
    bool copyFirst_ = false;
    /// The leftovers have been removed.
    bool swept_ = false;
};

}  // namespace chimewerk
