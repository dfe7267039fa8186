// Writers on disks and folders that do not let them, and with system calls that fail: each attempt
// in a child process, for which alone the fault is made.
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "tests/faults/Family.h"
#include "tests/support/RefusedCalls.h"

namespace fs = std::filesystem;

namespace {

constexpr int ITEMS = 100;
constexpr size_t PAGE = 4096;
constexpr int LIMITS = 64;
constexpr uid_t NOBODY = 65534;

// Free pages of the disk; from there on there is room for the file and what it is made of.
int Pages(const Trial& trial) {
    return static_cast<int>(trial.after.value_or("").size() / PAGE) + 2;
}
template <int STEPS>
int Always(const Trial&) {
    return STEPS;
}

// A name space of its own, in which this process may mount.
bool LeaveNameSpace() {
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    if (unshare(CLONE_NEWNS | (user == "0" ? 0 : CLONE_NEWUSER)) != 0) {
        return false;
    }
    if (user != "0") {
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
    }
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// A disk of its own in place of the folder, with what was in there and a page more, that has so
// many pages left.
bool FillDisk(const Trial& trial, int freePages) {
    fs::rename(trial.folder, "aside");
    fs::create_directory(trial.folder);
    if (!LeaveNameSpace() ||
        mount("none", trial.folder.c_str(), "tmpfs", 0, "size=64m,mode=755") != 0) {
        return false;
    }
    fs::copy("aside", trial.folder);
    const std::string filling = trial.folder + "/filling";
    {
        std::ofstream file(filling);
        const std::string page(PAGE, 'x');
        while (file << page << std::flush) {
        }
    }
    fs::resize_file(filling,
                    fs::file_size(filling) / PAGE * PAGE - static_cast<size_t>(freePages) * PAGE);
    return true;
}

bool LimitFileSize(const Trial& trial, int step) {
    const size_t size = trial.after.value_or("").size() * static_cast<size_t>(step) / LIMITS;
    const rlimit limit{size, size};
    return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

bool ProtectFolder(const Trial& trial, int) {
    if (geteuid() == 0) {
        for (const auto& entry : fs::recursive_directory_iterator(fs::current_path())) {
            if (lchown(entry.path().c_str(), NOBODY, NOBODY) != 0) {
                return false;
            }
        }
    }
    fs::permissions(trial.folder, fs::perms(0555));
    return geteuid() != 0 || (setgid(NOBODY) == 0 && setuid(NOBODY) == 0);
}

bool TakeFolderAway(const Trial& trial, int) {
    fs::rename(trial.folder, "aside");
    return true;
}

bool PutFolderInPlace(const Trial& trial, int) {
    fs::remove(trial.file);
    fs::create_directories(trial.file + "/kept");
    return true;
}

template <unsigned int CALLS>
bool Refuse(const Trial&, int) {
    return RefuseCalls(CALLS, EIO);
}

struct Hindrance {
    const char* name;
    Faults writers;  // that it befalls; those of PLACE cannot get over it
    int (*steps)(const Trial& trial);
    bool (*impose)(const Trial& trial, int step);  // in the child; false when that is not possible
};

constexpr Hindrance HINDRANCES[] = {
    {"a full disk", SYSTEM, Pages, FillDisk},
    {"a limit on the size of files", SYSTEM, Always<LIMITS>, LimitFileSize},
    {"a folder that is read-only", SYSTEM, Always<1>, ProtectFolder},
    {"a folder that is missing", SYSTEM, Always<1>, TakeFolderAway},
    {"a folder in the file's place", SYSTEM, Always<1>, PutFolderInPlace},
    {"a failing flush", PLACE, Always<1>, Refuse<FLUSHES>},
    {"a failing rename", PLACE, Always<1>, Refuse<RENAMES | HARD_LINKS>},
};

}  // namespace

bool TrySystemFaults() {
    bool isWell = true;
    for (const Hindrance& hindrance : HINDRANCES) {
        Bench bench(XML_PARSER, ITEMS);
        const auto attempt = [&](Trial& trial, const Operation&) {
            bool isPossible = true;
            trial.canBeDone = hindrance.writers != PLACE;
            const int steps = hindrance.steps(trial);
            for (int step = 0; step < steps && isPossible; ++step) {
                const std::string fault =
                    std::string(hindrance.name).append(" ").append(std::to_string(step));
                isPossible =
                    trial.AttemptInChild(fault, [&] { return hindrance.impose(trial, step); });
            }
            return isPossible;
        };
        isWell = TryFamily(hindrance.name, hindrance.writers, bench, attempt) && isWell;
    }
    return isWell;
}
