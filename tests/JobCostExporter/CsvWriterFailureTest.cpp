// Failing writes, by real faults: their results, log lines, and what is left on the disk.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <utility>

#include "tests/JobCostExporter/CsvFixture.h"
#include "tests/support/FailingAllocation.h"
#include "tests/support/RecordingLogger.h"

namespace {

namespace fs = std::filesystem;

using Lines = std::vector<RecordedLine>;

constexpr size_t STREAM_BUFFER = 12582912;

class CsvWriterFailure : public CsvFixture {
protected:
    CsvWriterFailure() {
        m_exporter.RecordLog();
        TakeRecordedCalls();
    }

    int WriteCell(const std::string& value) { return WriteRow({value.c_str()}); }

    static RecordedLine Error(unsigned line, int code, const char* message) {
        return {"CCsvWriter", line, 'e', static_cast<unsigned>(code), message};
    }

    // The lines of a failed row.
    static Lines RowErrors(int code) {
        return {Error(277, code, "CCsvWriter::WriteValues() failed (fwrite error)."),
                Error(289, code, "CCsvWriter::WriteValues() failed.")};
    }

    void Renew() {
        m_exporter.dispose(m_handle);
        m_exporter.create(&m_handle);
    }

    // The handle refuses, silently, and what it has written of the file is removed.
    void ExpectFailed() {
        EXPECT_EQ(-1, m_exporter.writeBom(m_handle));
        EXPECT_EQ(-1, WriteCell("z"));
        m_exporter.close(m_handle);  // its result depends on whether the rest still fits
        EXPECT_FALSE(fs::exists(fs::symlink_status(m_path)));
    }
};

TEST_F(CsvWriterFailure, FileThatCannotBeOpened) {
    const std::string missingFolder = m_folder.Path("none/out.csv");
    const std::string folder = m_folder.Path();
    struct {
        const char* path;
        int error;
    } const CASES[] = {
        {missingFolder.c_str(), ENOENT}, {folder.c_str(), EISDIR}, {"", ENOENT}, {nullptr, EINVAL}};
    for (const auto& expected : CASES) {
        EXPECT_EQ(expected.error, m_exporter.open(m_handle, expected.path));
        EXPECT_EQ((Lines{Error(50, expected.error, "CCsvWriter::Open() failed.")}),
                  TakeRecordedLines());
        EXPECT_EQ(0, m_exporter.close(m_handle));
        EXPECT_TRUE(fs::is_directory(folder));
    }
    // A handle that failed stays failed after a new Open.
    EXPECT_EQ(0, Open());
    ExpectFailed();
    EXPECT_EQ(Lines{}, TakeRecordedLines());
}

TEST_F(CsvWriterFailure, FullDisk) {
    struct {
        size_t room;  // that is left in the stream's buffer
        std::function<int()> fail;
        Lines lines;
    } const CASES[] = {
        {0,
         [this] { return WriteCell("y"); },
         {Error(200, ENOSPC, "CCsvWriter::WriteValues() failed (fprintf_s error)."),
          Error(289, ENOSPC, "CCsvWriter::WriteValues() failed.")}},
        {100, [this] { return WriteCell(std::string(200, 'y')); }, RowErrors(ENOSPC)},
        {2,
         [this] { return m_exporter.writeBom(m_handle); },
         {Error(130, ENOSPC, "CCsvWriter::WriteBOM() failed (fwrite error).")}},
        {100,
         [this] { return m_exporter.close(m_handle); },
         {Error(78, ENOSPC, "CCsvWriter::Close() failed (fflush error)."),
          Error(98, ENOSPC, "CCsvWriter::Close() failed.")}},
    };
    for (const auto& expected : CASES) {
        SCOPED_TRACE(expected.lines.front().message);
        Renew();
        fs::create_symlink("/dev/full", m_path);  // the link is what is removed
        ASSERT_EQ(0, Open());
        ASSERT_EQ(0, WriteCell("a"));
        ASSERT_EQ(0, WriteCell(std::string(STREAM_BUFFER - 6 - expected.room, 'x')));
        EXPECT_EQ(ENOSPC, expected.fail());
        EXPECT_EQ(expected.lines, TakeRecordedLines());
        ExpectFailed();
        EXPECT_EQ(Lines{}, TakeRecordedLines());
    }
}

TEST_F(CsvWriterFailure, StreamThatCannotBeClosed) {
    ASSERT_EQ(0, Open());
    const int next = open("/dev/null", O_RDONLY);
    close(next);
    close(next - 1);  // the descriptor that was given out before, which is the stream's
    EXPECT_EQ(EBADF, m_exporter.close(m_handle));
    EXPECT_EQ((Lines{Error(87, EBADF, "CCsvWriter::Close() failed (fclose error)."),
                     Error(98, EBADF, "CCsvWriter::Close() failed.")}),
              TakeRecordedLines());
    EXPECT_FALSE(fs::exists(m_path));
}

TEST_F(CsvWriterFailure, NoMemoryForTheStreamsBufferIsAWarning) {
    {
        const FailingAllocation large(STREAM_BUFFER);
        ASSERT_EQ(0, Open());
    }
    EXPECT_EQ((Lines{{"CCsvWriter", 55, 'w', 0, "setvbuf failed."}}), TakeRecordedLines());
    EXPECT_EQ(0, WriteCell("a"));
    EXPECT_EQ(0, m_exporter.close(m_handle));
    EXPECT_EQ("\"a\"", ReadFile(m_path));
}

TEST_F(CsvWriterFailure, NoMemoryForACell) {
    const std::pair<size_t, char> CASES[] = {
        {50'000, 'x'}, {150'000, '"'},  // room for the text, not for one that is twice as long
    };
    for (const auto& [refused, character] : CASES) {
        Renew();
        ASSERT_EQ(0, Open());
        const std::string value(100'000, character);
        {
            const FailingAllocation large(refused);
            EXPECT_EQ(ENOMEM, WriteCell(value));
        }
        EXPECT_EQ(RowErrors(ENOMEM), TakeRecordedLines());
        ExpectFailed();
    }
}

}  // namespace
