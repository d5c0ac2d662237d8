// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "monitors/keyboard_monitor.h"
#include "platform/source_report.h"

namespace chimewerk {

/// A source of keys that can report on itself.
class ReportingKeySource : public KeySource, public ReportsItself {};

}  // namespace chimewerk
