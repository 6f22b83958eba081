#pragma once

#include <cstdint>

#include "platform/callingConvention.h"

namespace tsr::platform {

// Names an event or a thread of the operating system. 0 and all ones name none.
using KernelHandle = std::uintptr_t;

// Results of a wait.
constexpr std::uint32_t waitSignalled = 0;
constexpr std::uint32_t waitTimedOut = 258;
constexpr std::uint32_t waitFailed = 0xFFFFFFFF;

constexpr std::uint32_t infinitely = 0xFFFFFFFF;

// What a thread runs; the result is its exit code, where the system keeps one.
using ThreadEntry = std::uint32_t(TSR_THREAD_CALL*)(void* argument);

// Each of these sets the last error where it fails; that of a thread that can't be started is what the
// run-time library has left of it.
KernelHandle createEvent(bool manualReset); // unnamed and not signalled; 0 on failure
bool setEvent(KernelHandle event);
// Waits for an event to be set or for a thread to end. An event without manual reset goes back as one waiter
// is let through.
std::uint32_t waitFor(KernelHandle object, std::uint32_t milliseconds);
KernelHandle startThread(ThreadEntry entry, void* argument); // 0 or all ones on failure
bool closeHandle(KernelHandle object);                       // a thread runs on

} // namespace tsr::platform
