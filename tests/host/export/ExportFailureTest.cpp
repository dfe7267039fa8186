// Exports that fail: the exit code, the reason on standard error, and nothing half-made left.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/host/common/ProgramRun.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

constexpr const char* LOG = EXAMPLES "/page_log";

class ExportFailure : public testing::Test {
protected:
    void ExpectFailure(int exitCode, const std::string& arguments, const std::string& reason) {
        const ProgramRun run = RunTallyquist("export " + arguments, m_folder.Path());
        EXPECT_EQ(exitCode, run.exitCode) << arguments;
        EXPECT_NE(std::string::npos, run.err.find(reason)) << arguments << "\n" << run.err;
        EXPECT_EQ("", run.out);
    }

    void WriteLongLog(int jobs) {
        std::ofstream log(m_folder.Path("long_log"));
        for (int job = 1; job <= jobs; ++job) {
            log << "Office_PDF alice " << job
                << " [21/Nov/2026:09:46:54 +0100] total 3 - localhost report iso_a4_210x297mm -\n";
        }
    }

    TempFolder m_folder;
};

TEST_F(ExportFailure, WrongUsageIsTwo) {
    const std::string log = LOG;
    ExpectFailure(2, "", "--output is required");
    ExpectFailure(2, log + " -o out.csv --nonsense", "--nonsense");
    ExpectFailure(2, log + " -o out.csv --values other",
                  "tallyquist: --values: 'other' is not one of exact, portable");
    ExpectFailure(2, log + " -o out.csv --from ''", "must not be empty");
    ExpectFailure(2, log + " -o out.csv --type a=date", "'date' is not one of");
    ExpectFailure(2, log + " -o out.csv --log-format '%p|%u'", "the log format '%p|%u'");
    ExpectFailure(2, log + " -o out.csv --type a=timespan", "no table has a column");
    ExpectFailure(2, log + " -o out.csv --timezone Mars/Olympus", "'Mars/Olympus'");
    ExpectFailure(2, log + " -o out.csv --from yesterday", "--from: 'yesterday'");
    ExpectFailure(2, log + " -o out.csv --from 2026-02-01 --to 2026-01-01", "lies after");
    ExpectFailure(2, log + " -o out.csv --columns job,colour",
                  "no column 'colour'; it has printer, user");
    EXPECT_EQ(2, RunTallyquist("", m_folder.Path()).exitCode);
    EXPECT_EQ(Names{}, NamesIn(m_folder.Path()));

    fs::copy_file(LOG, m_folder.Path("page_log"));
    ExpectFailure(2, "page_log -o page_log --force", "is one of the inputs");
    ExpectFailure(2, "-o page_log --force <page_log", "is one of the inputs");
    EXPECT_EQ(ReadFile(LOG), ReadFile(m_folder.Path("page_log")));
}

TEST_F(ExportFailure, InputsThatCannotBeUsed) {
    WriteFile(m_folder.Path("prose"), "Dear printer,\nplease print.\n");
    WriteFile(m_folder.Path("bad.csv"), "a\x1B,b\n1,2\n1\n");
    ExpectFailure(1, "none -o out.csv", "none: No such file or directory");
    ExpectFailure(1, ". -o out.csv", "Is a directory");
    ExpectFailure(1, "prose -o out.csv", "prose: not a job log");
    ExpectFailure(1, "bad.csv -o out.csv", "bad.csv:3:");
    // What a terminal would obey is shown.
    ExpectFailure(2, "bad.csv -o out.csv --columns c", "no column 'c'; it has a\\x1B, b");
    ExpectFailure(1, "'n\x1Bone' -o out.csv", "n\\x1Bone: No such file or directory");
    ExpectFailure(1, std::string(LOG) + " --strict -o out.csv",
                  "nothing was written because of --strict");
    EXPECT_EQ((Names{"bad.csv", "prose"}), NamesIn(m_folder.Path()));
}

