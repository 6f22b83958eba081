#include "hotsync/HotSyncApplication.h"

#include <algorithm>

#include "device/fourCharacterCode.h"

namespace tsr {

const std::vector<HotSyncApplication>& hotSyncApplications() {
    static const std::vector<HotSyncApplication> applications = {
        {"address", fourCharacterCode("addr"), fourCharacterCode("DATA"), "Address"},
        {"datebook", fourCharacterCode("date"), fourCharacterCode("DATA"), "Date Book"},
        {"memo", fourCharacterCode("memo"), fourCharacterCode("DATA"), "Memo Pad"},
        {"todo", fourCharacterCode("todo"), fourCharacterCode("DATA"), "ToDo"},
        {"mail", fourCharacterCode("mail"), fourCharacterCode("DATA"), "Mail"},
        {"freetime", fourCharacterCode("TSRA"), fourCharacterCode("FREE"), "FreeTime"},
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
