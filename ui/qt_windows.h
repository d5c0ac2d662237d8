#pragma once

#include "app/windows.h"

namespace chimewerk {

/// Makes the windows of this folder.
class QtWindows final : public WindowFactory {
public:
    std::unique_ptr<Window> makeDashboard(AppDelegate& delegate) override;
    std::unique_ptr<Window> makeHelpWindow() override;
};

}  // namespace chimewerk
