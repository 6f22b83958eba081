#pragma once

#include <cstdint>
#include <optional>

namespace tsr {

// The kinds of phone that the handheld knows. A slot of a record has the number of one.
enum PhoneLabel : std::int32_t {
    WorkPhone,
    HomePhone,
    FaxPhone,
    OtherPhone,
    EmailPhone,
    MainPhone,
    PagerPhone,
    MobilePhone,
};
constexpr std::int32_t phoneLabelCount = 8;

std::int32_t checkedPhoneLabel(std::int32_t label); // raises InvalidPhoneLabel outside 0 to 7

// The letter by which Notes remembers a kind: "W", "H", "F", "O", "E", "m", "P", "M" in the order of labels.
char phoneLetter(std::int32_t label); // raises InvalidPhoneLabel
std::optional<std::int32_t> labelOfPhoneLetter(char letter);

} // namespace tsr
