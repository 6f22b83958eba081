#include "records/addressConversion.h"

namespace tsr {

namespace {

// The order in which kinds that Notes doesn't list take slots, and that of the letters of the listed ones.
constexpr std::int32_t fallbackOrder[] = {EmailPhone,  WorkPhone,  HomePhone,  FaxPhone,
                                          MobilePhone, PagerPhone, OtherPhone, MainPhone};
constexpr std::int32_t listedOrder[] = {FaxPhone,   WorkPhone,  HomePhone,  MainPhone,
                                        OtherPhone, EmailPhone, PagerPhone, MobilePhone};

std::string withoutRepeats(const std::string& letters) {
    std::string result;
    for (const char letter : letters) {
        if (result.find(letter) == std::string::npos) result += letter;
    }
    return result;
}

void setPhones(PalmAddressRecord& palm, const NotesAddressRecord& notes) {
    const auto add = [&](std::int32_t label) {
        palm.addPhones(label, notes.phones[static_cast<std::size_t>(label)]);
    };
    for (const char letter : withoutRepeats(notes.palmListed)) {
        if (const auto label = labelOfPhoneLetter(letter)) add(*label);
    }
    for (const std::int32_t label : fallbackOrder) {
        if (!palm.hasPhone(label)) add(label);
    }
    palm.setDisplayFromLetter(notes.palmPreferred);
}

void setPhones(NotesAddressRecord& notes, const PalmAddressRecord& palm) {
    for (const std::int32_t label : listedOrder) {
        std::vector<std::string>& values = notes.phones[static_cast<std::size_t>(label)];
        values = palm.phones(label);
        if (!values.empty()) notes.palmListed += phoneLetter(label);
    }
    notes.palmPreferred = phoneLetter(palm.displayLabel());
}

} // namespace

PalmAddressRecord toPalmAddressRecord(const NotesAddressRecord& notes) {
    PalmAddressRecord palm;
    static_cast<AddressTexts&>(palm) = static_cast<const AddressTexts&>(notes);
    palm.note = notes.body;
    setPhones(palm, notes);
    return palm;
}

NotesAddressRecord toNotesAddressRecord(const PalmAddressRecord& palm) {
    NotesAddressRecord notes;
    static_cast<AddressTexts&>(notes) = static_cast<const AddressTexts&>(palm);
    notes.body = palm.note;
    setPhones(notes, palm);
    return notes;
}

} // namespace tsr
