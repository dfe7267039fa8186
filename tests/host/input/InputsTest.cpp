// Files of all kinds as inputs: compression, order, recognition, what is refused.
#include <fcntl.h>

#include "tests/host/input/InputTestSupport.h"

namespace tallyquist {
namespace {

using Texts = std::vector<std::string>;

std::string Record(const std::string& job, const std::string& day,
                   const std::string& pages = "total 1") {
    return "Q ann " + job + " [" + day + "/Nov/2026:08:00:00 +0000] " + pages +
           " - localhost doc A4 -\n";
}

// The jobs of the rows.
std::string Jobs(const Outcome& outcome) {
    std::string jobs;
    for (const std::string& row : outcome.rows) {
        jobs += row.substr(6, row.find('|', 6) - 6) + " ";
    }
    return jobs;
}

TEST(Inputs, GzipAndPlainFilesAreTheSame) {
    const Folder folder;
    std::string log;
    for (int i = 0; i < 5000; ++i) {
        log += Record(std::to_string(i), "21");
    }
    const Outcome plain = ReadFile(folder.Write("page_log", log));
    folder.WriteGzip("page_log.1.gz", log.substr(0, 1000));
    const std::string packed = folder.WriteGzip("page_log.1.gz", log.substr(1000));
    const Outcome unpacked = ReadFile(packed);
    EXPECT_EQ(plain.rows.size(), 5000U);
    EXPECT_EQ(unpacked.error, "");
    EXPECT_EQ(unpacked.rows, plain.rows);
    EXPECT_EQ(plain.progress.bytesTotal, log.size());
    EXPECT_EQ(plain.progress.bytesRead, log.size());
    EXPECT_EQ(unpacked.progress.bytesTotal, std::filesystem::file_size(packed));
    EXPECT_EQ(unpacked.progress.bytesRead, unpacked.progress.bytesTotal);
}

TEST(Inputs, DamagedGzipFilesAreRefused) {
    const Folder folder;
    std::string log;
    for (int i = 0; i < 5000; ++i) {
        log += Record(std::to_string(i), "21");
    }
    const std::string path = folder.WriteGzip("log.gz", log);
    const auto size = std::filesystem::file_size(path);
    for (const auto kept : {size - 1, size - 9, size / 2, size_t{25}}) {
        std::filesystem::copy_file(path, folder.Path("cut.gz"),
                                   std::filesystem::copy_options::overwrite_existing);
        std::filesystem::resize_file(folder.Path("cut.gz"), kept);
        ExpectError(ReadFile(folder.Path("cut.gz")), folder.Path("cut.gz"), "ends too early");
    }
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(size - 8));
    file << "abcd";
    file.close();
    ExpectError(ReadFile(path), path, "damaged (incorrect data check)");
}

TEST(Inputs, RotatedFilesInAnyOrder) {
    const Folder folder;
    const std::string newest = folder.Write("page_log", Record("5", "23") + Record("6", "23"));
    const std::string middle = folder.Write("page_log.O", Record("3", "22") + Record("4", "22"));
    const std::string oldest =
        folder.WriteGzip("page_log.2.gz", Record("1", "21") + Record("2", "21"));
    const std::string empty = folder.Write("page_log.1", "");
    for (const Texts& paths :
         {Texts{newest, middle, empty, oldest}, Texts{oldest, newest, middle, empty}}) {
        const Outcome outcome = ReadFiles(paths);
        EXPECT_EQ(outcome.error, "");
        EXPECT_EQ(Jobs(outcome), "1 2 3 4 5 6 ");
        EXPECT_EQ(outcome.findings, Texts{});
        EXPECT_GT(outcome.progress.bytesTotal, 0U);
        EXPECT_EQ(outcome.progress.bytesRead, outcome.progress.bytesTotal);
    }
    // A job whose pages went to two files is still one job.
    const std::string later = folder.Write("b", Record("7", "22", "3 2"));
    const std::string earlier =
        folder.Write("a", Record("7", "21", "1 2") + Record("7", "21", "2 2"));
    const Outcome job = ReadFiles({later, earlier});
    ASSERT_EQ(job.rows.size(), 1U);
    EXPECT_TRUE(job.rows[0].starts_with("Q|ann|7|1795334400|6|")) << job.rows[0];
}

std::string BarRecord(const std::string& job, const std::string& name = "doc") {
    return job +
           "|[22/Nov/2026:08:00:00 +0000]|Q|ann|total|2|copies=1|imp=2|sheets=1|kb=9|mode=color|"
           "type=-|created=1|processing=2|fmt=text/plain|state=9|uuid=u|pages=-|nup=1|A4|-|-|"
           "localhost|" +
           name + "\n";
}

// An administrator sets the format with bars while the log is growing, far behind its beginning.
TEST(Inputs, FormatChangedWithinALog) {
    const Folder folder;
    std::string log;
    for (int i = 1000; i < 3000; ++i) {
        log += Record(std::to_string(i), "21");
    }
    log += BarRecord("3000") + BarRecord("3001", "two\nlines") + BarRecord("3002");
    const std::string packed = folder.WriteGzip("log.gz", log);
    for (const std::string& path : {folder.Write("page_log", log), packed}) {
        const Outcome outcome = ReadFile(path);
        EXPECT_EQ(outcome.findings, Texts{}) << path;
        ASSERT_EQ(outcome.rows.size(), 2003U) << path;
        EXPECT_EQ(outcome.rows[0].substr(0, 9), "Q|ann|100");
        EXPECT_EQ(outcome.rows[2001].substr(0, 10), "Q|ann|3001");
        EXPECT_NE(outcome.rows[2001].find("|2|-|localhost|two\nlines|A4|-|"), std::string::npos);
        EXPECT_NE(outcome.columns.find("|sides|copies|job-impressions-completed|"),
                  std::string::npos);
    }
}

TEST(Inputs, SingleLineInAnotherFormatIsNoRecord) {
    const Folder folder;
    const std::string path =
        folder.Write("page_log", Record("1", "21") + BarRecord("99") + Record("2", "22"));
    const Outcome outcome = ReadFile(path);
    EXPECT_EQ(Jobs(outcome), "1 2 ");
    EXPECT_EQ(outcome.findings, Texts{"UNREADABLE 2"});

    const Outcome back = ReadFile(folder.Write(
        "back", Record("1", "21") + BarRecord("99") + BarRecord("98") + Record("2", "22")));
    EXPECT_EQ(Jobs(back), "1 99 98 2 ");
    EXPECT_EQ(back.findings, Texts{"FORGED 4"});
}

TEST(Inputs, NoRecordIsLostBelowAnIncompleteOne) {
    const Folder folder;
    const std::string odd = BarRecord("2").replace(BarRecord("2").find("A4|-"), 4, "A4|tumble");
    for (const std::string& broken : {odd, odd.substr(0, 80) + "\n", odd.substr(0, 58) + "\n"}) {
        const Outcome outcome = ReadFile(
            folder.Write("log", Record("1", "21") + BarRecord("7") + broken + BarRecord("3")));
        EXPECT_EQ(Jobs(outcome), "1 7 2 3 ") << broken;
        EXPECT_EQ(outcome.findings, (Texts{"CUT 3", "FORGED 4"})) << broken;
    }
}

TEST(Inputs, StandardInput) {
    const Folder folder;
    const std::string path = folder.WriteGzip("log", Record("1", "21") + "stray\n");
    // A pipe cannot be read twice, a file can. The shell is given this test's own file name.
    for (const std::string& command : {"cat '" + path + "'", std::string()}) {
        FILE* pipe = command.empty() ? std::fopen(path.c_str(), "rb")
                                     : popen(command.c_str(), "r");  // NOLINT
        ASSERT_NE(pipe, nullptr);
        ASSERT_GE(dup2(fileno(pipe), STDIN_FILENO), 0);
        const Outcome outcome = ReadFiles({});
        EXPECT_EQ(outcome.error, "");
        EXPECT_EQ(Jobs(outcome), "1 ");
        ASSERT_EQ(outcome.fullFindings.size(), 1U);
        EXPECT_EQ(outcome.fullFindings[0].file, "standard input");
        EXPECT_EQ(outcome.progress.bytesTotal, 0U);
        command.empty() ? std::fclose(pipe) : pclose(pipe);
    }
    ExpectError(ReadFiles({"-", "-"}), "standard input", "given twice");
    ExpectError(ReadFiles({path, "-"}), "standard input", "given twice");
}

TEST(Inputs, MarksAndLineEnds) {
    const Folder folder;
    const Outcome outcome = ReadFile(
        folder.Write("log", "\xEF\xBB\xBF" + Record("1", "21") +
                                Record("2", "21").insert(Record("2", "21").size() - 1, "\r")));
    EXPECT_EQ(Jobs(outcome), "1 2 ");
    EXPECT_EQ(outcome.findings, Texts{});
}

TEST(Inputs, WhatIsNoInput) {
    const Folder folder;
    std::filesystem::create_directory(folder.Path("folder"));
    std::filesystem::create_symlink(folder.Write("log", Record("1", "21")), folder.Path("link"));
    const std::string head = Record("1", "21").substr(0, 45);
    const struct {
        std::string path;
        const char* reason;
    } CASES[] = {
        {folder.Path("missing"), "No such file"},
        {folder.Path("folder"), "Is a directory"},
        {folder.Write("utf16", std::string("\xFF\xFE"
                                           "a\0",
                                           4)),
         "UTF-16"},
        {folder.Write("empty", " \n\n"), "is empty"},
        {folder.Write("prose", "Dear all,\nthis is no log\n"), "not a job log: no line reads as"},
        {folder.Write("oneline", "a,b\n"), "not a job log"},
        {folder.Write("ragged", "a,b\n1,2\n1,2,3\n"),
         "no table with a header (line 3: the row has 3 cells, but the header has 2); the first"},
        {folder.Write("commas", "Dear all, this\nis, no table\n"), "a header; the first"},
        {folder.Write("cell", "a,\n1,2\n"), "a header; the first"},
        {folder.Write("cut", Record("1", "21").substr(0, 60)), "not a job log"},
        // A format with the name alone behind the pages.
        {folder.Write("format", head + "report\n" + head + "a b\n" + head + "my own report\n"),
         "; --log-format takes the format of another log"},
        {folder.Write("breaks", head + "report\n" + head + "my\nown report\n"), "not a job log"},
        {folder.Write("binary", std::string("\x7F"
                                            "ELF\0\0\n\0",
                                            8)),
         "binary data"},
        {folder.Write("packed", "BZh91AY&SY"), "a bzip2 file"},
        {folder.Write("long", std::string(100000, 'x')), "line that is too long"},
    };
    for (const auto& test : CASES) {
        ExpectError(ReadFile(test.path), test.path, test.reason);
    }
    ExpectError(ReadFiles({folder.Path("log"), folder.Path("link")}), folder.Path("link"),
                "given twice");
    InputOptions log;
    log.paths = {folder.Write("table", "a,b\n1,2\n")};
    log.kind = InputKind::PAGE_LOG;
    ExpectError(ReadAll(log), folder.Path("table"), "not a job log");
}

TEST(Inputs, ColumnsOfAllInputs) {
    const Folder folder;
    const std::string oldest =
        folder.Write("old", "Q ann 1 [20/Nov/2026:08:00:00 +0000] total 4 - localhost\n");
    const std::string table = folder.Write("t", "job,media,price\n9,Letter,1.50\n");
    const Outcome outcome = ReadFiles({table, folder.Write("log", Record("2", "21")), oldest});
    EXPECT_EQ(outcome.error, "");
    EXPECT_EQ(outcome.columns,
              "job|media|price|width_mm|height_mm|printer|user|completed*|pages|billing|host|name|"
              "sides");
    EXPECT_EQ(outcome.rows,
              (Texts{"9|Letter|1.50|215.9|279.4||||||||", "1|||||Q|ann|1795161600|4|-|localhost||",
                     "2|A4||210|297|Q|ann|1795248000|1|-|localhost|doc|-"}));
    const std::string other = folder.Write("o.csv", "completed,x\nyes,1\n");
    ExpectError(ReadFiles({folder.Path("log"), other}), other, "'completed'");
}

}  // namespace
}  // namespace tallyquist
