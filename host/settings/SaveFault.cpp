#include "host/settings/SaveFault.h"

#include <cstring>
#include <filesystem>
#include <system_error>

#include "host/common/Printable.h"

namespace tallyquist {

CommandError CannotWrite(const std::string& path, int reason) {
    std::string text = "cannot write " + Visible(path);
    std::error_code error;
    if (reason != 0) {
        text.append(": ").append(std::strerror(reason));
    } else if (std::filesystem::exists(path, error) &&
               !std::filesystem::is_regular_file(path, error)) {
        text.append(": it is not a regular file");
    }
    return CommandError(text);
}

}  // namespace tallyquist
