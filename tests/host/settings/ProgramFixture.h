// The built application, and a user without files.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "tests/host/common/ProgramRun.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

class ProgramFixture : public testing::Test {
protected:
    static nlohmann::json Json(const std::string& arguments, int exitCode = 0) {
        const ProgramRun run = RunTallyquist(arguments + " --json", "/");
        EXPECT_EQ(exitCode, run.exitCode) << run.err;
        return nlohmann::json::parse(run.out);
    }

    // Expects a failure that prints no result and says this on standard error, after any lines of
    // the library.
    static void ExpectFailure(int exitCode, const std::string& arguments,
                              const std::string& message) {
        const ProgramRun run = RunTallyquist(arguments, "/");
        EXPECT_EQ(exitCode, run.exitCode) << arguments;
        EXPECT_EQ("", run.out) << arguments;
        EXPECT_TRUE(run.err.ends_with("tallyquist: " + message + "\n")) << arguments << run.err;
    }

    const TempFolder m_folder;
    const ScopedVariable m_data{"XDG_DATA_HOME", m_folder.Path("data").c_str()};
    const std::string m_dataFolder =
        m_folder.Path("data/K7Q3MZP2WD.RX.qvtrel/Library/Application Support/Norvane/Tallyquist");
    const std::string m_settings = m_dataFolder + "/CMSystemSetting.cfg";
    const std::string m_dbSettings = m_dataFolder + "/db_settings";
};
