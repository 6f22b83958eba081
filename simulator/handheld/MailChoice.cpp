#include "handheld/MailChoice.h"

#include "handheld/HandheldError.h"
#include "handheld/RecordReader.h"
#include "handheld/RecordWriter.h"

namespace tsr {

namespace {

constexpr std::size_t mostBytes = 1024;
constexpr std::uint16_t firstVersion = 1;

PreferenceKey keyOf(std::uint16_t id) { return {fourCharacterCode("mail"), id, true}; }

const PreferenceKey filterKey = keyOf(1);
const PreferenceKey signatureKey = keyOf(3);

const Preference* find(const Handheld& handheld, const PreferenceKey& key) {
    const auto found = handheld.preferences.find(key);
    return found == handheld.preferences.end() ? nullptr : &found->second;
}

// A preference that is there already keeps its version.
void set(Handheld& handheld, const PreferenceKey& key, std::vector<std::uint8_t> data, const char* what) {
    if (data.size() > mostBytes) throw HandheldError(std::string(what) + " takes at most 1,024 bytes");
    const Preference* const known = find(handheld, key);
    handheld.preferences[key] = {known == nullptr ? firstVersion : known->version, std::move(data)};
}

} // namespace

MailFilter mailFilter(const Handheld& handheld) {
    const Preference* const preference = find(handheld, filterKey);
    if (preference == nullptr) return {};
    RecordReader reader(preference->data);
    MailFilter filter;
    const std::uint32_t kind = reader.number(1);
    if (kind > static_cast<std::uint32_t>(MailFilter::Kind::Unread))
        throw HandheldError("the filter of Mail is of a kind that nobody knows: " + std::to_string(kind));
    filter.kind = static_cast<MailFilter::Kind>(kind);
    filter.passesHigh = reader.number(1) != 0;
    filter.wantsMatching = reader.number(1) != 0;
    reader.number(1);
    filter.longestBody = static_cast<std::uint16_t>(reader.number(2));
    filter.to = reader.string();
    filter.from = reader.string();
    filter.subject = reader.string();
    return filter;
}

void setMailFilter(Handheld& handheld, const MailFilter& filter) {
    RecordWriter preference;
    preference.number(1, static_cast<std::uint32_t>(filter.kind))
        .number(1, filter.passesHigh ? 1 : 0)
        .number(1, filter.wantsMatching ? 1 : 0)
        .number(1, 0)
        .number(2, filter.longestBody);
    preference.string(filter.to).string(filter.from).string(filter.subject);
    set(handheld, filterKey, preference.take(), "the filter of Mail");
}

std::string mailSignature(const Handheld& handheld) {
    const Preference* const preference = find(handheld, signatureKey);
    return preference == nullptr ? std::string() : RecordReader(preference->data).string();
}

void setMailSignature(Handheld& handheld, const std::string& signature) {
    if (signature.empty())
        handheld.preferences.erase(signatureKey);
    else
        set(handheld, signatureKey, RecordWriter().string(signature).take(), "the signature");
}

} // namespace tsr
