#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/osFree.h"
#include "tests/support/FailingAllocation.h"

namespace {

TEST(CoreFoundation, StringsKeepTheirText) {
    for (const char* text : {"", "Größe \xF0\x9F\x96\xA8"}) {
        CFStringRef string = CreateCFString(text);
        std::string out = "earlier";
        CFStringToUstring(string, &out);
        CFStringToUstring(string, nullptr);
        CFStringToUstring(nullptr, &out);
        EXPECT_EQ(text, out);
        CFRelease(string);
    }
    EXPECT_EQ(nullptr, CreateCFString(nullptr));
    EXPECT_EQ(nullptr, CreateCFString("\xED\xA0\x80"));
}

TEST(CoreFoundation, UrlsFitWithTheirTerminator) {
    CFURLRef url = platform::CreateFileUrl("/a/ß", true);
    for (const auto& [size, after] : {std::pair(-1L, "?????"), std::pair(0L, "?????"),
                                      std::pair(5L, "?????"), std::pair(6L, "/a/ß")}) {
        unsigned char buffer[] = "?????";
        EXPECT_EQ(size == 6, CFURLGetFileSystemRepresentation(url, 1, buffer, size));
        EXPECT_STREQ(after, reinterpret_cast<char*>(buffer));
    }
    CFRelease(url);
    for (const std::string& none :
         {std::string(), std::string("/a\xFF"), std::string("/a\0b", 4)}) {
        EXPECT_EQ(nullptr, platform::CreateFileUrl(none, false));
    }
    const std::string large(1000, 'x');
    const FailingAllocation failing(100);
    EXPECT_EQ(nullptr, platform::CreateFileUrl(large, false));
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
