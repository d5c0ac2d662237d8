// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/check_table.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "app/text_table.h"

namespace chimewerk {

namespace {

/// Events for which the same is missing.
struct Lack {
    const SourceReport* report;
    std::string events;
};

std::vector<Lack> lacksOf(const std::vector<RemoteCheck>& checks) {
    std::vector<Lack> lacks;
    for (const RemoteCheck& check : checks) {
        const bool isOutput = check.id == "sound_output";
        if (check.source.missing.empty() || (!check.isEnabled && !isOutput)) {
            continue;
        }
        const auto same = std::ranges::find_if(lacks, [&](const Lack& lack) {
            return lack.report->missing == check.source.missing &&
                   lack.report->advice == check.source.advice;
        });
        if (same == lacks.end()) {
            lacks.push_back({.report = &check.source, .events = check.label});
        } else {
            same->events += ", " + check.label;
        }
    }
    return lacks;
}

std::string lackTexts(const std::vector<RemoteCheck>& checks) {
    constexpr std::size_t kIndent = 4;
    std::string text;
    for (const Lack& lack : lacksOf(checks)) {
        const std::string advice = lack.report->advice.empty() ? "" : " " + lack.report->advice;
        const std::string line = "- " + lack.events + ": " + lack.report->missing + advice;
        text += wrapped(line, 0, kIndent) + "\n";
    }
    return text.empty() ? "Nothing is missing.\n" : "What is missing:\n" + text;
}

/// Returns the text with "~" for each path of the home folder.
std::string shortened(std::string text, const std::string& home) {
    if (home.empty()) {
        return text;
    }
    for (std::size_t at = 0; (at = text.find(home + "/", at)) != std::string::npos; ++at) {
        text.replace(at, home.size(), "~");
    }
    return text;
}

}  // namespace

std::string spanText(std::optional<double> seconds) {
    if (!seconds) {
        return "-";
    }
    constexpr std::pair<double, const char*> kUnits[] = {
        {24 * 60 * 60, " d"}, {60 * 60, " h"}, {60, " min"}, {1, " s"}};
    const auto* const unit = std::ranges::find_if(
        kUnits, [&](const auto& one) { return *seconds >= one.first || one.first == 1; });
    return std::to_string(static_cast<long>(std::floor(*seconds / unit->first))) + unit->second;
}

std::string checkTable(const std::vector<RemoteCheck>& checks, const CheckView& view) {
    std::vector<std::vector<std::string>> rows{{"EVENT", "", "AGO", "HEARD BY"}};
    for (const RemoteCheck& check : checks) {
        const bool isOutput = check.id == "sound_output";
        const char* const muted = check.isEnabled ? "on" : "muted";
        rows.push_back({check.id,
                        isOutput          ? muted
                        : check.isEnabled ? "on"
                                          : "off",
                        isOutput ? "" : spanText(check.secondsAgo),
                        shortened(check.source.mechanism, view.home)});
    }
    return (view.isRunning
                ? ""
                : "Chimewerk is not running. If it were, this is how it would hear:\n\n") +
           textTable(rows) + "\n" + lackTexts(checks);
}

std::string checkJson(const std::vector<RemoteCheck>& checks, const CheckView& view) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const RemoteCheck& check : checks) {
        nlohmann::ordered_json entry{{"id", check.id},
                                     {"enabled", check.isEnabled},
                                     {"mechanism", check.source.mechanism},
                                     {"missing", check.source.missing},
                                     {"advice", check.source.advice},
                                     {"lacks_hardware", check.source.lacksHardware}};
        if (check.secondsAgo) {
            entry["seconds_ago"] = std::floor(*check.secondsAgo);
        }
        list.push_back(std::move(entry));
    }
    const nlohmann::ordered_json all{{"running", view.isRunning}, {"checks", std::move(list)}};
    return all.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace chimewerk
