#pragma once

#include <cstdint>

#include "handheld/export.h"

// What a HotSync manager and tests do with the simulated Sync Manager library beside the Sync Manager's own
// functions: put a handheld behind it, order faults, look at the calls.
//
// One handheld is attached at a time. Without one, every function of the Sync Manager answers 0x400A.

namespace tsr {
struct Handheld;
}

extern "C" {

// Puts a handheld in memory behind the library. It must live until it is detached; nothing is written
// anywhere. The caller must be built with the same compiler, as C++ objects cross the border here.
TSR_EXPORT void handheldAttach(tsr::Handheld* handheld);

// Opens the handheld in a folder: 0, or 1 with a reason in handheldError. Databases are saved as they are
// closed.
TSR_EXPORT std::int32_t handheldOpenFolder(const char* path);

// The handheld that is attached, also that of a folder; null when there is none.
TSR_EXPORT tsr::Handheld* handheldAttached();

// Ends the HotSync: closes all databases, saves a folder. Faults, counters and the trace stay. 0, or 1 with a
// reason.
TSR_EXPORT std::int32_t handheldEndSession();

// The same, and then lets go of the handheld and forgets faults, counters and the trace.
TSR_EXPORT std::int32_t handheldDetach();

// One line about the last failure of a function above or of a save; valid until the next one.
TSR_EXPORT const char* handheldError();

// Calls of the Sync Manager are counted from 1, all together and for each function ("SyncWriteRec").
// Conversions of byte order are no calls. A call that fails by order does nothing else.
TSR_EXPORT void handheldFailCall(std::uint64_t number, std::int32_t code);
TSR_EXPORT void handheldFailFunction(const char* function, std::uint64_t number, std::int32_t code);
TSR_EXPORT void handheldPullCable(std::uint64_t number); // this call and all behind it fail with 0x10006410
TSR_EXPORT void handheldAnswerModule(const void* result, std::uint32_t size); // in place of the module's work
TSR_EXPORT void handheldMend();                                               // takes all orders back
TSR_EXPORT void handheldRestartCount(); // counts from 1 again and forgets the trace; orders stay

TSR_EXPORT std::uint64_t handheldCallCount();
TSR_EXPORT std::uint64_t handheldFunctionCallCount(const char* function);
TSR_EXPORT std::uint64_t handheldOpenDatabases();

// The calls as text, once tracing is on: `SyncOpenDB("MemoDB", 0, 0xE0)`, with a result other than 0 behind
// it as ` -> 0x4003`. A line is null from the count on, and valid until the next call.
TSR_EXPORT void handheldSetTracing(std::int32_t on);
TSR_EXPORT std::uint64_t handheldTraceCount();
TSR_EXPORT const char* handheldTraceLine(std::uint64_t index);

} // extern "C"
