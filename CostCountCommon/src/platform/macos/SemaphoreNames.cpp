#include "CostCountCommon/src/platform/Platform.h"

// A slash within a name is legal here, and a sandboxed process may only use names that begin with
// its application group and one.
std::string platform::SemaphoreName(const std::string& name) {
    return name;
}
