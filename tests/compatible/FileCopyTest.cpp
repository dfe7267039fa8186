#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <linux/posix_acl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <string>
#include <utility>

#include "compatible/osFree.h"
#include "tests/support/Processes.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* ACCESS_LIST = "system.posix_acl_access";
constexpr const char* DEFAULT_LIST = "system.posix_acl_default";
constexpr int REFUSED_SETUP = 100;  // what a child says when it cannot run its test

// More than one buffer, and nothing that would look the same when pieces were mixed up.
std::string LongText() {
    std::string text;
    for (int i = 0; text.size() < 3'000'000; ++i) {
        text += std::to_string(i) + '\0';
    }
    return text;
}

// An access list as the kernel takes it, of which user 1234 and the mask have all rights.
std::string List(char group) {
    const auto entry = [](char tag, char rights, const std::string& id) {
        return std::string{tag, 0, rights, 0} + id;
    };
    const std::string none(4, '\xFF');
    return std::string("\x02\0\0\0", 4) + entry(ACL_USER_OBJ, 6, none) +
           entry(ACL_USER, 7, std::string("\xD2\x04\0\0", 4)) + entry(ACL_GROUP_OBJ, group, none) +
           entry(ACL_MASK, 7, none) + entry(ACL_OTHER, 0, none);
}

class CopyFileTest : public testing::Test {
protected:
    bool Copy(const std::string& from, const std::string& to, bool exclusive = false) {
        return CopyFile(m_folder.Path(from).c_str(), m_folder.Path(to).c_str(), exclusive ? 1 : 0);
    }
    int Entries() const {
        return static_cast<int>(std::distance(fs::directory_iterator(m_folder.Path()), {}));
    }
    void Write(const std::string& name, const std::string& contents) {
        WriteFile(m_folder.Path(name), contents);
    }
    std::string Read(const std::string& name) const { return ReadFile(m_folder.Path(name)); }
    struct stat StatusOf(const std::string& name) const {
        struct stat status {};
        lstat(m_folder.Path(name).c_str(), &status);
        return status;
    }
    // Empty also when there is none.
    std::string Attribute(const std::string& name, const char* attribute) const {
        char value[4096];
        const ssize_t size = getxattr(m_folder.Path(name).c_str(), attribute, value, sizeof value);
        return size < 0 ? std::string() : std::string(value, static_cast<size_t>(size));
    }
    bool SetAttribute(const std::string& name, const char* attribute, const std::string& value) {
        return setxattr(m_folder.Path(name).c_str(), attribute, value.data(), value.size(), 0) == 0;
    }

    TempFolder m_folder;
    std::string m_from = m_folder.Path("from");
    std::string m_to = m_folder.Path("to");
};

