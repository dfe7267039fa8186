// The operations that faults are tried on. Each is a row of a table.
#pragma once

#include <algorithm>
#include <iterator>
#include <span>
#include <vector>

#include "tests/faults/Bench.h"

// What an operation that met a fault has to leave.
enum class Promise {
    WHOLE,    // told: the earlier file and value; else the new ones
    UNTOLD,   // the earlier file or the new one, though not every failure is told of
    SAVED,    // UNTOLD, but a file that cannot be placed is told of
    PARTIAL,  // WHOLE for the file; the value is what could be read
    GONE,     // WHOLE, or told and no file
    KEPT,     // WHOLE; done also where anything lies already, which stays
};

// PLACE is for what flushes a file and then gives it its name; what writes in place does neither.
enum Faults : unsigned int { PARSER = 1, MEMORY = 2, SYSTEM = 4, PLACE = 8, KILL = 16 };

struct Operation {
    const char* name;
    bool (*run)(Bench& bench);          // false when a failure was told
    unsigned int faults;                // that it is walked by
    const char* file = nullptr;         // what it reads or writes, below the bench's folder
    bool (*prepare)(Bench&) = nullptr;  // makes the file as it is before; null: `run` does
    Promise promise = Promise::WHOLE;
};

std::span<const Operation> XmlOperations();      // CCommonXmlPxd
std::span<const Operation> LibraryOperations();  // the rest of the library, plug-ins, program

// Those that are walked by `faults`.
inline std::vector<Operation> OperationsWith(Faults faults) {
    std::vector<Operation> chosen;
    for (const auto operations : {XmlOperations(), LibraryOperations()}) {
        std::copy_if(operations.begin(), operations.end(), std::back_inserter(chosen),
                     [=](const Operation& operation) { return (operation.faults & faults) != 0; });
    }
    return chosen;
}
