#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace chimewerk {

/// Tells from the list of all windows, looked at whenever it changes, which processes have opened their first
/// one.
class FirstWindows {
public:
    using Window = std::uint32_t;
    /// A process by whatever names it for as long as it lives.
    using Owner = std::uint64_t;

    struct Facts {
        /// None for a window that has gone already.
        std::optional<Owner> owner;
        /// Whether this is a window to work in, and not a panel or the desktop itself.
        bool isForUser = true;
    };

    struct Dependencies {
        /// The facts about these windows, in their order.
        std::function<std::vector<Facts>(const std::vector<Window>&)> factsAbout;
        /// Whether a process without windows still lives.
        std::function<bool(Owner)> lives;
        /// Called for each process that has opened its first window.
        std::function<void(Owner)> onFirstWindow;
    };

    explicit FirstWindows(Dependencies dependencies);

    /// The owners of these windows run already; all earlier knowledge is dropped.
    void begin(const std::vector<Window>& list);

    /// This is the list now. A process that closes all its windows stays known for as long as it lives.
    void update(const std::vector<Window>& list);

    /// How many processes are known.
    std::size_t known() const { return windowsOf_.size(); }

private:
    std::vector<Owner> takeIn(const std::vector<Window>& list);
    void letGo(const std::vector<Window>& list);

    const Dependencies deps_;
    std::map<Window, Owner> ownerOf_;
    /// The number of windows of each known process, which may be none.
    std::map<Owner, int> windowsOf_;
};

}  // namespace chimewerk
