// Threads that are cancelled within the library end alone, and leave no descriptor and no file.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "CostCountCommon/include/CThreadHandle.h"
#include "CostCountCommon/include/MacUtility.h"
#include "compatible/osFree.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

namespace {

struct Operation {
    const char* name;
    void (*run)();
};

// What operations give, which nobody looks at.
thread_local std::vector<std::string> names;
thread_local std::string text;
thread_local PROCESS_INFORMATION service;

std::string gTarget;  // of copies

const Operation OPERATIONS[] = {
    {"ListFiles", [] { MacGetFileList("/usr/bin/*a", names); }},
    {"FindService", [] { CheckStartedBNT(&service); }},
    {"CountLanguages", [] { localizationsCount(); }},
    {"LoadText", [] { LoadResourceString("key", &text); }},
    {"Version", [] { GetPluginFilePath("Appver", &text); }},
    {"Home", [] { PathToPathByExpandingTildePath("~root", &text); }},
    {"Preference", [] { SetPreferenceValue("ErrorLogConfirmTime", "1"); }},
    {"Copy", [] { CopyFile("/proc/self/exe", gTarget.c_str(), 0); }},
};

class Cancellation : public testing::TestWithParam<Operation> {};

int OpenDescriptors() {
    return static_cast<int>(
        std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

TEST_P(Cancellation, LeavesNothingBehind) {
    const TempFolder folder;
    const ScopedVariable contents("TALLYQUIST_CONTENTS", folder.Path().c_str());
    const ScopedVariable configuration("XDG_CONFIG_HOME", folder.Path("config").c_str());
    const ScopedVariable language("LC_ALL", "en_US.UTF-8");
    std::filesystem::create_directories(folder.Path("Resources/en.lproj"));
    WriteFile(folder.Path("Resources/en.lproj/Localizable.strings"), "key = text;");
    WriteFile(folder.Path("Info.plist"), "<key>CFBundleVersion</key><string>1</string>");
    const auto repeat = [](void* argument) {
        const auto* operation = static_cast<const Operation*>(argument);
        for (;;) {
            operation->run();
            pthread_testcancel();
        }
        return 0U;
    };
    gTarget = folder.Path("copy");
    Operation operation = GetParam();
    operation.run();
    const int before = OpenDescriptors();
    for (int i = 0; i < 30; ++i) {
        CThreadHandle thread;
        ASSERT_EQ(0U, thread.Create(repeat, &operation));
        std::this_thread::sleep_for(std::chrono::microseconds(100 * i));
        thread.Cancel();
        ASSERT_EQ(WAIT_OBJECT_0, thread.Wait());
    }
    EXPECT_EQ(before, OpenDescriptors());
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path())) {
        EXPECT_FALSE(entry.path().filename().string().starts_with(".tallyquist-")) << entry.path();
    }
}

INSTANTIATE_TEST_SUITE_P(Of, Cancellation, testing::ValuesIn(OPERATIONS),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