TEST_F(ExportFailure, TargetsThatCannotBeWritten) {
    const std::string log = LOG;
    ExpectFailure(1, log + " -o none/out.csv",
                  "cannot write none/out.csv: No such file or directory");
    ExpectFailure(1, log + " -o . --force", "cannot write .: Is a directory");
    ExpectFailure(1, log + " -o /dev/full --force", "/dev/full: it is not a regular file");
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
    EXPECT_EQ(Names{}, NamesIn(m_folder.Path()));
    fs::create_symlink("loop", m_folder.Path("loop"));
    ExpectFailure(1, log + " -o loop", "cannot write loop: Too many levels of symbolic links");
    const ProgramRun run = RunTallyquist(
        "--version; TMPDIR=/nonexistent " TALLYQUIST " export " + log + " -o -", m_folder.Path());
    EXPECT_EQ(1, run.exitCode);
    EXPECT_NE(std::string::npos, run.err.find("cannot write a file in /nonexistent: No such file"));
}

TEST_F(ExportFailure, StandardOutputThatIsFull) {
    const std::string log = LOG;
    ExpectFailure(1, log + " -q -o - >/dev/full",
                  "cannot write standard output: No space left on device");
}

TEST_F(ExportFailure, FileSizeLimitLeavesTheOldFileWhole) {
    WriteLongLog(100'000);
    WriteFile(m_folder.Path("out.csv"), "old");
    // The shell's limit is inherited by what it runs.
    const ProgramRun run = RunTallyquist("--version; ulimit -f 4000; " TALLYQUIST
                                         " export long_log --force -o out.csv",
                                         m_folder.Path());
    EXPECT_EQ(1, run.exitCode);
    EXPECT_EQ("tallyquist: cannot write out.csv: File too large\n", run.err);
    EXPECT_EQ("old", ReadFile(m_folder.Path("out.csv")));
    EXPECT_EQ((Names{"long_log", "out.csv"}), NamesIn(m_folder.Path()));
}

// The program reads a pipe that stays open, so it is in the middle of its work when the signal
// comes.
TEST_F(ExportFailure, SignalsLeaveNothingThatLooksComplete) {
    WriteLongLog(200'000);
    for (const int signal : {SIGTERM, SIGHUP, SIGKILL}) {
        const std::string script =
            "cd '" + m_folder.Path() +
            "'; rm -rf work; mkdir work; mkfifo work/pipe; " TALLYQUIST
            " export work/pipe -o work/out.csv & program=$!; exec 3>work/pipe; cat long_log >&3; "
            "kill -" +
            std::to_string(signal) +
            " $program; wait $program; status=$?; rm work/pipe; "
            "exit $status";
        WriteFile(m_folder.Path("script"), script);
        EXPECT_EQ(128 + signal,
                  WEXITSTATUS(std::system(("bash " + m_folder.Path("script")).c_str())));
        for (const std::string& name : NamesIn(m_folder.Path("work"))) {
            EXPECT_EQ(SIGKILL, signal) << name;
            EXPECT_EQ(0U, name.find(".out.csv.tallyquist-")) << name;
            EXPECT_EQ(".part", fs::path(name).extension()) << name;
        }
    }
}

TEST_F(ExportFailure, PluginThatCannotBeUsed) {
    const ScopedVariable contents("TALLYQUIST_CONTENTS", m_folder.Path().c_str());
    const std::string plugin = "PlugIns/qvtrelExporter.plugin";
    const std::string code = m_folder.Path(plugin + "/Contents/Linux");
    const std::string arguments = std::string(LOG) + " -o out.csv";
    ExpectFailure(1, arguments, "cannot load the exporter plug-in " + m_folder.Path(plugin) + ": ");
    fs::create_directories(code);
    ExpectFailure(1, arguments, "qvtrelExporter.so: No such file or directory");
    WriteFile(code + "/qvtrelExporter.so", "text");
    ExpectFailure(1, arguments, "qvtrelExporter.so: file too short");
    fs::remove(code + "/qvtrelExporter.so");
    fs::copy_file(ENTRYLESS_LOGGER, code + "/qvtrelExporter.so");
    ExpectFailure(1, arguments, plugin + " has no function DataExporterCreate");
    EXPECT_EQ(Names{"PlugIns"}, NamesIn(m_folder.Path()));
}

}  // namespace
