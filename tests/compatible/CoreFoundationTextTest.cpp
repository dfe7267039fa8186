#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>

#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/osFree.h"
#include "tests/support/FailingAllocation.h"

namespace {

template <typename Reference>
class Owned {
public:
    explicit Owned(Reference reference) : m_reference(reference, CFRelease) {}
    operator Reference() const { return static_cast<Reference>(m_reference.get()); }

private:
    std::unique_ptr<const void, decltype(&CFRelease)> m_reference;
};

TEST(CoreFoundation, StringsKeepTheirText) {
    for (const char* text : {"", "Größe \xF0\x9F\x96\xA8"}) {
        const Owned string(CreateCFString(text));
        std::string out = "earlier";
        CFStringToUstring(string, &out);
        EXPECT_EQ(text, out);
        CFStringToUstring(string, nullptr);
        CFStringToUstring(nullptr, &out);
        EXPECT_EQ(text, out);
    }
    EXPECT_EQ(nullptr, CreateCFString(nullptr));
    EXPECT_EQ(nullptr, CreateCFString("\xED\xA0\x80"));
    const std::string large(1000, 'x');
    const FailingAllocation failing(100);
    EXPECT_EQ(nullptr, CreateCFString(large.c_str()));
    EXPECT_EQ(nullptr, platform::CreateFileUrl(large, false));
}

TEST(CoreFoundation, UrlsFitWithTheirTerminator) {
    const Owned url(platform::CreateFileUrl("/a/ß", true));
    for (const auto& [size, after] : {std::pair(-1L, "?????"), std::pair(0L, "?????"),
                                      std::pair(5L, "?????"), std::pair(6L, "/a/ß")}) {
        unsigned char buffer[] = "?????";
        EXPECT_EQ(size == 6, CFURLGetFileSystemRepresentation(url, 1, buffer, size));
        EXPECT_STREQ(after, reinterpret_cast<char*>(buffer));
    }
    for (const std::string& none :
         {std::string(), std::string("/a\xFF"), std::string("/a\0b", 4)}) {
        EXPECT_EQ(nullptr, platform::CreateFileUrl(none, false));
    }
}

// Freed too early or too late, the string is a finding of the sanitizers.
TEST(CoreFoundation, ThreadsShareAnObject) {
    CFStringRef string = CreateCFString("shared by all of the threads");
    const auto use = [&] {
        for (int i = 0; i < 10000; ++i) {
            EXPECT_EQ(string, CFRetain(string));
            CFRelease(string);
        }
        EXPECT_EQ("shared by all of the threads", platform::TextOf(string));
        CFRelease(string);
    };
    CFRetain(string);
    std::thread other(use);
    use();
    other.join();
}

}  // namespace
