#include "host/data/ArgumentChecks.h"

#include "compatible/Utf8.h"
#include "host/common/Errors.h"
#include "host/common/Printable.h"
#include "plugins/zopmekxmlpxd/TextChecks.h"

namespace tallyquist {

void Refuse(const Argument& argument, const std::string& reason) {
    throw UsageError(
        std::string(argument.option).append(": ").append(Printable(argument.text)).append(reason));
}

void CheckHeldByXml(const Argument& argument) {
    if (!IsUtf8(argument.text) || FindForbidden(argument.text) != std::string::npos) {
        // Without the value, which may be a secret.
        throw UsageError(std::string(argument.option)
                             .append(": the value holds a character that an XML file cannot hold"));
    }
}

}  // namespace tallyquist
