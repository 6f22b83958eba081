#include "platform/criticalSection.h"

#include <windows.h>

namespace tsr::platform {

struct CriticalSectionData {
    CRITICAL_SECTION section;
};

CriticalSectionData* createCriticalSection() {
    auto* const created = new CriticalSectionData;
    InitializeCriticalSection(&created->section);
    return created;
}

void deleteCriticalSection(CriticalSectionData* section) {
    DeleteCriticalSection(&section->section);
    delete section;
}

void enterCriticalSection(CriticalSectionData* section) { EnterCriticalSection(&section->section); }

void leaveCriticalSection(CriticalSectionData* section) { LeaveCriticalSection(&section->section); }

} // namespace tsr::platform
