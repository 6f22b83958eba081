#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "interchange/RepeatRule.h"

namespace tsr {

// Rules on the command line and in JSON. All readers raise ArgumentError.

// "daily", "weekly", "monthly-by-date" and "monthly-by-day".
RepeatRule::Unit parseUnit(const std::string& text);
std::string unitText(RepeatRule::Unit unit);

// The days of a rule: "mon" of weeks, "15" by date, "2-tue" and "last-fri" by day. Replaces those that it
// has.
void setRuleDays(RepeatRule& rule, const std::vector<std::string>& days);
std::vector<std::string> ruleDays(const RepeatRule& rule);

// The day on which a rule comes when none is named.
void setDefaultDays(RepeatRule& rule, std::chrono::sys_days start);

// "weekly on mon, wed, every 2, until 2026-12-31"
std::string ruleText(const RepeatRule& rule);

} // namespace tsr
