#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tsr {

// The kinds of phones that an address book knows, in the order of the handheld's labels.
enum class PhoneKind { Work, Home, Fax, Other, Email, Main, Pager, Mobile };

inline constexpr std::size_t phoneKinds = 8;

// "work" to "mobile".
const char* phoneKindName(PhoneKind kind);
std::optional<PhoneKind> phoneKindOf(const std::string& name); // of these names; empty for another

// A person as people know him. Texts are UTF-8, and what isn't known is empty.
struct Contact {
    std::string lastName;
    std::string firstName;
    std::string company;
    std::string title; // may have several lines, as the next four texts and the note
    std::string address;
    std::string city;
    std::string state;
    std::string zip;
    std::string country;
    std::array<std::string, 4> customs;
    std::string note;
    std::array<std::vector<std::string>, phoneKinds> phones; // by kind; no number is empty
    std::optional<PhoneKind> displayed;                      // the kind that a list of contacts shows
    std::vector<std::string> categories;                     // none of them empty

    std::vector<std::string>& phonesOf(PhoneKind kind) { return phones[static_cast<std::size_t>(kind)]; }
    const std::vector<std::string>& phonesOf(PhoneKind kind) const {
        return phones[static_cast<std::size_t>(kind)];
    }
    std::string name() const; // "Lee, Pat"; the company for one without a name

    bool operator==(const Contact&) const = default;
};

} // namespace tsr
