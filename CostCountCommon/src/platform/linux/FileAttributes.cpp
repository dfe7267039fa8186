#include "CostCountCommon/src/platform/linux/FileAttributes.h"

#include <endian.h>
#include <linux/limits.h>
#include <linux/posix_acl.h>
#include <linux/posix_acl_xattr.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>
#include <vector>

namespace platform {
namespace {

constexpr mode_t ALL_MODE_BITS = 07777;
constexpr const char* ACCESS_LIST = "system.posix_acl_access";

// Only a privileged process may give a file away, and the group must be one of its own.
bool CopyOwner(const struct stat& status, int to) {
    if (fchown(to, status.st_uid, status.st_gid) == 0) {
        return true;
    }
    [[maybe_unused]] const int ignored = fchown(to, static_cast<uid_t>(-1), status.st_gid);
    return false;
}

bool MayBeLeftOut(std::string_view name, int error) {
    return error == ENOTSUP || ((error == EPERM || error == EACCES) &&
                                (name.starts_with("security.") || name.starts_with("trusted.") ||
                                 name.starts_with("system.")));
}

// What an access list gives the group of the file. With a list the mode tells its mask in that
// place, which may be more.
mode_t GroupRights(const std::vector<char>& list, size_t size) {
    mode_t rights = 0;
    posix_acl_xattr_entry entry{};
    for (size_t at = sizeof(posix_acl_xattr_header); at + sizeof entry <= size;
         at += sizeof entry) {
        std::memcpy(&entry, list.data() + at, sizeof entry);
        if (le16toh(entry.e_tag) == ACL_GROUP_OBJ) {
            rights = le16toh(entry.e_perm) & 07U;
        }
    }
    return rights << 3U;
}

class AttributeCopy {
public:
    AttributeCopy(int from, int to) : m_from(from), m_to(to) {}

    // Narrows `*mode` when the access list could not be kept.
    bool Run(mode_t* mode) {
        std::vector<char> names(XATTR_LIST_MAX);
        const ssize_t size = flistxattr(m_from, names.data(), names.size());
        if (size < 0 && errno != ENOTSUP) {
            return false;
        }
        for (ssize_t at = 0; at < size;) {
            const char* name = names.data() + at;
            if (!Copy(name, mode)) {
                return false;
            }
            at += static_cast<ssize_t>(std::strlen(name)) + 1;
        }
        return m_hasAccessList || RemoveInheritedList();
    }

private:
    bool Copy(const char* name, mode_t* mode) {
        const ssize_t got = fgetxattr(m_from, name, m_value.data(), m_value.size());
        if (got < 0) {
            return errno == ENODATA || MayBeLeftOut(name, errno);  // gone by now, or not for us
        }
        const auto size = static_cast<size_t>(got);
        const bool isAccessList = std::strcmp(name, ACCESS_LIST) == 0;
        if (fsetxattr(m_to, name, m_value.data(), size, 0) == 0) {
            m_hasAccessList = m_hasAccessList || isAccessList;
            return true;
        }
        if (!MayBeLeftOut(name, errno)) {
            return false;
        }
        if (isAccessList) {
            *mode &= ~static_cast<mode_t>(S_IRWXG) | GroupRights(m_value, size);
        }
        return true;
    }

    // The default list of a folder becomes the access list of what is made in it.
    bool RemoveInheritedList() const {
        return fremovexattr(m_to, ACCESS_LIST) == 0 || errno == ENODATA || errno == ENOTSUP;
    }

    int m_from;
    int m_to;
    bool m_hasAccessList = false;
    std::vector<char> m_value = std::vector<char>(XATTR_SIZE_MAX);
};

}  // namespace

// The order matters: a change of the owner clears set-ID bits and capabilities, an access list
// changes the mode.
bool CopyAttributes(int from, const struct stat& status, int to) {
    mode_t mode = status.st_mode & ALL_MODE_BITS;
    if (!CopyOwner(status, to)) {
        mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
    }
    const struct timespec times[2] = {status.st_atim, status.st_mtim};
    return AttributeCopy(from, to).Run(&mode) && fchmod(to, mode) == 0 && futimens(to, times) == 0;
}

}  // namespace platform
