#include "support/settings_model.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <map>
#include <random>
#include <sstream>

#include "sound/sound_event.h"
#include "support/sound_library.h"

namespace chimewerk {

namespace {

using Kind = SettingsStep::Kind;
using Files = std::map<std::string, std::string>;

constexpr std::array<const char*, static_cast<std::size_t>(Kind::last) + 1> kNames = {
    "setPath",        "setVolume",         "setEnabled",        "setThreshold",      "setTheme",
    "setCustomTheme", "createCustomTheme", "renameCustomTheme", "deleteCustomTheme", "restart",
    "loseEvents",     "spoilEvents",       "spoilSwitch",       "numberSwitch",      "loseVolume",
    "spoilThemes",    "spoilTheme",        "spoilSelection"};

/// The whole state as text, floats by their bits, so that two states can be compared and shown.
class Picture {
public:
    void event(const std::string& id, const std::string& path, float volume, bool enabled,
               float threshold) {
        text_ << id << " '" << path << "' " << std::bit_cast<std::uint32_t>(volume) << ' '
              << enabled << ' ' << std::bit_cast<std::uint32_t>(threshold) << '\n';
    }
    template <typename Sounds>
    void theme(const std::string& id, const std::string& name, const Sounds& sounds) {
        text_ << "theme " << id << " '" << name << '\'';
        for (const auto& [event, path] : sounds) {
            text_ << ' ' << event << "='" << path << '\'';
        }
        text_ << '\n';
    }
    template <typename Value>
    void line(const char* what, const Value& value) {
        text_ << what << ' ' << value << '\n';
    }
    std::string text() const { return text_.str(); }

private:
    std::ostringstream text_;
};

/// The rules, on plain values. An empty path is no path.
class Model {
public:
    Model() { factory(); }

    void play(const SettingsStep& step) {
        saved_ = false;
        announced_.clear();
        switch (step.kind) {
            case Kind::setPath:
                if (events_.contains(step.id)) {
                    events_[step.id].path = step.text;
                    if (Theme* const theme = find(selected_)) {
                        theme->files[step.id] = step.text;
                    }
                    save();
                }
                break;
            case Kind::setVolume:
            case Kind::setThreshold:
            case Kind::setEnabled:
                if (events_.contains(step.id)) {
                    setNumber(step, events_[step.id]);
                    save();
                }
                break;
            case Kind::renameCustomTheme:
                if (Theme* const theme = find(step.id)) {
                    theme->name = step.text;
                    save();
                }
                break;
            case Kind::restart:
                load();
                break;
            default:
                if (step.kind < Kind::restart) {
                    changeTheme(step);
                    save();
                } else {
                    spoil(step);
                    load();
                }
        }
    }

    std::string picture() const {
        Picture picture;
        for (const SoundEvent& event : factoryEvents()) {
            const auto& own = events_.at(event.id);
            picture.event(event.id, own.path, own.volume, own.enabled, own.threshold);
        }
        for (const Theme& theme : themes_) {
            picture.theme(theme.id, theme.name, theme.files);
        }
        picture.line("theme", rawValue(theme_));
        picture.line("selected", selected_.value_or("-"));
        picture.line("saved", saved_);
        picture.line("announced", announced_);
        picture.line("file manager", finder_);
        return picture.text();
    }

private:
    struct Event {
        std::string path;
        float volume;
        bool enabled;
        float threshold;
    };
    struct Theme {
        std::string id;
        std::string name;
        Files files;
    };
    struct Stored {
        std::map<std::string, Event> events;
        std::vector<Theme> themes;
        std::optional<SoundTheme> theme;
        std::optional<std::string> selected;
    };

