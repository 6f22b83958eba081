#pragma once

#include <string>
#include <vector>

namespace tsr {

// What a contact has under the same names on both sides.
struct AddressTexts {
    std::string address;
    std::string city;
    std::string company;
    std::string country;
    std::string custom1;
    std::string custom2;
    std::string custom3;
    std::string custom4;
    std::string firstName;
    std::string lastName;
    std::string state;
    std::string zip;
    std::vector<std::string> title;

    std::string fullName() const { return lastName + ", " + firstName; } // by which messages name the contact
};

} // namespace tsr
