// The steps that a file's operation is made of: members of CCommonXmlPxd that give 0, or 0xFFFFFFFF
// on failure.
#pragma once

#include <exception>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/xmlpxd/Print.h"

namespace xmlpxd {

constexpr unsigned int FAILED = 0xFFFFFFFF;

// A step's result from one that is true or false, and nothing thrown.
template <typename Work>
unsigned int ResultOf(Work work) try {
    return work() ? 0 : FAILED;
} catch (const std::exception&) {
    return FAILED;  // out of memory
}

template <typename Record>
struct Step {
    unsigned int (CCommonXmlPxd::*run)(Record& record, void* node);
    const char* failed;  // printed
};

template <typename Record>
bool RunStep(CCommonXmlPxd& xml, const Step<Record>& step, Record& record, void* node) {
    const bool isDone = (xml.*step.run)(record, node) == 0;
    if (!isDone) {
        Print("%s", step.failed);
    }
    return isDone;
}

// Up to the first that fails.
template <typename Record, size_t N>
bool RunSteps(CCommonXmlPxd& xml, const Step<Record> (&steps)[N], Record& record, void* node) {
    for (const Step<Record>& step : steps) {
        if (!RunStep(xml, step, record, node)) {
            return false;
        }
    }
    return true;
}

// All, whatever the others give.
template <typename Record, size_t N>
void RunEachStep(CCommonXmlPxd& xml, const Step<Record> (&steps)[N], Record& record, void* node) {
    for (const Step<Record>& step : steps) {
        RunStep(xml, step, record, node);
    }
}

}  // namespace xmlpxd