    void factory() {
        for (const SoundEvent& event : factoryEvents()) {
            events_[event.id] = {"", event.volume, event.isEnabled, event.threshold};
        }
        theme_ = SoundTheme::classic;
        themes_.clear();
        selected_.reset();
    }
    Theme* find(const std::optional<std::string>& id) {
        const auto found = std::find_if(themes_.begin(), themes_.end(),
                                        [&](const Theme& t) { return t.id == id; });
        return found == themes_.end() ? nullptr : &*found;
    }
    void setNumber(const SettingsStep& step, Event& event) {
        if (step.kind == Kind::setVolume) {
            event.volume = step.number;
        } else if (step.kind == Kind::setThreshold) {
            event.threshold = step.number;
        } else {
            event.enabled = step.number > 0;
            if (step.id.starts_with("trash")) {
                finder_ +=
                    events_["trash_add"].enabled || events_["trash_empty"].enabled ? "off " : "on ";
            }
        }
    }
    void setAllPaths(const Files& files) {
        for (auto& [id, event] : events_) {
            const auto file = files.find(id);
            event.path = file == files.end() ? "" : file->second;
        }
    }
    void changeTheme(const SettingsStep& step) {
        Theme chosen{step.id, "unlisted", {{"slap", step.text}}};
        if (const Theme* const listed = find(step.id)) {
            chosen = *listed;
        }
        Theme* const left = find(selected_);
        if (left != nullptr && step.kind != Kind::deleteCustomTheme) {
            for (const auto& [id, event] : events_) {
                left->files[id] = event.path;
            }
        }
        announced_ = "none";
        if (step.kind == Kind::setTheme) {
            announced_ = rawValue(step.theme);
            select(std::nullopt, step.theme);
            if (step.theme != SoundTheme::system) {
                setAllPaths({});
            }
        } else if (step.kind == Kind::setCustomTheme) {
            select(step.id, SoundTheme::system);
            setAllPaths(chosen.files);
        } else if (step.kind == Kind::createCustomTheme) {
            const std::string id(1, static_cast<char>('A' + made_++ % 3));
            themes_.push_back({id, step.text, {}});
            select(id, SoundTheme::system);
            setAllPaths({});
        } else {
            if (selected_ == step.id) {
                select(std::nullopt, SoundTheme::classic);
                setAllPaths({});
            }
            std::erase_if(themes_, [&](const Theme& theme) { return theme.id == step.id; });
        }
    }
    void select(std::optional<std::string> custom, SoundTheme theme) {
        selected_ = std::move(custom);
        theme_ = theme;
    }
    void save() {
        saved_ = true;
        stored_ = {events_, themes_, theme_, selected_};
    }
    void load() {
        factory();
        for (const auto& [id, event] : stored_.events) {
            events_[id] = event;
        }
        themes_ = stored_.themes;
        if (const Theme* const theme = find(stored_.selected)) {
            select(stored_.selected, SoundTheme::system);
            setAllPaths(theme->files);
        } else {
            theme_ = stored_.theme.value_or(SoundTheme::classic);
        }
    }
    /// What is left of the stored settings for the next start to see.
    void spoil(const SettingsStep& step) {
        const auto all = factoryEvents();
        const auto event = std::find_if(all.begin(), all.end(),
                                        [&](const SoundEvent& e) { return e.id == step.id; });
        const auto stored = stored_.events.find(step.id);
        if (step.kind == Kind::loseEvents || step.kind == Kind::spoilEvents) {
            stored_.events.clear();
        } else if (step.kind == Kind::spoilThemes) {
            stored_.themes.clear();
        } else if (step.kind == Kind::spoilTheme) {
            stored_.theme.reset();
        } else if (step.kind == Kind::spoilSelection) {
            stored_.selected.reset();
        } else if (stored != stored_.events.end()) {
            if (step.kind == Kind::loseVolume) {
                stored->second.volume = event->volume;
            } else {
                const bool readable =
                    step.kind == Kind::numberSwitch && (step.number == 0 || step.number == 1);
                stored->second.enabled = readable ? step.number == 1 : event->isEnabled;
            }
        }
    }

    std::map<std::string, Event> events_;
    SoundTheme theme_;
    std::vector<Theme> themes_;
    std::optional<std::string> selected_;
    Stored stored_;
    bool saved_ = false;
    std::string announced_;
    std::string finder_;
    int made_ = 0;
};

/// Passes everything on to the store that is open, and notices changes.
class WatchedStore final : public DefaultsStore {
public:
    explicit WatchedStore(OpenStore open) : open_(std::move(open)), store_(open_()) {}

    void reopen() {
        store_.reset();
        store_ = open_();
    }
    bool changed() { return std::exchange(changed_, false); }

