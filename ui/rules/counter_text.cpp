#include "ui/rules/counter_text.h"

namespace chimewerk {

std::string counterText(std::int64_t triggerCount) {
    if (triggerCount == 0) {
        return "Not triggered yet";
    }
    return "Triggered: " + std::to_string(triggerCount) + " " +
           (triggerCount == 1 ? "time" : "times");
}

}  // namespace chimewerk
