// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Random user sessions: the sound library on the real store must behave like a small model of the
// rules, even when the program is restarted and stored settings are damaged.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <ostream>
#include <random>

#include "linux/base/epoll_main_queue.h"
#include "linux/storage/json_defaults_store.h"
#include "sound/sound_event.h"
#include "support/sound_library.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

struct State {
    std::vector<SoundEvent> events = factoryEvents();
    std::vector<CustomTheme> themes;
    SoundTheme theme = SoundTheme::classic;
    std::optional<std::string> selected;
    std::vector<std::string> announced;
    std::vector<bool> fileManagerCalls;

    bool operator==(const State&) const = default;
};

/// Describes a state in failure messages.
std::ostream& operator<<(std::ostream& out, const State& state) {
    for (const SoundEvent& e : state.events) {
        if (const auto factory = factoryEvents(); std::ranges::find(factory, e) == factory.end()) {
            out << "\n  " << e.id << " '" << e.soundPath.value_or("-") << "' " << e.volume << ' '
                << e.isEnabled << ' ' << e.threshold << ' ' << e.triggerCount;
        }
    }
    for (const CustomTheme& theme : state.themes) {
        out << "\n  theme " << theme.id << " '" << theme.name << '\'';
        for (const auto& [event, path] : theme.sounds.entries()) {
            out << ' ' << event << "='" << path << '\'';
        }
    }
    return out << "\n  selected " << rawValue(state.theme) << ' ' << state.selected.value_or("-")
               << ", announced " << testing::PrintToString(state.announced) << ", file manager "
               << testing::PrintToString(state.fileManagerCalls);
}

/// A model of the sound library: the same operations, by the rules alone.
class Rules {
public:
    State now;
    /// What the next start loads.
    State stored;

    void play(std::string_view id) {
        if (SoundEvent* const event = find(id); event != nullptr && event->isEnabled) {
            ++event->triggerCount;
        }
    }
    void setPath(const std::optional<std::string>& path, const std::string& id) {
        if (SoundEvent* const event = find(id)) {
            event->soundPath = path;
            putSound(id, path.value_or(""));
            save();
        }
    }
    void setVolume(float volume, std::string_view id) {
        change(id, [&](SoundEvent& event) { event.volume = volume; });
    }
    void setThreshold(float threshold, std::string_view id) {
        change(id, [&](SoundEvent& event) { event.threshold = threshold; });
    }
    void setEnabled(bool enabled, std::string_view id) {
        change(id, [&](SoundEvent& event) { event.isEnabled = enabled; });
        if (id.starts_with("trash")) {
            now.fileManagerCalls.push_back(!find("trash_add")->isEnabled &&
                                           !find("trash_empty")->isEnabled);
        }
    }
    void setTheme(SoundTheme theme) {
        writeBack();
        select(theme, std::nullopt, std::string(rawValue(theme)));
        if (theme != SoundTheme::system) {
            setSounds({});
        }
        save();
    }
    void setCustomTheme(const CustomTheme& theme) {
        writeBack();
        select(SoundTheme::system, theme.id, "none");
        setSounds(theme.sounds.entries());
        save();
    }
    void createCustomTheme(const std::string& name) {
        writeBack();
        now.themes.push_back({std::string(1, "ABC"[made_++ % 3]), name, {}});
        select(SoundTheme::system, now.themes.back().id, "none");
        setSounds({});
        save();
    }
    void renameCustomTheme(const std::string& id, const std::string& name) {
        if (CustomTheme* const theme = findTheme(now, id)) {
            theme->name = name;
            save();
        }
    }
    void deleteCustomTheme(const std::string& id) {
        now.announced = {"none"};
        if (now.selected == id) {
            select(SoundTheme::classic, std::nullopt, "none");
            setSounds({});
        }
        std::erase_if(now.themes, [&](const CustomTheme& theme) { return theme.id == id; });
        save();
    }
    void restart() {
        auto calls = std::move(now.fileManagerCalls);
        now = stored;
        now.fileManagerCalls = std::move(calls);
        now.announced.clear();
        for (SoundEvent& event : now.events) {
            event.triggerCount = 0;
        }
        if (const CustomTheme* const theme = findTheme(now, now.selected)) {
            now.theme = SoundTheme::system;
            setSounds(theme->sounds.entries());
        } else {
            now.selected.reset();
        }
    }
    static CustomTheme* findTheme(State& state, const std::optional<std::string>& id) {
        const auto found = std::ranges::find(state.themes, id, &CustomTheme::id);
        return found == state.themes.end() ? nullptr : &*found;
    }

private:
    SoundEvent* find(std::string_view id) {
        const auto found = std::ranges::find(now.events, id, &SoundEvent::id);
        return found == now.events.end() ? nullptr : &*found;
    }
    template <typename Change>
    void change(std::string_view id, Change change) {
        if (SoundEvent* const event = find(id)) {
            change(*event);
            save();
        }
    }
    void select(SoundTheme theme, std::optional<std::string> custom, std::string announced) {
        now.theme = theme;
        now.selected = std::move(custom);
        now.announced = {std::move(announced)};
    }
    void putSound(const std::string& id, const std::string& path) {
        if (CustomTheme* const theme = findTheme(now, now.selected)) {
            auto sounds = theme->sounds.entries();
            sounds[id] = path;
            theme->sounds = ThemeSounds(std::move(sounds));
        }
    }
    void writeBack() {
        for (const SoundEvent& event : now.events) {
            putSound(event.id, event.soundPath.value_or(""));
        }
    }
    void setSounds(const ThemeSounds::Map& sounds) {
        for (SoundEvent& event : now.events) {
            const auto sound = sounds.find(event.id);
            const bool has = sound != sounds.end() && !sound->second.empty();
            event.soundPath = has ? std::optional(sound->second) : std::nullopt;
        }
    }
    void save() { stored = now; }

