#pragma once

#include "tessera/Differences.h"
#include "tessera/ZoneRule.h"

namespace tsr {

// What a handheld in `zone` may say of a repeating meeting in the place of a whole version:
//
//   Exception.0.Kill                          "Yes": it is deleted
//   DeletionCount, Deletion.N.OriginalDate    from 0: days that are deleted
//   ExceptionCount, Exception.N.PatternDate, .Date, .Subject, .Body, .AllDay, .Duration
//                                             from 0: days that are another. The date is a moment in minutes
//                                             since 1601 UTC, the body hexadecimal, and an instance of whole
//                                             days has one minute
//
// The day that the handheld names is the one on which its record is. That is an exception that Notes has
// moved there, or else one that the pattern has there, or else a new one.
//
// Deletions always prevail. A changed day prevails too, or else, when Notes' version does, it becomes a
// meeting of its own, unless it is as Notes has it.
//
// Raises RequestRefused for what cannot be read, and TesseraError for a time that Notes can't say.
Differences meetingDifferences(const Properties& kept, const Properties& sent, const ZoneRule& zone,
                               bool notesPrevails);

} // namespace tsr
