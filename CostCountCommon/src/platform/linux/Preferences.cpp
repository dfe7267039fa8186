// The preferences are lines KEY=VALUE of one small text file.
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <string_view>

#include "CostCountCommon/src/FileDescriptor.h"
#include "CostCountCommon/src/ReplacingFile.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/linux/HomeFolder.h"
#include "CostCountCommon/src/platform/linux/TextFile.h"

namespace platform {
namespace {

// What is larger is no file of preferences: it is not read, and replaced by the next preference
// that is stored.
constexpr size_t LARGEST_FILE = 1 << 20;

// How long another process may hold the lock. One that was stopped must not stop all others.
constexpr unsigned int LOCK_PATIENCE_MILLISECONDS = 10000;
constexpr unsigned int LOCK_RETRY_MILLISECONDS = 10;

std::string PreferencesFolder() {
    const std::string folder = BaseFolder("XDG_CONFIG_HOME", ".config");
    return folder.empty() ? folder : FolderFollowedBy(folder, "/Norvane/Tallyquist");
}

std::string PreferencesFile(const std::string& folder) {
    return folder + "/preferences";
}

// With the mode that the XDG rules ask for. What goes wrong shows when the folder is used.
void CreateFolders(const std::string& folder) {
    for (size_t slash = folder.find('/', 1); slash != std::string::npos;
         slash = folder.find('/', slash + 1)) {
        mkdir(folder.substr(0, slash).c_str(), S_IRWXU);
    }
    mkdir(folder.c_str(), S_IRWXU);
}

// Keeps other processes, and other threads, from changing the preferences. The file itself cannot
// carry the lock, as every change replaces it.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder)
        : m_folder(FileDescriptor::Open(folder.c_str(), O_RDONLY | O_DIRECTORY)) {
        // Without the lock, as on a file system that has none, two changes at once may be one.
        for (unsigned int waited = 0; waited < LOCK_PATIENCE_MILLISECONDS;
             waited += LOCK_RETRY_MILLISECONDS) {
            if (flock(m_folder.Number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) {
                return;
            }
            usleep(LOCK_RETRY_MILLISECONDS * 1000);
        }
    }
    // Closing would not do: a child that was forked meanwhile shares the lock.
    ~FolderLock() { flock(m_folder.Number(), LOCK_UN); }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    FileDescriptor m_folder;
};

// False when there may be preferences that cannot be read.
bool ReadPreferences(const std::string& path, std::string* text) {
    if (ReadTextFile(path, LARGEST_FILE, text)) {
        return true;
    }
    text->clear();
    return errno == ENOENT || errno == EFBIG;
}

// Takes the next line, without its end, from `*text`. An editor may have ended lines in CR LF.
std::string_view TakeLine(std::string_view* text) {
    std::string_view line = text->substr(0, text->find('\n'));
    text->remove_prefix(std::min(line.size() + 1, text->size()));
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

bool IsLineOf(std::string_view key, std::string_view line) {
    return line.size() > key.size() && line.starts_with(key) && line[key.size()] == '=';
}

std::string Changed(std::string_view text, std::string_view key, int64_t value) {
    std::string changed;
    while (!text.empty()) {
        const std::string_view line = TakeLine(&text);
        if (!IsLineOf(key, line)) {
            changed.append(line).append("\n");
        }
    }
    return changed.append(key).append("=").append(std::to_string(value)).append("\n");
}

}  // namespace

std::optional<int64_t> PreferenceNumber(const char* key) {
    const std::string folder = PreferencesFolder();
    std::string text;
    if (folder.empty() || !ReadPreferences(PreferencesFile(folder), &text)) {
        return std::nullopt;
    }
    std::optional<int64_t> number;
    const std::string_view name = key;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view line = TakeLine(&rest);
        if (IsLineOf(name, line)) {
            int64_t value = 0;
            const char* end = line.data() + line.size();
            const auto [stop, error] = std::from_chars(line.data() + name.size() + 1, end, value);
            number = error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
        }
    }
    return number;
}

void SetPreferenceNumber(const char* key, int64_t value) {
    const std::string folder = PreferencesFolder();
    if (folder.empty()) {
        return;
    }
    CreateFolders(folder);
    const FolderLock lock(folder);
    const std::string path = PreferencesFile(folder);
    std::string text;
    if (!ReadPreferences(path, &text)) {
        return;
    }
    text = Changed(text, key, value);
    ReplacingFile file;
    // There is nobody to tell of a failure, after which the earlier preferences stand.
    (void)(file.Create(path, ReplacingFile::Placement::REPLACE) &&
           file.Write(text.data(), text.size()) && file.Commit());
}

}  // namespace platform
