#pragma once

#include <string>

namespace tsr::bench {

// Wants the time of the benchmark `job` set against that of `reference`, at the end of the run, with the
// ratio that it should stay below, if there is one. Returns true, so that it can be called as a constant is
// set up.
bool compare(const std::string& job, const std::string& reference, double bar = 0);

// The best time of a benchmark's repetitions counts: what other programs do to this machine only adds to it.
void noteTime(const std::string& name, double nanoseconds);

void printRatios();

} // namespace tsr::bench
