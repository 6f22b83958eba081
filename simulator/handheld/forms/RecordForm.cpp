#include "handheld/forms/RecordForm.h"

#include <algorithm>

#include "handheld/forms/AddressForm.h"
#include "handheld/forms/DatebookForm.h"
#include "handheld/forms/MailForm.h"
#include "handheld/forms/MemoForm.h"
#include "handheld/forms/ToDoForm.h"

namespace tsr {

void RecordForm::checkNames(const FieldValues& values) const {
    const std::vector<std::string> known = fields();
    std::string names;
    for (const std::string& name : known) names += (names.empty() ? "" : ", ") + name;
    for (const auto& [name, value] : values) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            throw FieldError("there is no field " + name + "; there are " + names);
        }
    }
}

const RecordForm* recordForm(const std::string& database) {
    static const AddressForm address;
    static const DatebookForm datebook;
    static const MailForm mail;
    static const MemoForm memo;
    static const ToDoForm todo;
    static const std::map<std::string, const RecordForm*> forms = {{"AddressDB", &address},
                                                                   {"DatebookDB", &datebook},
                                                                   {"MailDB", &mail},
                                                                   {"MemoDB", &memo},
                                                                   {"ToDoDB", &todo}};
    const auto found = forms.find(database);
    return found == forms.end() ? nullptr : found->second;
}

} // namespace tsr
