#pragma once

#include <string>

namespace tsr::bench {

// Wants the time of the benchmark `job` set against that of `reference`, at the end of the run, with the
// ratio that it should stay below, if there is one. Returns true, so that it can be called as a constant is
// set up.
bool compare(const std::string& job, const std::string& reference, double bar = 0);

// The median of a benchmark's repetitions counts, which come interleaved with those of the others: what else
// goes on in this machine then meets all alike.
void noteTime(const std::string& name, double nanoseconds);

void printRatios();

} // namespace tsr::bench
