#pragma once

namespace tsr::platform {

// A lock on the heap that one thread holds at a time, and may enter again while it holds it.
struct CriticalSectionData;

CriticalSectionData* createCriticalSection();
void deleteCriticalSection(CriticalSectionData* section);
void enterCriticalSection(CriticalSectionData* section);
void leaveCriticalSection(CriticalSectionData* section);

} // namespace tsr::platform