    void setObject(std::string_view key, std::optional<DefaultsValue> value) override {
        changed_ = true;
        store_->setObject(key, std::move(value));
    }
    void setData(std::string_view key, MakeData make) override {
        changed_ = true;
        store_->setData(key, std::move(make));
    }
    std::optional<DefaultsValue> object(std::string_view key) const override {
        return store_->object(key);
    }
    void keepDamaged() override { store_->keepDamaged(); }

private:
    OpenStore open_;
    std::unique_ptr<DefaultsStore> store_;
    bool changed_ = false;
};

/// The sound library under the same steps.
class Subject {
public:
    explicit Subject(OpenStore open) : store_(std::move(open)), library_(&store_) {}

    void play(const SettingsStep& step) {
        store_.changed();
        switch (step.kind) {
            case Kind::setPath:
                library_->setPath(step.text.empty() ? std::nullopt : std::optional(step.text),
                                  step.id);
                break;
            case Kind::setVolume:
                library_->setVolume(step.number, step.id);
                break;
            case Kind::setEnabled:
                library_->setEnabled(step.number > 0, step.id);
                break;
            case Kind::setThreshold:
                library_->setThreshold(step.number, step.id);
                break;
            case Kind::setTheme:
                library_->setTheme(step.theme);
                break;
            case Kind::setCustomTheme:
                setCustomTheme(step);
                break;
            case Kind::createCustomTheme:
                library_->createCustomTheme(step.text);
                break;
            case Kind::renameCustomTheme:
                library_->renameCustomTheme(step.id, step.text);
                break;
            case Kind::deleteCustomTheme:
                library_->deleteCustomTheme(step.id);
                break;
            default:
                spoil(step);
                store_.reopen();
                store_.changed();
                library_.restart();
        }
    }

    std::string picture() {
        Picture picture;
        for (const SoundEvent& event : library_->events) {
            picture.event(event.id, event.soundPath.value_or(""), event.volume, event.isEnabled,
                          event.threshold);
        }
        for (const CustomTheme& theme : library_->customThemes) {
            picture.theme(theme.id, theme.name, theme.sounds.entries());
        }
        picture.line("theme", rawValue(library_->currentTheme));
        picture.line("selected", library_->activeCustomThemeID.value_or("-"));
        picture.line("saved", store_.changed());
        std::string announced;
        for (const auto& object : library_.announced()) {
            announced += object;
        }
        picture.line("announced", announced);
        std::string fileManager;
        for (const bool on : library_.fileManager.calls) {
            fileManager += on ? "on " : "off ";
        }
        picture.line("file manager", fileManager);
        return picture.text();
    }

private:
    void setCustomTheme(const SettingsStep& step) {
        for (const CustomTheme& theme : library_->customThemes) {
            if (theme.id == step.id) {
                library_->setCustomTheme(theme);
                return;
            }
        }
        library_->setCustomTheme(
            {.id = step.id, .name = "unlisted", .sounds = {{"slap", step.text}}});
    }
    void spoil(const SettingsStep& step) {
        const auto stored = store_.object("ChimewerkEvents");
        auto events = stored ? std::get<DefaultsDictionary>(stored->value) : DefaultsDictionary{};
        auto* const event = events.contains(step.id)
                                ? &std::get<DefaultsDictionary>(events[step.id].value)
                                : nullptr;
        switch (step.kind) {
            case Kind::loseEvents:
                store_.setObject("ChimewerkEvents", std::nullopt);
                return;
            case Kind::spoilThemes:
                store_.setObject("ChimewerkCustomThemes", {{DefaultsData{"[{}]"}}});
                return;
            case Kind::spoilTheme:
                store_.setObject("ChimewerkTheme", {{std::string("Piano")}});
                return;
            case Kind::spoilSelection:
                store_.setObject("ChimewerkActiveCustomTheme", {{std::string("Z")}});
                return;
            case Kind::spoilEvents:
                events["stray"] = {std::string("text")};
                break;
            case Kind::spoilSwitch:
                if (event != nullptr) {
                    (*event)["enabled"] = {std::string("true")};
                }
                break;
            case Kind::numberSwitch:
                if (event != nullptr) {
                    (*event)["enabled"] = {static_cast<double>(step.number)};
                }
                break;
            case Kind::loseVolume:
                if (event != nullptr) {
                    event->erase("volume");
                }
                break;
            default:
                return;
        }
        store_.setObject("ChimewerkEvents", {{std::move(events)}});
    }

