// The four windows of time of the time switches: pairs of text values that are read on each use.
// Main thread.
#pragma once

#include <array>
#include <string>

class Engine;
class Node;

class TimeWindows {
  public:
    // Declares "Start A", "Stop A" to "Start D", "Stop D" on a node, in seconds.
    void declareOn(Engine& engine, Node& node);

    // What the windows say of a time, given what was hidden before: the scan ends at the first
    // window that holds the time.
    struct Scan {
        bool found = false;      // a window holds the time
        bool missedOne = false;  // a live window that does not hold it was met before
    };
    Scan scan(float timeSeconds) const;

  private:
    struct Window {
        std::string start, stop;
    };
    std::array<Window, 4> windows_;
};
