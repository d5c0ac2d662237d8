// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <any>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_manager_sounds.h"
#include "sound/notifications.h"
#include "sound/sound_manager.h"
#include "support/fake_defaults_store.h"
#include "support/fake_sound_service.h"
#include "support/journal.h"
#include "support/virtual_main_queue.h"

namespace chimewerk {

/// Records each setting of the file manager's sounds.
class FakeFileManagerSounds final : public FileManagerSounds, public Noting {
public:
    std::vector<bool> calls;

    void setFinderTrashSoundEnabled(bool enabled) override {
        note(enabled ? "finder+" : "finder-");
        calls.push_back(enabled);
    }
};

/// A sound library with fake dependencies that can be restarted from its stored settings.
class SoundLibrary {
public:
    SoundLibrary() : SoundLibrary(nullptr) {}
    /// Uses this store instead of a fake one.
    explicit SoundLibrary(DefaultsStore* store) : store_(store == nullptr ? &defaults : store) {
        restart();
    }

    /// Restarts the library as if the program were restarted.
    void restart() { manager_ = std::make_unique<SoundManager>("/res", dependencies()); }
    SoundManager& operator*() { return *manager_; }
    SoundManager* operator->() { return manager_.get(); }
    SoundEvent& event(std::string_view id) { return *manager_->findEvent(id); }

    /// Returns the objects of `themeDidChange` since the last call: raw values, or "none" if there
    /// was no object.
    std::vector<std::string> announced() {
        queue.runPosted();
        return std::exchange(announced_, {});
    }

    VirtualMainQueue queue;
    NotificationCenter notifications;
    FakeSoundService sounds;
    FakeDefaultsStore defaults;
    FakeFileManagerSounds fileManager;
    /// The ids for new custom themes, used in rotation.
    std::vector<std::string> themeIds = {"A", "B", "C"};

private:
    SoundManager::Dependencies dependencies() {
        return {queue, notifications, sounds, sounds, *store_, fileManager, [this] {
                    return themeIds.at(themesMade_++ % themeIds.size());
                }};
    }

    DefaultsStore* store_;
    std::size_t themesMade_ = 0;
    std::vector<std::string> announced_;
    NotificationCenter::Subscription listening_ =
        notifications.observe(themeDidChange, [this](const Notification& notification) {
            announced_.push_back(
                notification.object.has_value()
                    ? std::string(rawValue(std::any_cast<SoundTheme>(notification.object)))
                    : "none");
        });
    std::unique_ptr<SoundManager> manager_;
};

}  // namespace chimewerk
