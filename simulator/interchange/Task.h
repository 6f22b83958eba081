#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace tsr {

// Something to be done. Texts are UTF-8.
struct Task {
    std::string subject;
    std::string note;
    std::optional<std::chrono::year_month_day> due;
    int priority = 2; // 1 high, 2 medium, 3 low, anything else none
    bool completed = false;
    bool isPrivate = false;
    std::string repeats; // a rule such as "FREQ=WEEKLY"; then handhelds can't hold it
    std::vector<std::string> categories;
    std::string uid; // by which other programs know it; it is written and not read

    bool operator==(const Task&) const = default;
};

} // namespace tsr
