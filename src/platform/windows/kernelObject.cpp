#include "platform/kernelObject.h"

#include <process.h>
#include <windows.h>

namespace tsr::platform {

namespace {

HANDLE native(KernelHandle handle) { return reinterpret_cast<HANDLE>(handle); }

} // namespace

KernelHandle createEvent(bool manualReset) {
    return reinterpret_cast<KernelHandle>(::CreateEventA(nullptr, manualReset, FALSE, nullptr));
}

bool setEvent(KernelHandle event) { return ::SetEvent(native(event)) != FALSE; }

std::uint32_t waitFor(KernelHandle object, std::uint32_t milliseconds) {
    return ::WaitForSingleObject(native(object), milliseconds);
}

KernelHandle startThread(ThreadEntry entry, void* argument) {
    return ::_beginthreadex(nullptr, 0, reinterpret_cast<unsigned(__stdcall*)(void*)>(entry), argument, 0,
                            nullptr);
}

bool closeHandle(KernelHandle object) { return ::CloseHandle(native(object)) != FALSE; }

} // namespace tsr::platform
