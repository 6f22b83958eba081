#pragma once

#include <array>
#include <string>
#include <vector>

#include "records/AddressTexts.h"
#include "records/NotesApplicationRecord.h"
#include "records/phoneLabels.h"

namespace tsr {

// One contact of Notes. Line ends become LF on arrival, and lists lose their empty values.
//
//   property                          value
//   "Address", "City", "Company", "Country", "Custom1" to "Custom4", "FirstName", "LastName", "State", "Zip"
//   "Body"                            the note
//   "Title"                           a list
//   "Work", "Home", "Fax", "Other", "Email", "Main", "Pager", "Mobile"
//                                     phones of a kind, a list; sent for the kinds in "PalmListed" alone
//   "PalmListed"                      letters of the kinds that the handheld has, see records/phoneLabels.h
//   "PalmPreferred"                   letter of the kind that the handheld displays
//   "Category"                        one value for each category
class NotesAddressRecord : public NotesApplicationRecord, public AddressTexts {
public:
    NotesAddressRecord() = default;
    NotesAddressRecord(const NotesItem& item, const TimeZone& timeZone); // what is missing stays empty

    void addTo(NotesItem& item, const TimeZone& timeZone) const override;
    std::string description() const override { return fullName(); }

    std::string body;
    std::array<std::vector<std::string>, phoneLabelCount> phones; // by label
    std::string palmListed;
    std::string palmPreferred;
    std::vector<std::string> categories;
};

} // namespace tsr
