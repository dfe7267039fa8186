#include "CostCountCommon/CMLibLogger.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>

#include "tests/support/Environment.h"
#include "tests/support/FailingAllocation.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

class LibLogger : public testing::Test {
protected:
    void SetUp() override { TakeRecordedCalls(); }

    std::string NotAModule() {
        WriteFile(m_folder.Path("text.so"), "this is no shared object");
        return m_folder.Path("text.so");
    }

    TempFolder m_folder;
    CCMLibLogger m_logger;
};

TEST_F(LibLogger, PassesTheRecordAndTheCallersPlace) {
    m_logger.InitLibLogger("name.log", "owner", "module", RECORDING_LOGGER);
    ASSERT_TRUE(m_logger.IsInitialized());
    m_logger.WriteLog("NamedLock", 42, 'w', ENOSPC, "%s %d", "text", 7);
    const auto calls = TakeRecordedCalls();
    ASSERT_EQ(1U, calls.size());
    const RecordedCall& call = calls[0];
    EXPECT_EQ((RecordedLine{"NamedLock", 42, 'w', ENOSPC, "text 7"}), call.line);
    EXPECT_EQ("module", call.moduleName);
    EXPECT_TRUE(call.moduleNameIsTheRecords);
    EXPECT_EQ("", call.reserved);
    EXPECT_EQ('w', call.level);

    LibLoggerSettings expected{};
    std::strcpy(expected.m_logNameText, "name.log");
    std::strcpy(expected.m_moduleName, "module");
    std::strcpy(expected.m_separator, ",");
    std::strcpy(expected.m_logOwnerText, "owner");
    expected.m_sizeValue = 12582912;
    expected.m_countValue = 2;
    EXPECT_EQ(0, std::memcmp(&expected, &call.settings, sizeof expected));
}

TEST_F(LibLogger, ExtendsTheSignOfTheLevelAndReturnsThePluginsResult) {
    m_logger.InitLibLogger("n", "o", "m", RECORDING_LOGGER);
    EXPECT_EQ(4711, m_logger.writeLogByAppLogger("File", 1, '\xE4', 0, "text"));
    EXPECT_EQ(static_cast<signed char>('\xE4'), TakeRecordedCalls().at(0).level);
}

TEST_F(LibLogger, CutsWhatDoesNotFit) {
    const std::string text(2000, 'x');
    m_logger.InitLibLogger(text, text, text, RECORDING_LOGGER);
    m_logger.WriteLog("File", 1, 'e', 0, "%s", text.c_str());
    const RecordedCall call = TakeRecordedCalls().at(0);
    EXPECT_EQ(std::string(259, 'x'), call.settings.m_logNameText);
    EXPECT_EQ(std::string(127, 'x'), call.settings.m_moduleName);
    EXPECT_EQ(std::string(63, 'x'), call.settings.m_logOwnerText);
    EXPECT_EQ(std::string(1023, 'x'), call.line.message);
}

TEST_F(LibLogger, DropsAMessageThatCannotBeFormatted) {
    m_logger.InitLibLogger("n", "o", "m", RECORDING_LOGGER);
    const wchar_t unencodable[] = {0x7FFFFFFF, 0};
    m_logger.WriteLog("File", 1, 'e', 0, "%ls", unencodable);
    m_logger.WriteLog("File", 2, 'e', 0, "next");
    EXPECT_EQ((std::vector<RecordedLine>{{"File", 2, 'e', 0, "next"}}), TakeRecordedLines());
}

TEST_F(LibLogger, IsInitialisedOnlyWithBothNamesAndAModule) {
    m_logger.WriteLog("File", 1, 'e', 0, "before");
    m_logger.InitLibLogger("", "", "m", RECORDING_LOGGER);
    EXPECT_FALSE(m_logger.IsInitialized());
    m_logger.WriteLog("File", 2, 'e', 0, "no names");
    m_logger.InitLibLogger("first", "", "m", RECORDING_LOGGER);
    EXPECT_FALSE(m_logger.IsInitialized());
    m_logger.InitLibLogger("", "owner", "m", RECORDING_LOGGER);
    EXPECT_TRUE(m_logger.IsInitialized());
    m_logger.InitLibLogger("", "", "other", RECORDING_LOGGER);
    m_logger.WriteLog("File", 3, 'e', 0, "kept");
    const auto calls = TakeRecordedCalls();
    ASSERT_EQ(1U, calls.size());
    EXPECT_STREQ("first", calls[0].settings.m_logNameText);
    EXPECT_STREQ("owner", calls[0].settings.m_logOwnerText);
    EXPECT_STREQ("other", calls[0].settings.m_moduleName);
}

TEST_F(LibLogger, StaysSilentWithoutAUsablePlugin) {
    const std::string missing = m_folder.Path("missing.plugin");
    const std::string text = NotAModule();
    for (const char* path : {missing.c_str(), text.c_str()}) {
        m_logger.InitLibLogger("n", "o", "m", path);
        EXPECT_FALSE(m_logger.IsInitialized()) << path;
        m_logger.WriteLog("File", 1, 'e', 0, "lost");
        EXPECT_EQ(0, m_logger.writeLogByAppLogger("File", 1, 'e', 0, "lost"));
    }
    m_logger.InitLibLogger("n", "o", "m", ENTRYLESS_LOGGER);
    EXPECT_TRUE(m_logger.IsInitialized());
    EXPECT_EQ(0, m_logger.writeLogByAppLogger("File", 1, 'e', 0, "lost"));
    EXPECT_EQ(0U, TakeRecordedCalls().size());
}

TEST_F(LibLogger, FindsThePluginByItsKey) {
    const ScopedVariable contents("TALLYQUIST_CONTENTS", m_folder.Path().c_str());
    m_logger.InitLibLogger("n", "o", "m", nullptr);
    EXPECT_FALSE(m_logger.IsInitialized());

    const std::string code = m_folder.Path("PlugIns/zopmekLogger.plugin/Contents/Linux");
    fs::create_directories(code);
    fs::create_symlink(RECORDING_LOGGER, code + "/zopmekLogger.so");
    m_logger.InitLibLogger("n", "o", "m", nullptr);
    m_logger.WriteLog("File", 1, 'i', 0, "found");
    EXPECT_EQ((std::vector<RecordedLine>{{"File", 1, 'i', 0, "found"}}), TakeRecordedLines());
}

TEST(LibLoggerInstance, IsMadeOnceAndTriedAgainWhenMemoryIsExhausted) {
    CCMLibLogger* none = nullptr;
    {
        const FailingAllocation all(1);
        none = CCMLibLogger::getInstance();
    }
    EXPECT_EQ(nullptr, none);
    CCMLibLogger* logger = CCMLibLogger::getInstance();
    EXPECT_NE(nullptr, logger);
    EXPECT_EQ(logger, CCMLibLogger::getInstance());
}

}  // namespace