TEST_F(CopyFileTest, TakesContentsModeTimesAndOwner) {
    const uid_t owner = geteuid() == 0 ? 1234 : geteuid();
    const gid_t group = geteuid() == 0 ? 4321 : getegid();
    for (const auto& [mode, contents] :
         {std::pair(0640U, std::string()), std::pair(0444U, LongText()),
          std::pair(06755U, std::string("x"))}) {
        fs::remove(m_from);
        fs::remove(m_to);
        Write("from", contents);
        ASSERT_EQ(0, chown(m_from.c_str(), owner, group));
        ASSERT_EQ(0, chmod(m_from.c_str(), mode));
        const struct timespec times[2] = {{1'000'000'000, 123'456'789}, {-5, 987'654'321}};
        ASSERT_EQ(0, utimensat(AT_FDCWD, m_from.c_str(), times, 0));
        ASSERT_TRUE(Copy("from", "to", true));
        EXPECT_TRUE(contents == Read("to"));
        const struct stat to = StatusOf("to");
        EXPECT_EQ(S_IFREG | mode, to.st_mode);
        EXPECT_EQ(owner, to.st_uid);
        EXPECT_EQ(group, to.st_gid);
        EXPECT_EQ(-5, to.st_mtim.tv_sec);
        EXPECT_EQ(987'654'321, to.st_mtim.tv_nsec);
    }
    EXPECT_EQ(2, Entries());
}

TEST_F(CopyFileTest, TakesExtendedAttributesAndInheritsNone) {
    for (const char* name : {"from", "plain", "to"}) {
        Write(name, name);
    }
    chmod(m_folder.Path("plain").c_str(), 0640);
    const std::string binary("\0\xFF=\n", 4);
    if (!SetAttribute("from", "user.colour", binary) || !SetAttribute("to", "user.old", "x") ||
        !SetAttribute("from", ACCESS_LIST, List(4)) || !SetAttribute("", DEFAULT_LIST, List(5))) {
        GTEST_SKIP() << "the file system has no extended attributes or access lists";
    }
    ASSERT_TRUE(Copy("from", "to"));
    EXPECT_EQ(binary, Attribute("to", "user.colour"));
    EXPECT_EQ("", Attribute("to", "user.old"));
    EXPECT_EQ(List(4), Attribute("to", ACCESS_LIST));
    ASSERT_TRUE(Copy("plain", "copy"));
    EXPECT_EQ("", Attribute("copy", ACCESS_LIST));
    EXPECT_EQ(S_IFREG | 0640U, StatusOf("copy").st_mode);
}

TEST_F(CopyFileTest, LeavesOutWhatTheTargetsFileSystemDoesNotKnow) {
    Write("from", "from");
    fs::create_directory(m_folder.Path("mount"));
    ChildProcess child([&] {
        if (!SetAttribute("from", "user.colour", "red") ||
            !SetAttribute("from", ACCESS_LIST, List(4)) || unshare(CLONE_NEWNS) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("none", m_folder.Path("mount").c_str(), "ramfs", 0, nullptr) != 0) {
            return REFUSED_SETUP;
        }
        const bool isCopied = Copy("from", "mount/to") && Read("mount/to") == "from";
        // The mask of the list must not become the rights of the group.
        return isCopied && StatusOf("mount/to").st_mode == (S_IFREG | 0640) ? 0 : 1;
    });
    const int result = child.Wait();
    if (result == REFUSED_SETUP) {
        GTEST_SKIP() << "needs access lists and the right to mount";
    }
    EXPECT_EQ(0, result);
}

// A program that its owner made set-ID must not become one of whoever copies it.
TEST_F(CopyFileTest, DropsSetIdBitsWithTheOwner) {
    Write("from", "text");
    if (geteuid() != 0) {
        GTEST_SKIP() << "needs a file of another user";
    }
    chmod(m_folder.Path().c_str(), 0777);
    chmod(m_from.c_str(), 06755);
    ChildProcess other([&] {
        const bool isOther = setgroups(0, nullptr) == 0 && setgid(4321) == 0 && setuid(1234) == 0;
        return isOther && Copy("from", "to") ? 0 : 1;
    });
    EXPECT_EQ(0, other.Wait());
    EXPECT_EQ(S_IFREG | 0755U, StatusOf("to").st_mode);
    EXPECT_EQ(1234U, StatusOf("to").st_uid);
}

TEST_F(CopyFileTest, RefusesWhatIsNoRegularFileOrProtected) {
    Write("from", "new");
    Write("protected", "old");
    chmod(m_folder.Path("protected").c_str(), 0444);
    chmod(m_folder.Path().c_str(), 0777);
    mkfifo(m_folder.Path("pipe").c_str(), 0600);
    fs::create_directory(m_folder.Path("folder"));
    // A device of our own where that is allowed: a fault must not cost the machine its own.
    const std::string device = m_folder.Path("device");
    if (mknod(device.c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0 && geteuid() != 0) {
        fs::create_symlink("/dev/null", device);
    }
    const int entries = Entries();
    for (const char* source : {"none", "pipe", "folder"}) {
        EXPECT_FALSE(Copy(source, "to")) << source;
    }
    for (const char* target : {"pipe", "folder", "device", "none/to", "from/to"}) {
        EXPECT_FALSE(Copy("from", target)) << target;
    }
    EXPECT_FALSE(CopyFile(nullptr, m_to.c_str(), 0));
    EXPECT_FALSE(CopyFile(m_from.c_str(), nullptr, 0));
    ChildProcess other(
        [&] { return (geteuid() == 0 && setuid(1234) != 0) || Copy("from", "protected") ? 1 : 0; });
    EXPECT_EQ(0, other.Wait());
    EXPECT_EQ("old", Read("protected"));
    EXPECT_TRUE(fs::is_fifo(m_folder.Path("pipe")));
    EXPECT_TRUE(fs::is_character_file(device));
    EXPECT_EQ(entries, Entries());
}

TEST_F(CopyFileTest, FollowsLinksUnlessExclusive) {
    Write("from", "new");
    Write("to", "old");
    fs::create_symlink("to", m_folder.Path("link"));
    fs::create_symlink("nowhere", m_folder.Path("dangling"));
    for (const char* existing : {"to", "link", "dangling", "from"}) {
        EXPECT_FALSE(Copy("from", existing, true)) << existing;
    }
    EXPECT_EQ("old", Read("to"));
    EXPECT_FALSE(fs::exists(m_folder.Path("nowhere")));

    EXPECT_TRUE(Copy("from", "link"));
    EXPECT_TRUE(Copy("from", "dangling"));
    EXPECT_TRUE(fs::is_symlink(m_folder.Path("link")));
    EXPECT_EQ("new", Read("to"));
    EXPECT_EQ("new", Read("nowhere"));
}

TEST_F(CopyFileTest, OntoItselfChangesNothing) {
    Write("from", "text");
    fs::create_symlink("from", m_folder.Path("link"));
    fs::create_hard_link(m_from, m_folder.Path("hard"));
    for (const char* itself : {"from", "link", "hard"}) {
        EXPECT_TRUE(Copy("from", itself)) << itself;
        EXPECT_TRUE(Copy(itself, "from")) << itself;
    }
    EXPECT_EQ(2U, StatusOf("from").st_nlink);
    EXPECT_EQ("text", Read("hard"));
}

// The kernel tells nothing of the size of files that are made up as they are read, and copies none
// between file systems.
TEST_F(CopyFileTest, CopiesFromOtherFileSystems) {
    EXPECT_TRUE(CopyFile("/proc/version", m_to.c_str(), 0));
    EXPECT_EQ(ReadFile("/proc/version"), Read("to"));
    EXPECT_NE("", Read("to"));
}

}  // namespace
