#pragma once

#include "platform/criticalSection.h"

namespace tsr {

// A lock on the platform's terms.
class CriticalSection {
public:
    CriticalSection() : section_(platform::createCriticalSection()) {}
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;
    ~CriticalSection() { platform::deleteCriticalSection(section_); }

    void enter() { platform::enterCriticalSection(section_); }
    void leave() { platform::leaveCriticalSection(section_); }

private:
    platform::CriticalSectionData* section_;
};

// Holds a critical section for as long as it lives.
class CriticalSectionGuard {
public:
    explicit CriticalSectionGuard(CriticalSection& section) : section_(section) { section_.enter(); }
    CriticalSectionGuard(const CriticalSectionGuard&) = delete;
    CriticalSectionGuard& operator=(const CriticalSectionGuard&) = delete;
    ~CriticalSectionGuard() { section_.leave(); }

private:
    CriticalSection& section_;
};

} // namespace tsr
