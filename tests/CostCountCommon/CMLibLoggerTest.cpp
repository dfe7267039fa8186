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

class LibLogger : public testing::Test {
protected:
    void SetUp() override { TakeRecordedCalls(); }

    TempFolder m_folder;
    CCMLibLogger m_logger;
};

TEST_F(LibLogger, PassesTheRecordAndTheCallersPlace) {
    m_logger.InitLibLogger("name.log", "owner", "module", RECORDING_LOGGER);
    ASSERT_TRUE(m_logger.IsInitialized());
    m_logger.WriteLog("NamedLock", 42, 'w', ENOSPC, "%s %d", "text", 7);
    EXPECT_EQ(4711, m_logger.writeLogByAppLogger("File", 1, '\xE4', 0, "text"));
    const auto calls = TakeRecordedCalls();
    ASSERT_EQ(2U, calls.size());
    const RecordedCall& call = calls[0];
    EXPECT_EQ((RecordedLine{"NamedLock", 42, 'w', ENOSPC, "text 7"}), call.line);
    EXPECT_EQ("module", call.moduleName);
    EXPECT_TRUE(call.moduleNameIsTheRecords);
    EXPECT_EQ("", call.reserved);
    EXPECT_EQ('w', call.level);
    EXPECT_EQ(static_cast<signed char>('\xE4'), calls[1].level);

    LibLoggerSettings expected{};
    std::strcpy(expected.m_logNameText, "name.log");
    std::strcpy(expected.m_moduleName, "module");
    std::strcpy(expected.m_separator, ",");
    std::strcpy(expected.m_logOwnerText, "owner");
    expected.m_sizeValue = 12582912;
    expected.m_countValue = 2;
    EXPECT_EQ(0, std::memcmp(&expected, &call.settings, sizeof expected));
}

TEST_F(LibLogger, CutsWhatDoesNotFitAndDropsWhatCannotBeFormatted) {
    const std::string text(2000, 'x');
    m_logger.InitLibLogger(text, text, text, RECORDING_LOGGER);
    const wchar_t unencodable[] = {0x7FFFFFFF, 0};
    m_logger.WriteLog("File", 1, 'e', 0, "%ls", unencodable);
    m_logger.WriteLog("File", 2, 'e', 0, "%s", text.c_str());
    const RecordedCall call = TakeRecordedCalls().at(0);
    EXPECT_EQ(2U, call.line.line);
    EXPECT_EQ(std::string(259, 'x'), call.settings.m_logNameText);
    EXPECT_EQ(std::string(127, 'x'), call.settings.m_moduleName);
    EXPECT_EQ(std::string(63, 'x'), call.settings.m_logOwnerText);
    EXPECT_EQ(std::string(1023, 'x'), call.line.message);
}

TEST_F(LibLogger, IsInitialisedOnlyWithBothNamesAndAModule) {
    m_logger.WriteLog("File", 1, 'e', 0, "before");
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

    WriteFile(m_folder.Path("text.so"), "this is no shared object");
    for (const std::string& path : {m_folder.Path("missing.plugin"), m_folder.Path("text.so")}) {
        m_logger.InitLibLogger("n", "o", "m", path.c_str());
        EXPECT_FALSE(m_logger.IsInitialized()) << path;
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
    std::filesystem::create_directories(code);
    std::filesystem::create_symlink(RECORDING_LOGGER, code + "/zopmekLogger.so");
    m_logger.InitLibLogger("n", "o", "m", nullptr);
    EXPECT_TRUE(m_logger.IsInitialized());
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
