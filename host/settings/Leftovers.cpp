#include "host/settings/Leftovers.h"

#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace tallyquist {
namespace {

constexpr std::string_view PREFIX = ".tallyquist-";
constexpr size_t RANDOM_CHARACTERS = 6;
constexpr time_t SECONDS_TO_KEEP = 3600;

bool IsLeftover(const std::filesystem::path& path) {
    const std::string name = path.filename();
    struct stat status {};
    return name.starts_with(PREFIX) && name.size() == PREFIX.size() + RANDOM_CHARACTERS &&
           lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == geteuid() && status.st_mtime < std::time(nullptr) - SECONDS_TO_KEEP;
}

}  // namespace

void RemoveLeftovers(const std::string& folder) {
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        if (IsLeftover(entry->path())) {
            unlink(entry->path().c_str());
        }
    }
}

}  // namespace tallyquist
