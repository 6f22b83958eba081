#include "replication/ContactItems.h"

#include <algorithm>
#include <array>

#include "foundation/lines.h"
#include "handheld/RecordWriter.h"
#include "handheld/forms/AddressForm.h"
#include "replication/deviceText.h"
#include "tessera/contactDocument.h"

namespace tsr::test {

namespace {

constexpr std::size_t slotCount = 5;
constexpr std::size_t firstPhoneBit = 3;
constexpr std::size_t bitCount = 19;

struct Phone {
    char letter;
    const char* name; // in the form of the handheld
    const char* property;
};

// By label.
constexpr std::array<Phone, 8> phones{{{'W', "work", "Work"},
                                       {'H', "home", "Home"},
                                       {'F', "fax", "Fax"},
                                       {'O', "other", "Other"},
                                       {'E', "email", "Email"},
                                       {'m', "main", "Main"},
                                       {'P', "pager", "Pager"},
                                       {'M', "mobile", "Mobile"}}};

// The order in which kinds that Notes doesn't list take the handheld's slots.
constexpr char unlistedOrder[] = "EWHFMPOm";

constexpr std::pair<const char*, const char*> texts[] = {
    {"lastName", "LastName"}, {"firstName", "FirstName"}, {"company", "Company"}, {"address", "Address"},
    {"city", "City"},         {"state", "State"},         {"zip", "Zip"},         {"country", "Country"},
    {"custom1", "Custom1"},   {"custom2", "Custom2"},     {"custom3", "Custom3"}, {"custom4", "Custom4"},
    {"note", "Body"},
};

const Phone* phoneOf(char letter) {
    const auto* const found = std::find_if(phones.begin(), phones.end(),
                                           [=](const Phone& phone) { return phone.letter == letter; });
    return found == phones.end() ? nullptr : found;
}

std::string withoutEmptyLines(const std::string& text) { return joinLines(splitLines(text)); }

std::string valuesOf(const Properties& document, const std::string& name) {
    const auto found = document.find(name);
    return found == document.end() ? "" : withoutEmptyLines(normalizeLineEnds(joinLines(found->second)));
}

// The letters of the kinds of phones that a document has, in the order of `letters`, each once.
std::string filledKinds(const Properties& document, const std::string& letters) {
    std::string result;
    for (const char letter : letters) {
        const Phone* const phone = phoneOf(letter);
        if (phone == nullptr || result.find(letter) != std::string::npos) continue;
        if (!valuesOf(document, phone->property).empty()) result += letter;
    }
    return result;
}

std::string listedKinds(const Properties& document) {
    return filledKinds(document, firstValue(document, "PalmListed"));
}

std::string kindsWhenGiven(const Properties& document) {
    return filledKinds(document, firstValue(document, "PalmListed") + unlistedOrder).substr(0, slotCount);
}

std::string lineOf(const FieldValues& values) {
    std::string line;
    for (const auto& [name, value] : values) {
        if (value.empty()) continue;
        line += (line.empty() ? "" : " ") + name + '=' + value;
    }
    std::replace(line.begin(), line.end(), '\n', '/');
    return line;
}

std::string lineOf(const Properties& document, const std::string& kinds) {
    FieldValues values;
    for (const auto& [name, property] : texts)
        values[name] = normalizeLineEnds(firstValue(document, property));
    values["title"] = valuesOf(document, "Title");
    for (const char kind : kinds) values[phoneOf(kind)->name] = valuesOf(document, phoneOf(kind)->property);
    const std::string preferred = firstValue(document, "PalmPreferred").substr(0, 1);
    const bool isThere = !preferred.empty() && kinds.find(preferred) != std::string::npos;
    if (!kinds.empty()) values["display"] = phoneOf(isThere ? preferred[0] : kinds[0])->name;
    return lineOf(values);
}

// Any slots with any labels, also twice the same one. A slot without a phone is never the one to display.
std::vector<std::uint8_t> randomData(RandomWords& random) {
    std::uint32_t flags = 0;
    std::uint32_t mask = 0;
    std::uint32_t companyOffset = 0;
    RecordWriter strings;
    for (std::size_t bit = 0; bit < bitCount; ++bit) {
        const bool isPhone = bit >= firstPhoneBit && bit < firstPhoneBit + slotCount;
        const auto slot = static_cast<std::uint32_t>(bit - firstPhoneBit);
        if (isPhone) flags |= random.below(8) << 4 * slot;
        if (bit != 0 && random.below(3) != 0) continue;
        if (isPhone && (flags >> 20 == 0 || random.flag())) flags = (flags & 0xFFFFF) | slot << 20;
        if (bit == 2) companyOffset = static_cast<std::uint32_t>(strings.size()) + 1;
        mask |= std::uint32_t{1} << bit;
        strings.string(toDeviceText(bit == 0 ? random.word() + random.serial() : random.linesOfText()));
    }
    RecordWriter record;
    record.number(4, flags).number(4, mask).number(1, companyOffset);
    return record.bytes(strings.take()).take();
}

// One of the kinds of phones goes or gets a number.
std::vector<std::uint8_t> withOtherPhone(RandomWords& random, const std::vector<std::uint8_t>& data) {
    const AddressForm form;
    FieldValues values = form.read(data);
    values["note"] = random.serial();
    values.erase("display");
    const Phone& phone = phones[random.below(8)];
    std::size_t used = 0;
    for (const Phone& each : phones) used += values.count(each.name);
    if (values.count(phone.name) != 0)
        values.erase(phone.name);
    else if (used < slotCount)
        values[phone.name] = random.serial();
    return form.write(values);
}

} // namespace

const char* ContactItems::databaseKind() const { return contactsKind; }
const char* ContactItems::documentKind() const { return contactKind; }

std::string ContactItems::line(const HandheldRecord& record) const {
    FieldValues values = AddressForm().read(record.data);
    for (auto& [name, value] : values) value = fromDeviceText(value);
    values["title"] = withoutEmptyLines(values["title"]);
    for (const Phone& phone : phones) values[phone.name] = withoutEmptyLines(values[phone.name]);
    return lineOf(values);
}

Strings ContactItems::lines(const Properties& document) const {
    Strings lines{lineOf(document, kindsWhenGiven(document))};
    if (document.contains("PalmListed")) lines.push_back(lineOf(document, listedKinds(document)));
    return lines;
}

bool ContactItems::keepsWhatIsInNotesAlone(const Properties& before, const Properties& after) const {
    const std::string onDevice = before.contains("PalmListed") ? listedKinds(before) : kindsWhenGiven(before);
    return std::all_of(phones.begin(), phones.end(), [&](const Phone& phone) {
        const std::string values = valuesOf(before, phone.property);
        return values.empty() || onDevice.find(phone.letter) != std::string::npos
            || listedKinds(after).find(phone.letter) != std::string::npos
            || valuesOf(after, phone.property) == values;
    });
}

HandheldRecord ContactItems::randomRecord(RandomWords& random) const {
    HandheldRecord record;
    record.data = randomData(random);
    return record;
}

HandheldRecord ContactItems::edited(RandomWords& random, const HandheldRecord& record) const {
    HandheldRecord result = record;
    result.data = random.flag() ? randomData(random) : withOtherPhone(random, record.data);
    return result;
}

void ContactItems::rewrite(RandomWords& random, Properties& document) const {
    Contact contact;
    contact.lastName = random.word() + random.serial();
    for (const auto text : {&Contact::firstName, &Contact::company, &Contact::title, &Contact::city}) {
        if (random.flag()) contact.*text = random.word();
    }
    if (random.flag()) contact.note = "One\r\n" + random.linesOfText();
    for (auto& numbers : contact.phones) {
        for (std::uint32_t left = random.below(3); left > 0; --left) numbers.push_back(random.serial());
    }
    if (random.flag()) contact.displayed = static_cast<PhoneKind>(random.below(phoneKinds));
    contact.categories = random.categories();
    setContact(document, contact);
}

void ContactItems::touch(RandomWords& random, Properties& document) const {
    Contact contact = toContact(document);
    contact.note = random.serial();
    auto& numbers = contact.phones[random.below(phoneKinds)];
    if (numbers.empty())
        numbers = {random.serial()};
    else
        numbers.clear();
    const auto categories = document.find("Category");
    const bool hasCategories = categories != document.end();
    const std::vector<std::string> kept = hasCategories ? categories->second : std::vector<std::string>();
    setContact(document, contact);
    if (hasCategories) document["Category"] = kept;
}

} // namespace tsr::test