    int made_ = 0;
};

/// The library and the model side by side.
class Session {
public:
    explicit Session(unsigned seed) : random_(seed) {}

    /// Performs a random operation.
    void step() {
        rules_.now.announced.clear();
        // Few identifiers, so that operations affect the same objects.
        event_ = anyOf(std::array{"slap", "usb_connect", "trash_add", "trash_empty", "no_such"});
        theme_ = anyOf(std::array{"A", "B", "C", "unlisted"});
        text_ = anyOf(std::array{"", "/a.wav", "/b.wav", "/j\xFCrgen/c.wav", "ü \"\\\n"});
        number_ =
            anyOf(std::array{0.0F, 1.0F, 0.3F, 2.0F, 1e-45F, -1e38F, 7.038531e-26F, HUGE_VALF});
        const unsigned kind = random_() % 16;
        (log_ += "\n  step ") += std::to_string(kind) + ' ' + event_ + ' ' + theme_ + " '" + text_ +
                                 "' " + std::to_string(number_);
        kind < 10 ? change(kind) : restart(kind);
    }
    const State& expected() const { return rules_.now; }
    State actual() {
        return {library_->events,       library_->customThemes,
                library_->currentTheme, library_->activeCustomThemeID,
                library_.announced(),   library_.fileManager.calls};
    }
    const std::string& log() const { return log_; }

private:
    template <typename Pool>
    typename Pool::value_type anyOf(const Pool& pool) {
        return pool[random_() % pool.size()];
    }
    template <typename Action>
    void both(Action action) {
        action(*library_);
        action(rules_);
    }
    void change(unsigned kind) {
        const auto path = text_.empty() ? std::nullopt : std::optional(text_);
        const SoundTheme builtIn = anyOf(kAllThemes);
        const CustomTheme* const listed = Rules::findTheme(rules_.now, theme_);
        const CustomTheme custom =
            listed != nullptr ? *listed : CustomTheme{theme_, "unlisted", {{"slap", text_}}};
        switch (kind) {
            case 0:
                return both([&](auto& it) { it.setPath(path, event_); });
            case 1:
                return both([&](auto& it) { it.setVolume(number_, event_); });
            case 2:
                return both([&](auto& it) { it.setEnabled(number_ > 0, event_); });
            case 3:
                return both([&](auto& it) { it.setThreshold(number_, event_); });
            case 4:
                return both([&](auto& it) { it.setTheme(builtIn); });
            case 5:
                return both([&](auto& it) { it.setCustomTheme(custom); });
            case 6:
                return both([&](auto& it) { it.createCustomTheme(text_); });
            case 7:
                return both([&](auto& it) { it.renameCustomTheme(theme_, text_); });
            case 8:
                return both([&](auto& it) { it.deleteCustomTheme(theme_); });
            default:
                return both([&](auto& it) { it.play(event_); });
        }
    }
    /// Restarts the program, mostly with damaged settings.
    void restart(unsigned kind) {
        if (kind == 10) {
            store_->setObject("ChimewerkCustomThemes", {{DefaultsData{"[{}]"}}});
            rules_.stored.themes.clear();
        } else if (kind == 11) {
            store_->setObject("ChimewerkTheme", {{std::string("Piano")}});
            rules_.stored.theme = SoundTheme::classic;
        } else if (kind == 12) {
            store_->setObject("ChimewerkActiveCustomTheme", {{std::string("Z")}});
            rules_.stored.selected.reset();
        } else if (kind < 15) {
            damageEvents(kind);
        }
        store_.emplace(queue_, home_.path().string());
        library_.restart();
        rules_.restart();
    }
    void damageEvents(unsigned kind) {
        const auto object = store_->object("ChimewerkEvents");
        auto events = object ? std::get<DefaultsDictionary>(object->value) : DefaultsDictionary{};
        const auto factory = factoryEvents();
        const auto index = std::ranges::find(factory, event_, &SoundEvent::id) - factory.begin();
        if (kind == 13) {
            events = {{"stray", {std::string("text")}}};
            rules_.stored.events = factory;
        } else if (events.contains(event_)) {
            auto& entry = std::get<DefaultsDictionary>(events[event_].value);
            entry.erase("volume");
            entry["enabled"] = {static_cast<double>(number_)};
            SoundEvent& stored = rules_.stored.events[static_cast<std::size_t>(index)];
            const SoundEvent& made = factory[static_cast<std::size_t>(index)];
            stored.volume = made.volume;
            stored.isEnabled = number_ == 0 || number_ == 1 ? number_ == 1 : made.isEnabled;
        }
        store_->setObject("ChimewerkEvents", {{std::move(events)}});
    }

    std::mt19937 random_;
    TemporaryFolder home_;
    EpollMainQueue queue_;
    std::optional<JsonDefaultsStore> store_{std::in_place, queue_, home_.path().string()};
    SoundLibrary library_{&*store_};
    Rules rules_;
    std::string event_;
    std::string theme_;
    std::string text_;
    float number_ = 0;
    std::string log_;
};

TEST(RandomSettingsSessions, LeaveTheLibraryInTheStateOfTheModel) {
    constexpr unsigned kSessions = 30;
    constexpr int kSteps = 50;
    for (unsigned seed = 1; seed <= kSessions; ++seed) {
        Session session(seed);
        for (int i = 0; i < kSteps; ++i) {
            session.step();
            ASSERT_EQ(session.actual(), session.expected())
                << "seed " << seed << ", after" << session.log();
        }
    }
}

}  // namespace
}  // namespace chimewerk
