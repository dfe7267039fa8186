// What became of faults, a line per operation and a total per family.
#pragma once

#include <string>

struct Tally {
    long tried = 0;
    long told = 0;
    long lost = 0;       // neither old nor new, leaked, or thrown
    long leftovers = 0;  // temporary files of killed processes
};

class Family {
public:
    explicit Family(const std::string& name);
    // An operation that no fault could be tried on counts as lost: its row would mean nothing.
    void Add(const std::string& operation, Tally tally);
    // Prints the total. False when anything was lost.
    bool End() const;

private:
    Tally m_total;
};

// To the standard output that the program was given; the operations print to nowhere.
void Report(const char* format, ...) __attribute__((format(printf, 1, 2)));
void SetStandardOutputAside();

// The families. Each returns whether nothing was lost.
bool TryParserFaults();
bool TryAllocationFaults();
bool TrySystemFaults();
bool TryKills(double seconds);
