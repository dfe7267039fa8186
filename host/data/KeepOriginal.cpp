#include "host/data/KeepOriginal.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>

#include "CostCountCommon/src/FileDescriptor.h"
#include "CostCountCommon/src/ReplacingFile.h"
#include "host/common/Errors.h"
#include "host/common/Printable.h"

namespace tallyquist {
namespace {

// A file beside another, removed at the end.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& neighbour)
        : m_path((std::filesystem::path(neighbour).parent_path() / ".tallyquist-XXXXXX").string()) {
        const FileDescriptor made(mkostemp(m_path.data(), O_CLOEXEC));
        if (!made.IsOpen()) {
            throw CommandError("cannot write " + Visible(neighbour) + ": " + std::strerror(errno));
        }
    }
    ~TemporaryFile() { unlink(m_path.c_str()); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
};

// Nothing for what is no file that can be read.
std::optional<std::string> BytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(file)), {});
    return file.is_open() && !file.bad() ? std::optional(std::move(bytes)) : std::nullopt;
}

// The path of the copy, which is hidden: programs list the files of a folder.
std::string Keep(const std::string& path, const std::string& bytes) {
    const std::filesystem::path file(path);
    for (int number = 1;; ++number) {
        std::string name = file.parent_path().string();
        name.append("/.").append(file.filename().string()).append(".orig");
        if (number > 1) {
            name.append(".").append(std::to_string(number));
        }
        // As after an earlier try that ended before the file was written anew.
        if (BytesOf(name) == bytes) {
            return name;
        }
        ReplacingFile copy;
        if (copy.Create(name, ReplacingFile::Placement::EXCLUSIVE) &&
            copy.Write(bytes.data(), bytes.size()) && copy.Commit()) {
            return name;
        }
        if (errno != EEXIST) {
            throw CommandError("cannot keep " + Visible(path) + " as " + Visible(name) + ": " +
                               std::strerror(errno));
        }
    }
}

}  // namespace

void KeepOriginal(const std::string& path,
                  const std::function<void(const std::string& path)>& writeUnchanged) {
    std::error_code error;
    if (!std::filesystem::exists(path, error) && !error) {
        return;
    }
    const std::optional<std::string> original = BytesOf(path);
    if (!original) {
        throw CommandError("cannot read " + Visible(path));
    }
    const TemporaryFile unchanged(path);
    writeUnchanged(unchanged.Path());
    if (BytesOf(unchanged.Path()) != original) {
        const std::string kept = Keep(path, *original);
        std::fprintf(stderr,
                     "tallyquist: %s holds more than its records, or is laid out differently; the "
                     "former file is kept as %s\n",
                     Visible(path).c_str(), Visible(kept).c_str());
    }
}

void KeepDamaged(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return;
    }
    const std::optional<std::string> original = BytesOf(path);
    if (original && !original->empty()) {
        std::fprintf(stderr, "tallyquist: %s cannot be read as it is; it is kept as %s\n",
                     Visible(path).c_str(), Visible(Keep(path, *original)).c_str());
    }
}

}  // namespace tallyquist
