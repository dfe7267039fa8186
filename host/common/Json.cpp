#include "host/common/Json.h"

#include "host/common/StandardOutput.h"

namespace tallyquist {

void WriteJson(const Json& json) {
    WriteStandardOutput(json.dump(2, ' ', false, Json::error_handler_t::replace).append("\n"));
}

}  // namespace tallyquist
