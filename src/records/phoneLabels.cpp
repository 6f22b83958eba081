#include "records/phoneLabels.h"

#include <string_view>

#include "foundation/GeneralError.h"

namespace tsr {

namespace {

constexpr std::string_view letters = "WHFOEmPM"; // by label
static_assert(letters.size() == phoneLabelCount);

} // namespace

std::int32_t checkedPhoneLabel(std::int32_t label) {
    if (label < 0 || label >= phoneLabelCount)
        throw GeneralError(Message::InvalidPhoneLabel) << Tag('n') << label;
    return label;
}

char phoneLetter(std::int32_t label) { return letters[static_cast<std::size_t>(checkedPhoneLabel(label))]; }

std::optional<std::int32_t> labelOfPhoneLetter(char letter) {
    const std::size_t label = letters.find(letter);
    if (label == std::string_view::npos) return std::nullopt;
    return static_cast<std::int32_t>(label);
}

} // namespace tsr
