#include "platform/criticalSection.h"

#include <mutex>

namespace tsr::platform {

struct CriticalSectionData {
    std::recursive_mutex mutex;
};

CriticalSectionData* createCriticalSection() { return new CriticalSectionData; }

void deleteCriticalSection(CriticalSectionData* section) { delete section; }

void enterCriticalSection(CriticalSectionData* section) { section->mutex.lock(); }

void leaveCriticalSection(CriticalSectionData* section) { section->mutex.unlock(); }

} // namespace tsr::platform
