// Playing the demo unseen, as fast as it goes, to tell what its frames cost. Main thread.
#pragma once

#include <string>

class Session;

// Plays from time 0 for `seconds` at 60 frames of demo time a second; the figures as JSON: frames,
// and milliseconds of processor and GPU time a frame and a node, median and 99th percentile.
std::string RunBenchmark(Session& session, double seconds);