    WatchedStore store_;
    SoundLibrary library_;
};

/// The lines in which two pictures differ.
std::string contrast(const std::string& expected, const std::string& actual) {
    std::istringstream left(expected);
    std::istringstream right(actual);
    std::string difference;
    while (left || right) {
        std::string a;
        std::string b;
        std::getline(left, a);
        std::getline(right, b);
        if (a != b) {
            difference.append("  expected: ")
                .append(a)
                .append("\n  but was:  ")
                .append(b)
                .append("\n");
        }
    }
    return difference;
}

SettingsSession shortened(SettingsSession session, const MakeStorage& makeStorage) {
    for (std::size_t i = session.size(); i-- > 0;) {
        SettingsSession without = session;
        without.erase(without.begin() + static_cast<std::ptrdiff_t>(i));
        if (firstDifference(without, makeStorage)) {
            session = std::move(without);
        }
    }
    return session;
}

}  // namespace

std::string describe(const SettingsSession& session) {
    std::ostringstream text;
    for (const SettingsStep& step : session) {
        text << "  " << kNames.at(static_cast<std::size_t>(step.kind)) << " id='" << step.id
             << "' text='" << step.text << "' number=" << step.number
             << " theme=" << rawValue(step.theme) << '\n';
    }
    return text.str();
}

SettingsSession randomSettingsSession(unsigned seed, std::size_t length) {
    // Few identifiers, so that steps meet; twice as likely are the user's own changes.
    const std::vector<std::string> events = {"slap", "usb_connect", "trash_add", "trash_empty",
                                             "no_such"};
    const std::vector<std::string> themes = {"A", "B", "C", "unlisted"};
    const std::vector<std::string> texts = {"", "/a.wav", "/b.wav", "/j\xFCrgen/c.wav", "ü \"\\\n"};
    const std::vector<float> numbers = {
        0.0F,   1.0F, 0.3F,   -0.0F,         2.0F,
        1e-45F, 0.1F, -1e38F, 7.038531e-26F, std::numeric_limits<float>::infinity()};
    std::mt19937 random(seed);
    const auto anyOf = [&random](const auto& pool) { return pool[random() % pool.size()]; };
    SettingsSession session;
    while (session.size() < length) {
        const auto userKinds = static_cast<unsigned>(Kind::restart);
        const auto allKinds = static_cast<unsigned>(Kind::last) + 1;
        const auto kind = static_cast<Kind>(random() % (random() % 2 == 0 ? userKinds : allKinds));
        const bool aboutThemes = kind >= Kind::setCustomTheme && kind <= Kind::deleteCustomTheme;
        session.push_back({kind, aboutThemes ? anyOf(themes) : anyOf(events), anyOf(texts),
                           anyOf(numbers), anyOf(kAllThemes)});
    }
    return session;
}

std::optional<std::string> firstDifference(const SettingsSession& session,
                                           const MakeStorage& makeStorage) {
    Model model;
    Subject subject(makeStorage());
    for (std::size_t i = 0; i < session.size(); ++i) {
        model.play(session[i]);
        subject.play(session[i]);
        const std::string expected = model.picture();
        const std::string actual = subject.picture();
        if (expected != actual) {
            return "after step " + std::to_string(i + 1) + "\n" + contrast(expected, actual);
        }
    }
    return std::nullopt;
}

std::string firstFailingSession(unsigned firstSeed, unsigned count, std::size_t length,
                                const MakeStorage& makeStorage) {
    for (unsigned seed = firstSeed; seed < firstSeed + count; ++seed) {
        const SettingsSession session = randomSettingsSession(seed, length);
        if (firstDifference(session, makeStorage)) {
            const SettingsSession shortest = shortened(session, makeStorage);
            return "seed " + std::to_string(seed) + ", shortened to\n" + describe(shortest) +
                   firstDifference(shortest, makeStorage).value_or("");
        }
    }
    return {};
}

}  // namespace chimewerk
