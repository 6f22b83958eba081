#include "tessera/commands/ContactForm.h"

#include "tessera/commands/ArgumentError.h"
#include "tessera/contactDocument.h"

namespace tsr {

namespace {

// The texts of a contact by their names in JSON and in options.
struct TextField {
    const char* name;
    const char* option;
    const char* title;
    std::string& (*of)(Contact& contact);
};

constexpr TextField textFields[] = {
    {"lastName", "--last-name", "Last name", [](Contact& c) -> std::string& { return c.lastName; }},
    {"firstName", "--first-name", "First name", [](Contact& c) -> std::string& { return c.firstName; }},
    {"company", "--company", "Company", [](Contact& c) -> std::string& { return c.company; }},
    {"title", "--title", "Title", [](Contact& c) -> std::string& { return c.title; }},
    {"address", "--address", "Address", [](Contact& c) -> std::string& { return c.address; }},
    {"city", "--city", "City", [](Contact& c) -> std::string& { return c.city; }},
    {"state", "--state", "State", [](Contact& c) -> std::string& { return c.state; }},
    {"zip", "--zip", "Zip", [](Contact& c) -> std::string& { return c.zip; }},
    {"country", "--country", "Country", [](Contact& c) -> std::string& { return c.country; }},
    {"custom1", "--custom1", "Custom 1", [](Contact& c) -> std::string& { return c.customs[0]; }},
    {"custom2", "--custom2", "Custom 2", [](Contact& c) -> std::string& { return c.customs[1]; }},
    {"custom3", "--custom3", "Custom 3", [](Contact& c) -> std::string& { return c.customs[2]; }},
    {"custom4", "--custom4", "Custom 4", [](Contact& c) -> std::string& { return c.customs[3]; }},
    {"note", "--note", "Note", [](Contact& c) -> std::string& { return c.note; }},
};

std::vector<PhoneKind> allPhoneKinds() {
    std::vector<PhoneKind> kinds;
    for (std::size_t kind = 0; kind < phoneKinds; ++kind) kinds.push_back(static_cast<PhoneKind>(kind));
    return kinds;
}

std::string joined(const std::vector<std::string>& texts) {
    std::string text;
    for (const std::string& part : texts) text += (text.empty() ? "" : ", ") + part;
    return text;
}

// The number that a list shows: that of the displayed kind, or the first that there is.
std::string shownPhone(const Contact& contact) {
    if (contact.displayed && !contact.phonesOf(*contact.displayed).empty())
        return contact.phonesOf(*contact.displayed).front();
    for (const auto& numbers : contact.phones) {
        if (!numbers.empty()) return numbers.front();
    }
    return "";
}

PhoneKind parsedKind(const std::string& name) {
    const auto kind = phoneKindOf(name);
    if (!kind) throw ArgumentError("'" + name + "' is not a kind of phone such as work or mobile");
    return *kind;
}

} // namespace

const DocumentForm::Words& ContactForm::words() const {
    static constexpr Words words{
        .databaseKind = contactsKind,
        .documentKind = contactKind,
        .noun = "contact",
        .plural = "contacts",
        .place = "address book",
        .addExample =
            "  tessera office.db add contact --user \"Pat Lee\" --last-name Muster --first-name Max \\\n"
            "      --work 555-0100 --mobile 555-0101 --display mobile --category Business",
        .editExample = "  tessera office.db edit contact --user \"Pat Lee\" 94515958 --work 555-0102",
    };
    return words;
}

std::vector<std::string> ContactForm::row(const Document& document) const {
    const Contact contact = toContact(document.properties);
    return {contact.name(), contact.company, shownPhone(contact), joinedCategories(contact.categories)};
}

std::vector<std::pair<std::string, std::string>> ContactForm::details(const Document& document) const {
    Contact contact = toContact(document.properties);
    std::vector<std::pair<std::string, std::string>> lines;
    const auto add = [&lines](const std::string& name, const std::string& value) {
        if (!value.empty()) lines.emplace_back(name, value);
    };
    for (const TextField& field : textFields) {
        if (&field.of(contact) != &contact.note) add(field.title, field.of(contact));
    }
    for (const PhoneKind kind : allPhoneKinds()) {
        add(std::string("Phone, ") + phoneKindName(kind) + (contact.displayed == kind ? " (displayed)" : ""),
            joined(contact.phonesOf(kind)));
    }
    add("Categories", joinedCategories(contact.categories));
    return lines;
}

std::string ContactForm::text(const Document& document) const { return toContact(document.properties).note; }

CLI::Option* ContactForm::addSettings(CLI::App& command) {
    for (const TextField& field : textFields)
        command.add_option(field.option, texts_[field.name], field.title);
    for (const PhoneKind kind : allPhoneKinds()) {
        const std::string name = phoneKindName(kind);
        command
            .add_option_function<std::vector<std::string>>(
                "--" + name,
                [this, kind](const std::vector<std::string>& numbers) {
                    phones_[static_cast<std::size_t>(kind)] = numbers;
                },
                "A number of the kind " + name + ", for all that it had; empty for none")
            ->allow_extra_args(false)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    }
    command.add_option("--display", displayed_, "The kind of phone that a list shows");
    categories_.addTo(command);
    return nullptr;
}

void ContactForm::apply(const TesseraCommandLine&, Document& document) const {
    Contact contact = toContact(document.properties);
    for (const TextField& field : textFields) {
        const auto text = texts_.find(field.name);
        if (text != texts_.end() && text->second) field.of(contact) = *text->second;
    }
    for (std::size_t kind = 0; kind < phoneKinds; ++kind) {
        if (!phones_[kind]) continue;
        contact.phones[kind] = *phones_[kind];
        std::erase(contact.phones[kind], "");
    }
    if (displayed_) contact.displayed = parsedKind(*displayed_);
    categories_.apply(contact.categories);
    setContact(document.properties, contact);
}

DocumentForm::Json ContactForm::toJson(const Document& document) const {
    Contact contact = toContact(document.properties);
    Json json = Json::object();
    for (const TextField& field : textFields) {
        if (!field.of(contact).empty()) json[field.name] = field.of(contact);
    }
    for (const PhoneKind kind : allPhoneKinds()) {
        if (!contact.phonesOf(kind).empty()) json["phones"][phoneKindName(kind)] = contact.phonesOf(kind);
    }
    if (contact.displayed) json["displayed"] = phoneKindName(*contact.displayed);
    json["categories"] = contact.categories;
    return json;
}

Properties ContactForm::fromJson(const Json& json) const {
    Contact contact;
    for (const TextField& field : textFields) field.of(contact) = json.value(field.name, "");
    const Json phones = json.value("phones", Json::object());
    for (const auto& [name, numbers] : phones.items()) {
        contact.phonesOf(parsedKind(name)) = numbers.get<std::vector<std::string>>();
        std::erase(contact.phonesOf(parsedKind(name)), "");
    }
    if (json.contains("displayed")) contact.displayed = parsedKind(json.at("displayed").get<std::string>());
    contact.categories = json.value("categories", std::vector<std::string>());
    Properties properties;
    setContact(properties, contact);
    return properties;
}

} // namespace tsr
