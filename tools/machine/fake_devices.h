// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <umockdev.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace chimewerk {

/// A set of fake devices, initially empty. In a program that runs in umockdev-wrapper it replaces
/// sysfs, /dev and udev's events.
class FakeDevices {
public:
    using Values = std::map<std::string, std::string>;

    FakeDevices() : bed_(umockdev_testbed_new()) {}
    FakeDevices(const FakeDevices&) = delete;
    FakeDevices& operator=(const FakeDevices&) = delete;
    ~FakeDevices() { g_object_unref(bed_); }

    /// Returns whether this program sees the fake devices, because it runs in umockdev-wrapper.
    /// Otherwise it sees the machine's own.
    static bool works() { return umockdev_in_mock_environment() != 0; }

    /// Adds a device, announces it and returns its folder. `parent` is another device's folder,
    /// or empty.
    std::string add(const std::string& subsystem, const std::string& name,
                    const std::string& parent = {}, const Values& attributes = {},
                    const Values& properties = {}) {
        std::vector<std::string> texts[2] = {flatten(attributes), flatten(properties)};
        return taken(umockdev_testbed_add_devicev(
            bed_, subsystem.c_str(), name.c_str(), parent.empty() ? nullptr : parent.c_str(),
            pointers(texts[0]).data(), pointers(texts[1]).data()));
    }
    void set(const std::string& device, const std::string& attribute, const std::string& value) {
        umockdev_testbed_set_attribute(bed_, device.c_str(), attribute.c_str(), value.c_str());
    }
    void set(const std::string& device, const std::string& attribute,
             std::vector<std::uint8_t> value) {
        umockdev_testbed_set_attribute_binary(bed_, device.c_str(), attribute.c_str(), value.data(),
                                              static_cast<int>(value.size()));
    }
    /// Makes a symbolic link of this name in the device's folder.
    void link(const std::string& device, const std::string& name, const std::string& target) {
        umockdev_testbed_set_attribute_link(bed_, device.c_str(), name.c_str(), target.c_str());
    }
    void setProperty(const std::string& device, const std::string& property,
                     const std::string& value) {
        umockdev_testbed_set_property(bed_, device.c_str(), property.c_str(), value.c_str());
    }
    void announce(const std::string& device, const std::string& action) {
        umockdev_testbed_uevent(bed_, device.c_str(), action.c_str());
    }
    /// Removes the device. Newer versions of umockdev (0.19) also announce that, older ones (0.17) do not.
    void remove(const std::string& device) { umockdev_testbed_remove_device(bed_, device.c_str()); }

    /// Returns the real path of a file of this name in the fake /dev.
    std::string nodePath(const std::string& name) {
        std::string path = taken(umockdev_testbed_get_root_dir(bed_)) + "/dev/" + name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        return path;
    }

private:
    static std::vector<std::string> flatten(const Values& values) {
        std::vector<std::string> flat;
        flat.reserve(2 * values.size());
        for (const auto& [name, value] : values) {
            flat.push_back(name);
            flat.push_back(value);
        }
        return flat;
    }
    static std::vector<char*> pointers(std::vector<std::string>& texts) {
        std::vector<char*> all;
        all.reserve(texts.size() + 1);
        for (std::string& text : texts) {
            all.push_back(text.data());
        }
        all.push_back(nullptr);
        return all;
    }
    static std::string taken(char* text) {
        const std::unique_ptr<char, decltype(&g_free)> owned(text, g_free);
        return text == nullptr ? "" : text;
    }

    UMockdevTestbed* const bed_;
};

}  // namespace chimewerk
