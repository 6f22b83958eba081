#include "interchange/vCard.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "foundation/lines.h"
#include "interchange/InterchangeError.h"
#include "interchange/contentLines.h"

namespace tsr {

namespace {

struct PhoneType {
    const char* type;
    PhoneKind kind;
};

// In the order in which they count: a fax at home is a fax.
constexpr PhoneType phoneTypes[] = {
    {"fax", PhoneKind::Fax},          {"pager", PhoneKind::Pager}, {"cell", PhoneKind::Mobile},
    {"main-number", PhoneKind::Main}, {"main", PhoneKind::Main},   {"home", PhoneKind::Home},
    {"work", PhoneKind::Work},
};

[[noreturn]] void raise(const ContentLine& line, const std::string& what) {
    throw InterchangeError("line " + std::to_string(line.number) + ": " + what);
}

std::string inSmallLetters(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::set<std::string> typesOf(const ContentLine& line) {
    std::set<std::string> types;
    for (const auto& [name, value] : line.parameters) {
        if (name == "TYPE") {
            for (const std::string& type : splitOn(value, ',')) types.insert(inSmallLetters(type));
        }
        if (name == "PREF") types.insert("pref");
    }
    return types;
}

PhoneKind phoneKind(const std::set<std::string>& types) {
    for (const PhoneType& row : phoneTypes) {
        if (types.contains(row.type)) return row.kind;
    }
    return PhoneKind::Other;
}

void addPhone(Contact& contact, const ContentLine& line) {
    const std::set<std::string> types = typesOf(line);
    const PhoneKind kind = line.name == "EMAIL" ? PhoneKind::Email : phoneKind(types);
    std::string number = unescaped(line.value);
    if (number.starts_with("tel:")) number.erase(0, 4);
    if (number.empty()) return;
    contact.phonesOf(kind).push_back(number);
    if (types.contains("pref") && !contact.displayed) contact.displayed = kind;
}

// The first parts of a value; those that it doesn't have are empty.
std::vector<std::string> parts(const ContentLine& line, std::size_t count) {
    std::vector<std::string> parts = splitValue(line.value, ';');
    parts.resize(count);
    return parts;
}

void setName(Contact& contact, const ContentLine& line) {
    const auto names = parts(line, 2);
    contact.lastName = names[0];
    contact.firstName = names[1];
}

void setAddress(Contact& contact, const ContentLine& line) {
    const auto fields = parts(line, 7); // box, extension, street, city, state, code, country
    contact.address = joinLines({fields[0], fields[1], fields[2]});
    contact.city = fields[3];
    contact.state = fields[4];
    contact.zip = fields[5];
    contact.country = fields[6];
}

void setCompany(Contact& contact, const ContentLine& line) {
    contact.company.clear();
    for (const std::string& unit : splitValue(line.value, ';')) {
        if (!unit.empty()) contact.company += (contact.company.empty() ? "" : ", ") + unit;
    }
}

void addText(std::string& text, const ContentLine& line) {
    text += (text.empty() ? "" : "\n") + unescaped(line.value);
}

void addCategories(Contact& contact, const ContentLine& line) {
    for (const std::string& category : splitValue(line.value, ',')) {
        if (!category.empty()) contact.categories.push_back(category);
    }
}

void take(Contact& contact, std::string& fullName, const ContentLine& line) {
    const std::string& name = line.name;
    if (name == "N") setName(contact, line);
    if (name == "FN") fullName = unescaped(line.value);
    if (name == "ORG") setCompany(contact, line);
    if (name == "TITLE") addText(contact.title, line);
    if (name == "ADR" && contact.address.empty() && contact.city.empty()) setAddress(contact, line);
    if (name == "NOTE") addText(contact.note, line);
    if (name == "CATEGORIES") addCategories(contact, line);
    if (name == "TEL" || name == "EMAIL") addPhone(contact, line);
    if (name.size() == 9 && name.starts_with("X-CUSTOM") && name[8] >= '1' && name[8] <= '4')
        contact.customs[static_cast<std::size_t>(name[8] - '1')] = unescaped(line.value);
    if (name == "VERSION" && line.value != "3.0" && line.value != "4.0")
        raise(line, "vCards of version " + line.value + " are not known, only 3.0 and 4.0");
}

Contact readCard(const std::vector<ContentLine>& lines, std::size_t& at) {
    Contact contact;
    std::string fullName;
    const ContentLine& first = lines[at];
    for (++at; at < lines.size(); ++at) {
        const ContentLine& line = lines[at];
        if (line.name == "BEGIN") raise(line, "a card begins within another");
        if (line.name == "END") {
            if (contact.name().empty()) contact.lastName = fullName;
            return contact;
        }
        take(contact, fullName, line);
    }
    raise(first, "the card has no end");
}

class CardWriter {
public:
    explicit CardWriter(VCardVersion version) : version_(version) {}

    void line(const std::string& name, const std::string& value) { text_ += foldedLine(name + ":" + value); }
    void text(const std::string& name, const std::string& value) {
        if (!value.empty()) line(name, escaped(value));
    }
    void card(const Contact& contact);

    std::string take() { return std::move(text_); }

private:
    void phones(const Contact& contact);
    std::string types(const char* type, bool preferred) const;

    VCardVersion version_;
    std::string text_;
};

// ";TYPE=home;PREF=1", or as 3.0 has it, ";TYPE=home,pref".
std::string CardWriter::types(const char* type, bool preferred) const {
    if (version_ == VCardVersion::V4)
        return (*type ? std::string(";TYPE=") + type : "") + (preferred ? ";PREF=1" : "");
    if (!*type) return preferred ? ";TYPE=pref" : "";
    return std::string(";TYPE=") + type + (preferred ? ",pref" : "");
}

void CardWriter::phones(const Contact& contact) {
    for (std::size_t i = 0; i < phoneKinds; ++i) {
        const auto kind = static_cast<PhoneKind>(i);
        const auto* const type = std::find_if(std::begin(phoneTypes), std::end(phoneTypes),
                                              [kind](const PhoneType& row) { return row.kind == kind; });
        bool preferred = contact.displayed == kind; // the first number of the kind
        for (const std::string& number : contact.phones[i]) {
            const char* const name = kind == PhoneKind::Email ? "EMAIL" : "TEL";
            line(name + types(type == std::end(phoneTypes) ? "" : type->type, preferred), escaped(number));
            preferred = false;
        }
    }
}

void CardWriter::card(const Contact& contact) {
    const std::string shown = contact.firstName + (contact.firstName.empty() ? "" : " ") + contact.lastName;
    line("BEGIN", "VCARD");
    line("VERSION", version_ == VCardVersion::V4 ? "4.0" : "3.0");
    line("FN", escaped(shown.empty() ? contact.company : shown)); // must be there
    line("N", escaped(contact.lastName) + ";" + escaped(contact.firstName) + ";;;");
    text("ORG", contact.company);
    for (const std::string& title : splitLines(contact.title)) text("TITLE", title);
    phones(contact);
    const std::string place = escaped(contact.city) + ";" + escaped(contact.state) + ";"
                            + escaped(contact.zip) + ";" + escaped(contact.country);
    if (!contact.address.empty() || place != ";;;")
        line("ADR", ";;" + escaped(contact.address) + ";" + place);
    for (std::size_t i = 0; i < contact.customs.size(); ++i)
        text("X-CUSTOM" + std::to_string(i + 1), contact.customs[i]);
    text("NOTE", contact.note);
    std::string categories;
    for (const std::string& category : contact.categories)
        categories += (categories.empty() ? "" : ",") + escaped(category);
    if (!categories.empty()) line("CATEGORIES", categories);
    line("END", "VCARD");
}

} // namespace

std::vector<Contact> readVCards(const std::string& text) {
    const std::vector<ContentLine> lines = readContentLines(text);
    std::vector<Contact> contacts;
    for (std::size_t at = 0; at < lines.size(); ++at) {
        if (lines[at].name != "BEGIN" || inSmallLetters(lines[at].value) != "vcard")
            raise(lines[at], "a card begins with BEGIN:VCARD");
        contacts.push_back(readCard(lines, at));
    }
    return contacts;
}

std::string vCardText(const std::vector<Contact>& contacts, VCardVersion version) {
    CardWriter writer(version);
    for (const Contact& contact : contacts) writer.card(contact);
    return writer.take();
}

} // namespace tsr
