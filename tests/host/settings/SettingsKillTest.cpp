// `settings set` when others do so too, when it is killed and when the disk is full.
#include <unistd.h>

#include <filesystem>
#include <list>
#include <thread>

#include "tests/host/settings/ProgramFixture.h"
#include "tests/support/Processes.h"

namespace {

namespace fs = std::filesystem;

class ContestedSettings : public ProgramFixture {
protected:
    static int RunSet(const std::string& name, const std::string& value) {
        execl("/bin/sh", "sh", "-c", "exec " TALLYQUIST " settings set \"$1\" \"$2\" >/dev/null",
              "sh", name.c_str(), value.c_str(), nullptr);
        return 127;
    }
};

TEST_F(ContestedSettings, SetsAtOnceLoseNoChange) {
    const std::string names[] = {"UsbRetryCount",    "UsbRetryInterval", "CommuRetryCount",
                                 "CheckCMSInterval", "CancelInterval",   "SearchTimeOut"};
    for (const std::string value : {"11", "12", "13"}) {
        std::list<ChildProcess> running;
        for (const std::string& name : names) {
            running.emplace_back([&] { return RunSet(name, value); });
        }
        for (ChildProcess& process : running) {
            EXPECT_EQ(0, process.Wait());
        }
        for (const std::string& name : names) {
            EXPECT_EQ(value, Json("settings " + name)["settings"][0]["value"]) << name;
        }
    }
}

// The file is large, so that writing it takes a while, and the process is killed when the temporary
// file is there.
TEST_F(ContestedSettings, KilledSetLeavesTheOldOrTheNewFile) {
    fs::create_directories(m_dataFolder);
    const auto fileWith = [](const std::string& value) {
        return R"(<?xml version="1.0" encoding="UTF-8"?>
<cmsystem>
  <!-- )" + std::string(8 << 20, 'x') +
               " -->\n  <MaxDetch>" + value + "</MaxDetch>\n</cmsystem>\n";
    };
    std::string before = fileWith("0");
    WriteFile(m_settings, before);
    size_t leftovers = 0;
    for (int i = 1; i <= 50 && leftovers < 5; ++i) {
        const std::string after = fileWith(std::to_string(i));
        ChildProcess process([&] { return RunSet("MaxDetch", std::to_string(i)); });
        const auto written = fs::last_write_time(m_settings);
        for (int tries = 0; tries < 1000000 && NamesIn(m_dataFolder).size() == leftovers + 1 &&
                            fs::last_write_time(m_settings) == written;
             ++tries) {
            std::this_thread::yield();
        }
        process.Kill();
        const std::string now = ReadFile(m_settings);
        ASSERT_TRUE(now == before || now == after) << "half a file of " << now.size() << " bytes";
        before = now;
        leftovers = NamesIn(m_dataFolder).size() - 1;
    }
    EXPECT_GT(leftovers, 0U) << "never killed in the middle";
    // Neither they nor the lock of a killed one are in the way.
    EXPECT_EQ(0, RunTallyquist("settings set MaxDetch 99", "/").exitCode);
}

TEST_F(ContestedSettings, FullDiskLeavesTheOldFile) {
    EXPECT_EQ(0, RunTallyquist("settings set MaxDetch 1", "/").exitCode);
    const std::string before = ReadFile(m_settings);
    ASSERT_GT(before.size(), 2048U);
    // A shell counts in 512 or 1024 bytes.
    const ProgramRun run = RunTallyquist(
        "--version >/dev/null; ulimit -f 2; exec " TALLYQUIST " settings set MaxDetch 2", "/");
    EXPECT_EQ(1, run.exitCode);
    EXPECT_NE(std::string::npos,
              run.err.find("tallyquist: cannot write " + m_settings + ": File too large\n"))
        << run.err;
    EXPECT_EQ(before, ReadFile(m_settings));
    EXPECT_EQ(std::vector<std::string>{"CMSystemSetting.cfg"}, NamesIn(m_dataFolder));
}

}  // namespace
