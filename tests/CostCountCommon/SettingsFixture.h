// An application in a folder of its own, made of what was built, whose parser plug-in is the
// counting one, and a user without files. Every test ends with all handles given back.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "CostCountCommon/CommonXMLPxd.h"
#include "tests/support/CountingParser.h"
#include "tests/support/Environment.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TempFolder.h"

class SettingsFixture : public testing::Test {
protected:
    void SetUp() override {
        namespace fs = std::filesystem;
        fs::create_directories(m_contents + "/PlugIns");
        fs::create_directories(DataFolder());
        fs::create_symlink(COUNTING_PARSER, Parser());
        fs::create_symlink(BUILT_CONTENTS "/Resources", m_contents + "/Resources");
        fs::create_symlink(BUILT_CONTENTS "/PlugIns/qvtrelCore.plugin", CorePlugin());
        CCMLibLogger::getInstance()->InitLibLogger("n", "o", "m", RECORDING_LOGGER);
        TakeRecordedCalls();
        CountingParser::Reset();
    }
    void TearDown() override {
        EXPECT_EQ(0, CountingParser::LiveNodes());
        EXPECT_EQ(0, CountingParser::LiveDocuments());
        EXPECT_EQ(0, CountingParser::StrayReleases());
    }

    std::string Parser() const { return m_contents + "/PlugIns/zopmekxmlpxd.plugin"; }
    std::string CorePlugin() const { return m_contents + "/PlugIns/qvtrelCore.plugin"; }
    std::string Container() const { return m_folder.Path("data/K7Q3MZP2WD.RX.qvtrel"); }
    // Of all data kinds that the settings use.
    std::string DataFolder() const {
        return Container() + "/Library/Application Support/Norvane/Tallyquist";
    }

    void Bind(CCommonXmlPxd& xml, const char* systemSetting = "CMSystemSetting.cfg") const {
        ASSERT_TRUE(xml.InitializeXmlPxd(systemSetting, "/", Parser(), false));
    }

    // The records that were logged, as SOURCE: MESSAGE, with the code when there is one.
    static std::vector<std::string> Logged() {
        std::vector<std::string> texts;
        for (const RecordedLine& line : TakeRecordedLines()) {
            EXPECT_EQ('e', line.level);
            std::string text = line.file;
            text.append(": ").append(line.message);
            if (line.code != 0) {
                text.append(" ").append(std::to_string(line.code));
            }
            texts.push_back(text);
        }
        return texts;
    }

    template <typename Operation>
    static std::string Printed(Operation operation) {
        testing::internal::CaptureStdout();
        operation();
        return testing::internal::GetCapturedStdout();
    }

    const TempFolder m_folder;
    const std::string m_contents = m_folder.Path("App.app/Contents");
    const ScopedVariable m_contentsVariable{"TALLYQUIST_CONTENTS", m_contents.c_str()};
    const ScopedVariable m_data{"XDG_DATA_HOME", m_folder.Path("data").c_str()};
    const ScopedVariable m_config{"XDG_CONFIG_HOME", m_folder.Path("config").c_str()};
    const ScopedVariable m_temporary{"TMPDIR", m_folder.Path("tmp").c_str()};
};

using Texts = std::vector<std::string>;
