#include "tessera/contactDocument.h"

#include <algorithm>

#include "foundation/lines.h"
#include "tessera/categories.h"

namespace tsr {

namespace {

constexpr std::size_t handheldPhones = 5;

struct TextField {
    const char* name;
    std::string Contact::*text;
};

constexpr TextField textFields[] = {
    {"LastName", &Contact::lastName}, {"FirstName", &Contact::firstName}, {"Company", &Contact::company},
    {"Address", &Contact::address},   {"City", &Contact::city},           {"State", &Contact::state},
    {"Zip", &Contact::zip},           {"Country", &Contact::country},     {"Body", &Contact::note},
};
constexpr const char* customNames[] = {"Custom1", "Custom2", "Custom3", "Custom4"};
constexpr char titleName[] = "Title";
constexpr char listedName[] = "PalmListed";
constexpr char preferredName[] = "PalmPreferred";

struct PhoneField {
    const char* name;
    char letter;
};

constexpr std::array<PhoneField, phoneKinds> phoneFields{{{"Work", 'W'},
                                                          {"Home", 'H'},
                                                          {"Fax", 'F'},
                                                          {"Other", 'O'},
                                                          {"Email", 'E'},
                                                          {"Main", 'm'},
                                                          {"Pager", 'P'},
                                                          {"Mobile", 'M'}}};

// Kinds that PalmListed doesn't name take the handheld's free slots in this order.
constexpr char unlistedOrder[] = "EWHFMPOm";

std::vector<std::string> filled(const Properties& properties, const std::string& name) {
    const auto found = properties.find(name);
    if (found == properties.end()) return {};
    std::vector<std::string> values = found->second;
    std::erase(values, "");
    return values;
}

void set(Properties& properties, const std::string& name, const std::vector<std::string>& values) {
    if (values.empty()) {
        properties.erase(name);
    } else {
        properties[name] = values;
    }
}

const PhoneField* phoneField(char letter) {
    const auto* const found =
        std::find_if(phoneFields.begin(), phoneFields.end(),
                     [letter](const PhoneField& field) { return field.letter == letter; });
    return found == phoneFields.end() ? nullptr : found;
}

// Those of `letters` whose numbers a handheld has room for when it is given this document.
std::string lettersWithRoom(const Properties& properties, const std::string& letters) {
    std::string result;
    for (const char letter : letters) {
        const PhoneField* const field = phoneField(letter);
        if (result.size() == handheldPhones || field == nullptr) continue;
        if (result.find(letter) == std::string::npos && !filled(properties, field->name).empty())
            result += letter;
    }
    return result;
}

std::string lettersWhenGiven(const Properties& properties) {
    return lettersWithRoom(properties, firstValue(properties, listedName) + unlistedOrder);
}

// A document without a list was never sent by the handheld, and so was given to it.
std::string lettersOnHandheld(const Properties& properties) {
    if (!properties.contains(listedName)) return lettersWhenGiven(properties);
    return lettersWithRoom(properties, firstValue(properties, listedName));
}

} // namespace

Contact toContact(const Properties& properties) {
    Contact contact;
    for (const auto& [name, text] : textFields) contact.*text = firstValue(properties, name);
    for (std::size_t i = 0; i < contact.customs.size(); ++i)
        contact.customs[i] = firstValue(properties, customNames[i]);
    contact.title = joinLines(filled(properties, titleName));
    const std::string preferred = firstValue(properties, preferredName);
    for (std::size_t kind = 0; kind < phoneKinds; ++kind) {
        contact.phones[kind] = filled(properties, phoneFields[kind].name);
        if (!preferred.empty() && preferred.front() == phoneFields[kind].letter)
            contact.displayed = static_cast<PhoneKind>(kind);
    }
    contact.categories = categoriesOf(properties);
    return contact;
}

void setContact(Properties& properties, const Contact& contact) {
    for (const auto& [name, text] : textFields) properties[name] = {contact.*text};
    for (std::size_t i = 0; i < contact.customs.size(); ++i)
        properties[customNames[i]] = {contact.customs[i]};
    set(properties, titleName, splitLines(contact.title));
    for (std::size_t kind = 0; kind < phoneKinds; ++kind)
        set(properties, phoneFields[kind].name, contact.phones[kind]);
    if (properties.contains(listedName)) properties[listedName] = {lettersWhenGiven(properties)};
    properties[preferredName] = {
        contact.displayed ? std::string(1, phoneFields[static_cast<std::size_t>(*contact.displayed)].letter)
                          : ""};
    setCategories(properties, contact.categories);
}

Properties adoptContact(const Properties& kept, const Properties& sent) {
    Properties properties = kept;
    for (const char letter : lettersOnHandheld(kept)) properties.erase(phoneField(letter)->name);
    properties.erase(titleName);
    adoptCategories(properties, sent);
    for (const auto& [name, values] : sent) {
        if (name != categoryName) properties[name] = values;
    }
    return properties;
}

} // namespace tsr
