#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "app/status_item.h"
#include "support/journal.h"

namespace chimewerk {

/// A tray of which the menu can be read and chosen from.
class FakeStatusItem final : public StatusItem, public Noting {
public:
    void show(const Menu& shown, std::function<void()> onActivated) override {
        note("menu");
        menu = &shown;
        onActivate = std::move(onActivated);
    }

    /// The menu as text, an entry after another: [d] the key equivalent, (x) or ( ) the mark, {...} the
    /// submenu, - a separator, # an entry that cannot be chosen.
    std::string text() const { return textOf(*menu); }

    /// Has the user choose the entry with this title.
    void choose(std::string_view title) { find(*menu, title)->action(); }

    const Menu* menu = nullptr;
    std::function<void()> onActivate;

private:
    static std::string textOf(const Menu& menu) {
        std::string text;
        for (const auto& item : menu) {
            text += text.empty() ? "" : ", ";
            if (item->isSeparator()) {
                text += "-";
                continue;
            }
            text += (item->isEnabled() ? "" : "#") + item->title;
            text += item->keyEquivalent.empty() ? "" : " [" + item->keyEquivalent + "]";
            text += !item->isRadio ? "" : item->isOn ? " (x)" : " ( )";
            text += item->submenu.empty() ? "" : " {" + textOf(item->submenu) + "}";
        }
        return text;
    }

    static const MenuItem* find(const Menu& menu, std::string_view title) {
        for (const auto& item : menu) {
            if (item->title == title && item->action) {
                return item.get();
            }
            for (const auto& inner : item->submenu) {
                if (inner->title == title) {
                    return inner.get();
                }
            }
        }
        throw std::invalid_argument("nothing to choose under this title");
    }
};

}  // namespace chimewerk
