// Tries faults of every family and prints what became of them.
//
// Usage: fault_campaign SECONDS     with the time that is spent on killing writers
#include <csignal>
#include <cstdlib>

#include "tests/faults/Family.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        Report("Usage: fault_campaign SECONDS\n");
        return 2;
    }
    // As a program that is to see why a write fails does.
    std::signal(SIGXFSZ, SIG_IGN);
    SetStandardOutputAside();
    bool isWell = TryParserFaults();
    isWell = TryAllocationFaults() && isWell;
    isWell = TrySystemFaults() && isWell;
    isWell = TryKills(std::atof(argv[1])) && isWell;
    Report(isWell ? "nothing was lost\n" : "SOMETHING WAS LOST\n");
    return isWell ? 0 : 1;
}
