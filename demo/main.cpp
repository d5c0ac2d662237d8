// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <set>
#include <string_view>
#include <vector>

#include "demo/demonstration.h"
#include "demo/rows.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: chimewerk-demo PROGRAM [EVENT...]\n");
        return 2;
    }
    const std::set<std::string_view> wanted(argv + 2, argv + argc);
    std::vector<chimewerk::DemoRow> rows;
    for (const chimewerk::DemoRow& row : chimewerk::demoRows()) {
        if (wanted.empty() || wanted.contains(row.event)) {
            rows.push_back(row);
        }
    }
    // The signals are real: outside a private session they would reach the user's own desktop.
    if (std::getenv("CHIMEWERK_SESSION") == nullptr) {
        std::fprintf(stderr, "chimewerk-demo: to be run by tools/session\n");
        return 2;
    }
    try {
        return chimewerk::Demonstration(argv[1], rows).run() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "chimewerk-demo: %s\n", error.what());
        return 1;
    }
}
