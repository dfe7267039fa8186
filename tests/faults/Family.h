// A family of faults on every operation that it may befall: a line for each, and a total.
#pragma once

#include <functional>
#include <string>

#include "tests/faults/Trial.h"

// Tries it on operations that are walked by `faults`. `attempt` is false when this machine does not
// allow faults of this family. False when anything was lost.
bool TryFamily(const std::string& name, Faults faults, Bench& bench,
               const std::function<bool(Trial& trial, const Operation& operation)>& attempt);

// To the standard output that the program was given; the operations print to nowhere.
void Report(const char* format, ...) __attribute__((format(printf, 1, 2)));
void SetStandardOutputAside();

// The families. Each returns whether nothing was lost.
bool TryParserFaults();
bool TryAllocationFaults();
bool TrySystemFaults();
bool TryKills(double seconds);
