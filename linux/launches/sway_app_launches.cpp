// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/sway_app_launches.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "linux/base/local_socket.h"

namespace chimewerk {

namespace {

using Json = nlohmann::json;
using Role = FirstWindows::Role;

/// Precedes each message; its length and type follow, in the byte order of the machine.
constexpr std::string_view kMagic = "i3-ipc";
constexpr std::size_t kHeaderSize = kMagic.size() + 2 * sizeof(std::uint32_t);
/// A tree of thousands of windows fits.
constexpr std::uint32_t kMostBytes = 64U * 1024 * 1024;

std::string message(std::uint32_t type, std::string_view content) {
    const std::array<std::uint32_t, 2> lengthAndType{static_cast<std::uint32_t>(content.size()),
                                                     type};
    std::string bytes(kMagic);
    bytes.append(reinterpret_cast<const char*>(lengthAndType.data()), sizeof lengthAndType);
    return bytes.append(content);
}

/// Returns the member if it has the type of `otherwise`.
template <typename Value>
Value valueOf(const Json& object, const char* name, Value otherwise) {
    const auto found = object.find(name);
    const bool isRight =
        found != object.end() &&
        (std::is_integral_v<Value> ? found->is_number_integer() : found->is_string());
    return isRight ? found->get<Value>() : otherwise;
}

FirstWindows::Window idOf(const Json& node) {
    return valueOf<FirstWindows::Window>(node, "id", 0);
}

/// Windows of X11 programs have properties, and no application ID.
Toplevel toplevelOf(const Json& node) {
    Toplevel toplevel{.process = valueOf<pid_t>(node, "pid", 0),
                      .application = valueOf<std::string>(node, "app_id", "")};
    const auto properties = node.find("window_properties");
    if (properties != node.end() && properties->is_object()) {
        toplevel.application = valueOf<std::string>(*properties, "class", "");
        const auto parent = properties->find("transient_for");
        if (parent != properties->end() && !parent->is_null()) {
            toplevel.role = Role::secondary;
        }
    }
    return toplevel;
}

/// Adds the windows in a tree of outputs, workspaces and containers.
void collect(const Json& tree, ToplevelLaunches::Toplevels& toplevels) {
    std::vector<const Json*> left{&tree};
    while (!left.empty()) {
        const Json& node = *left.back();
        left.pop_back();
        if (!node.is_object()) {
            continue;
        }
        if (Toplevel toplevel = toplevelOf(node); toplevel.process != 0) {
            toplevels.emplace(idOf(node), std::move(toplevel));
        }
        for (const char* const children : {"nodes", "floating_nodes"}) {
            if (const auto list = node.find(children); list != node.end()) {
                for (const Json& child : *list) {
                    left.push_back(&child);
                }
            }
        }
    }
}

}  // namespace

SwayAppLaunches::SwayAppLaunches(EpollMainQueue& queue, std::string socketPath,
                                 ToplevelLaunches::OnFirstWindow onFirstWindow,
                                 Seconds retryInterval)
    : queue_(queue),
      socketPath_(std::move(socketPath)),
      toplevels_(std::move(onFirstWindow)),
      retry_(queue, retryInterval, [this] { open(); }) {
    open();
}

void SwayAppLaunches::open() {
    if (!connect()) {
        close();
    }
}

/// Subscribes before it asks for the tree, so that no window is missed. One in both is there
/// already.
bool SwayAppLaunches::connect() {
    socket_ = connectLocally(socketPath_);
    if (!socket_) {
        return false;
    }
    const std::string requests =
        message(static_cast<std::uint32_t>(Message::subscribe), R"(["window"])") +
        message(static_cast<std::uint32_t>(Message::tree), "");
    watch_ = queue_.watch(socket_.get(), [this] { receive(); });
    return watch_ && send(socket_.get(), requests.data(), requests.size(), MSG_NOSIGNAL) ==
                         static_cast<ssize_t>(requests.size());
}

void SwayAppLaunches::close() {
    watch_ = nullptr;
    socket_ = FileDescriptor();
    received_.clear();
    retry_.schedule();
}

void SwayAppLaunches::receive() {
    std::array<char, 65536> bytes{};
    const ssize_t size = recv(socket_.get(), bytes.data(), bytes.size(), 0);
    if (size < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    if (size > 0) {
        received_.append(bytes.data(), static_cast<std::size_t>(size));
    }
    if (size <= 0 || !handleReceived()) {
        close();
    }
}

/// Handles the messages that are complete. Returns false for what sway does not send.
bool SwayAppLaunches::handleReceived() {
    std::size_t done = 0;
    while (received_.size() - done >= kHeaderSize) {
        std::array<std::uint32_t, 2> lengthAndType{};
        std::memcpy(lengthAndType.data(), received_.data() + done + kMagic.size(),
                    sizeof lengthAndType);
        const auto [length, type] = lengthAndType;
        if (received_.compare(done, kMagic.size(), kMagic) != 0 || length > kMostBytes) {
            return false;
        }
        if (received_.size() - done - kHeaderSize < length) {
            break;
        }
        handle(static_cast<Message>(type), received_.substr(done + kHeaderSize, length));
        done += kHeaderSize + length;
    }
    received_.erase(0, done);
    return true;
}

void SwayAppLaunches::handle(Message type, const std::string& json) {
    const Json content = Json::parse(json, nullptr, false);
    if (!content.is_object()) {
        return;
    }
    if (type == Message::tree) {
        ToplevelLaunches::Toplevels open;
        collect(content, open);
        toplevels_.begin(peerOf(socket_.get()), std::move(open));
        return;
    }
    const auto window = content.find("container");
    if (type != Message::window || window == content.end() || !window->is_object()) {
        return;
    }
    const auto change = valueOf<std::string>(content, "change", "");
    if (change == "new") {
        toplevels_.add(idOf(*window), toplevelOf(*window));
    } else if (change == "close") {
        toplevels_.remove(idOf(*window));
    }
}

}  // namespace chimewerk
