// The program on real logs.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/host/common/ProgramRun.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

class ExportProgram : public testing::Test {
protected:
    ProgramRun Export(const std::string& arguments) {
        return RunTallyquist("export " + arguments, m_folder.Path());
    }

    // The file written by an export that succeeds.
    std::string Exported(const std::string& arguments) {
        const ProgramRun run = Export(arguments + " --force -o out.csv");
        EXPECT_EQ(0, run.exitCode) << run.err;
        m_err = run.err;
        return ReadFile(m_folder.Path("out.csv"));
    }

    TempFolder m_folder;
    std::string m_err;
    ScopedVariable m_zone{"TZ", "Europe/Berlin"};
};

TEST_F(ExportProgram, WritesTheRowsOfARealLog) {
    const std::string file = Exported(EXAMPLES "/page_log");
    EXPECT_EQ(0U,
              file.find("\"printer\",\"user\",\"job\",\"completed\",\"pages\",\"billing\",\"host\","
                        "\"name\",\"media\",\"sides\",\"width_mm\",\"height_mm\"\n"
                        "\"Office_PDF\",\"alice\",\"23\",\"2026/11/21 09:46:54\",\"3\",\"-\","
                        "\"localhost\",\"Quarterly report; Q1 2026\",\"iso_a4_210x297mm\","
                        "\"two-sided-long-edge\",\"210\",\"297\"\n"
                        "\"Office_PS\",\"j. o'neil\",\"24\",\"2026/11/21 09:46:55\",\"1\","
                        "\"Dept 4; Room 2\",\"localhost\",\"say ”hi” 100% ; =1+1\",\"-\",\"-\","
                        "\"\",\"\"\n"))
        << file;
    EXPECT_NE(std::string::npos, m_err.find("page_log:7: forged:")) << m_err;
    EXPECT_NE(std::string::npos, m_err.find("page_log:8: cut:")) << m_err;
    EXPECT_NE(std::string::npos, m_err.find("out.csv: 13 rows exported\n"));
    EXPECT_NE(std::string::npos, m_err.find("2 doubtful lines (1 cut, 1 forged)\n"));
    EXPECT_EQ(std::vector<std::string>{"out.csv"}, NamesIn(m_folder.Path()));
}

TEST_F(ExportProgram, SelectsRowsAndColumns) {
    const std::string columns = " --columns job,user";
    const struct {
        const char* options;
        const char* rows;
    } CASES[] = {
        {"--printer Pool --printer Raw_Label", "\n\"26\",\"erin\"\n\"27\",\"labels\""},
        {"--user liam --printer Photo_IPP", "\n\"35\",\"liam\""},
        {"--user nobody", ""},
        {"--from '2026-11-21 09:47:35' --to '2026-11-21 09:47:48'",
         "\n\"34\",\"liam\"\n\"36\",\"liam\""},
        {"--to '2026-11-21 08:46' --timezone UTC",
         "\n\"23\",\"alice\"\n\"24\",\"j. o'neil\"\n"
         "\"25\",\"carol\"\n\"26\",\"erin\""},
        {"--from 2026-11-22", ""},
    };
    for (const auto& expected : CASES) {
        EXPECT_EQ(std::string("\"job\",\"user\"") + expected.rows,
                  Exported(EXAMPLES "/page_log --quiet" + columns + " " + expected.options))
            << expected.options;
        EXPECT_EQ("", m_err);
    }
}

TEST_F(ExportProgram, KeepsEveryByteOnRequestAndBeginsWithAMark) {
    const std::string file =
        Exported(EXAMPLES "/page_log --values exact --bom --columns name --user \"j. o'neil\"");
    EXPECT_EQ("\xEF\xBB\xBF\"name\"\n\"\"say \"\"hi\"\" 100% ; =1+1\"\"", file);
    EXPECT_NE(std::string::npos, m_err.find("warning: 1 cell quoted twice")) << m_err;
}

TEST_F(ExportProgram, ReadsTablesWithTypedColumns) {
    WriteFile(m_folder.Path("t.csv"), "who,at,took\n\"a, b\",0,61\nc,,\n");
    EXPECT_EQ(
        "\"who\",\"at\",\"took\"\n\"a; b\",\"1970/01/01 01:00:00\",\"00:01:01\"\n"
        "\"c\",\"\",\"\"",
        Exported("t.csv --type at=datetime --type took=timespan"));
}

TEST_F(ExportProgram, WritesToStandardOutputAndLeavesNothingBehind) {
    const std::string tmp = m_folder.Path("tmp");
    fs::create_directory(tmp);
    const ScopedVariable folder("TMPDIR", tmp.c_str());
    const ProgramRun run = Export("-q --columns job -o - --user erin < " EXAMPLES "/page_log");
    EXPECT_EQ(0, run.exitCode);
    EXPECT_EQ("\"job\"\n\"26\"", run.out);
    EXPECT_EQ("", run.err);
    EXPECT_EQ(std::vector<std::string>{}, NamesIn(tmp));
}

TEST_F(ExportProgram, ReplacesAFileOnlyByForceAndKeepsItsMode) {
    const std::string path = m_folder.Path("real.csv");
    WriteFile(path, "old");
    chmod(path.c_str(), 0640);
    fs::create_symlink("real.csv", m_folder.Path("out.csv"));
    const ProgramRun refused = Export(EXAMPLES "/page_log -o out.csv");
    EXPECT_EQ(1, refused.exitCode);
    EXPECT_EQ("tallyquist: out.csv exists already; --force replaces it\n", refused.err);
    EXPECT_EQ("old", ReadFile(path));

    EXPECT_EQ("\"job\"\n\"26\"", Exported(EXAMPLES "/page_log -q --columns job --user erin"));
    EXPECT_TRUE(fs::is_symlink(m_folder.Path("out.csv")));
    EXPECT_EQ(fs::perms(0640), fs::status(path).permissions());
}

TEST_F(ExportProgram, FollowsALinkToAFileThatDoesNotExistYet) {
    fs::create_symlink("new.csv", m_folder.Path("link.csv"));
    EXPECT_EQ(0, Export(EXAMPLES "/page_log -q --columns job --user erin -o link.csv").exitCode);
    EXPECT_TRUE(fs::is_symlink(m_folder.Path("link.csv")));
    EXPECT_EQ("\"job\"\n\"26\"", ReadFile(m_folder.Path("new.csv")));
}

// The output file must not take the place of a closed standard error and get its messages.
TEST_F(ExportProgram, StandardErrorMayBeClosed) {
    EXPECT_EQ(0, Export(EXAMPLES "/page_log --columns job -o out.csv 2>&-").exitCode);
    EXPECT_EQ(0U, ReadFile(m_folder.Path("out.csv")).find("\"job\"\n\"23\""));
}

TEST_F(ExportProgram, ExplainsItself) {
    EXPECT_EQ(0, RunTallyquist("--help", m_folder.Path()).exitCode);
    EXPECT_EQ("tallyquist " PRODUCT_VERSION "\n", RunTallyquist("--version", m_folder.Path()).out);
    const std::string help = Export("--help").out;
    for (const char* option : {"--input", "--log-format", "--per-page", "--type", "--strict",
                               "--columns", "--from", "--to", "--printer", "--user", "--timezone",
                               "-o,--output", "--values", "--bom", "--force", "--quiet"}) {
        EXPECT_NE(std::string::npos, help.find(option)) << option;
    }
}

}  // namespace
