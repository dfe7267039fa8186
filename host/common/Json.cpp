#include "host/common/Json.h"

#include "host/common/StandardOutput.h"

namespace tallyquist {
namespace {

constexpr int ON_ONE_LINE = -1;

void Write(const Json& json, int indentation) {
    WriteStandardOutput(
        json.dump(indentation, ' ', false, Json::error_handler_t::replace).append("\n"));
}

}  // namespace

void WriteJson(const Json& json) {
    Write(json, 2);
}

void WriteJsonLine(const Json& json) {
    Write(json, ON_ONE_LINE);
}

}  // namespace tallyquist
