// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Plays events: checks the switch, counts, finds the file, starts the sound and releases it later.
#include <algorithm>
#include <utility>

#include "sound/bundled_sounds.h"
#include "sound/notifications.h"
#include "sound/sound_manager.h"

namespace chimewerk {

namespace {

constexpr float kPreviewVolume = 0.6F;
/// A played sound is kept for its duration, or for the shortest hold if that is longer, plus
/// the margin.
constexpr Seconds kShortestHold{0.2};
constexpr Seconds kHoldMargin{0.1};

/// Returns the name of the sound of the key with this virtual key code.
std::string_view keySoundName(std::int64_t keyCode) {
    constexpr std::int64_t kSpace = 49;
    constexpr std::int64_t kReturn = 36;
    constexpr std::int64_t kKeypadEnter = 76;
    switch (keyCode) {
        case kSpace:
            return "key_space";
        case kReturn:
        case kKeypadEnter:
            return "key_return";
        default:
            return "key_click";
    }
}

}  // namespace

void SoundManager::play(std::string_view id) {
    SoundEvent* const event = findEvent(id);
    if (event == nullptr || !event->isEnabled) {
        return;
    }
    countAndAnnounce(*event);
    playEvent(*event);
}

void SoundManager::playEvent(const SoundEvent& event) {
    playSound(event.id, event);
}

void SoundManager::playKey(std::int64_t keyCode) {
    SoundEvent* const event = findEvent(event_ids::kKeyPress);
    if (event == nullptr || !event->isEnabled) {
        return;
    }
    countAndAnnounce(*event);
    playSound(keySoundName(keyCode), *event);
}

void SoundManager::previewTheme(SoundTheme theme) {
    if (theme != SoundTheme::system && !isMuted_) {
        playFile(themeSoundFile(res_, theme, event_ids::kSlap), kPreviewVolume);
    }
}

void SoundManager::setMuted(bool muted) {
    if (std::exchange(isMuted_, muted) != muted) {
        deps_.notifications.post({.name = kMuteDidChange});
    }
}

void SoundManager::countAndAnnounce(SoundEvent& event) {
    ++event.triggerCount;
    deps_.queue.post([&notifications = deps_.notifications, id = event.id] {
        notifications.post({.name = eventCounterUpdated, .object = id});
    });
}

void SoundManager::playSound(std::string_view soundName, const SoundEvent& event) {
    if (!isMuted_ && !playOwnFile(event)) {
        playFromLibrary(soundName, event);
    }
}

bool SoundManager::playOwnFile(const SoundEvent& event) {
    return event.soundPath && !event.soundPath->empty() && playFile(*event.soundPath, event.volume);
}

/// Plays the sound of this name from the selected theme, else the default one, else the event's
/// alert sound.
void SoundManager::playFromLibrary(std::string_view soundName, const SoundEvent& event) {
    if (currentTheme != SoundTheme::system && !activeCustomThemeID &&
        playFile(themeSoundFile(res_, currentTheme, soundName), event.volume)) {
        return;
    }
    for (const std::string& path : defaultSoundFiles(res_, soundName)) {
        if (playFile(path, event.volume)) {
            return;
        }
    }
    if (const auto sound = deps_.sounds.soundNamed(event.systemFallback)) {
        fire(sound, event.volume);
    }
}

bool SoundManager::playFile(const std::string& path, float volume) {
    if (!deps_.files.fileExists(path)) {
        return false;
    }
    const auto sound = deps_.sounds.soundFromFile(path);
    if (!sound) {
        return false;
    }
    fire(sound, volume);
    return true;
}

void SoundManager::fire(const std::shared_ptr<Sound>& sound, float volume) {
    sound->setVolume(volume);
    playing_.push_back(sound);
    sound->play();
    const Seconds hold = std::max(sound->duration(), kShortestHold) + kHoldMargin;
    deps_.queue.postAfter(hold, lifeline_.guard([this, sound] { std::erase(playing_, sound); }));
}

}  // namespace chimewerk
