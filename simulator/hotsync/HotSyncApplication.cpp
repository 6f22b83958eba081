#include "hotsync/HotSyncApplication.h"

#include <algorithm>

#include "device/fourCharacterCode.h"

namespace tsr {

const std::vector<HotSyncApplication>& hotSyncApplications() {
    static const std::vector<HotSyncApplication> applications = {
        {"address", fourCharacterCode("addr"), fourCharacterCode("DATA"), fourCharacterCode("ADDR"),
         "Address"},
        {"datebook", fourCharacterCode("date"), fourCharacterCode("DATA"), fourCharacterCode("DATE"),
         "Date Book"},
        {"memo", fourCharacterCode("memo"), fourCharacterCode("DATA"), fourCharacterCode("MEMO"), "Memo Pad"},
        {"todo", fourCharacterCode("todo"), fourCharacterCode("DATA"), fourCharacterCode("TODO"), "ToDo"},
        {"mail", fourCharacterCode("mail"), fourCharacterCode("DATA"), fourCharacterCode("MAIL"), "Mail"},
        {"freetime", fourCharacterCode("TSRA"), fourCharacterCode("FREE"), 0, "FreeTime"},
    };
    return applications;
}

const HotSyncApplication* findHotSyncApplication(const std::string& name) {
    const std::vector<HotSyncApplication>& all = hotSyncApplications();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&name](const HotSyncApplication& each) { return each.name == name; });
    return found == all.end() ? nullptr : &*found;
}

} // namespace tsr
