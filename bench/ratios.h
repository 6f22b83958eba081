#pragma once

#include <cstddef>
#include <string>

namespace tsr::bench {

// Wants the time of the benchmark `job` set against that of `reference`, at the end of the run, with the
// ratio that it should stay below, if there is one. Returns true, so that it can be called as a constant is
// set up.
bool compare(const std::string& job, const std::string& reference, double bar = 0);

// Wants the rate at which `job` goes through `bytes` bytes, in MB (10^6 bytes) a second on one core, with the
// rate that it should stay above, if there is one. Returns true, likewise.
bool requireRate(const std::string& job, std::size_t bytes, double bar = 0);

// Wants the rate at which `job`, which does one record a turn, goes through records, in millions a second on
// one core, with the rate that it should stay above. Returns true, likewise.
bool requireRecords(const std::string& job, double bar);

// The median of a benchmark's repetitions counts, which come interleaved with those of the others: what else
// goes on in this machine then meets all alike.
void noteTime(const std::string& name, double nanoseconds);

// Wants the memory that `job` takes for each item to stay below `bar` bytes, if there is one. A note is the
// most of all runs.
void limitMemory(const std::string& job, double bar);
void noteMemory(const std::string& name, double bytes);

void printTimes(); // in microseconds, of everything that was noted
void printRatios();

} // namespace tsr::bench
