// Failing writes, by real faults: their results, log lines, and what is left on the disk.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/ExporterModule.h"
#include "tests/support/FailingAllocation.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

using Lines = std::vector<RecordedLine>;

constexpr size_t STREAM_BUFFER = 12582912;

// A limit on the size of files: writing past it fails like writing to a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_earlier);
        const rlimit limit{size, m_earlier.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_earlier); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_earlier{};
};

class CsvWriterFailure : public testing::Test {
protected:
    void SetUp() override {
        m_exporter.RecordLog();
        TakeRecordedCalls();
        m_exporter.create(&m_handle);
    }
    void TearDown() override { m_exporter.dispose(m_handle); }

    int WriteCell(const std::string& value) {
        const char* values[] = {value.c_str()};
        return m_exporter.writeValues(m_handle, 1, values, nullptr, nullptr);
    }

    // A file whose disk is always full. The link is what the exporter removes.
    std::string FullFile() {
        fs::create_symlink("/dev/full", m_path);
        return m_path;
    }

    static RecordedLine Error(unsigned line, int code, const char* message) {
        return {"CCsvWriter", line, 'e', static_cast<unsigned>(code), message};
    }

    TempFolder m_folder;
    std::string m_path = m_folder.Path("out.csv");
    ExporterModule m_exporter;
    void* m_handle = nullptr;
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
        void* handle = nullptr;
        m_exporter.create(&handle);
        EXPECT_EQ(expected.error, m_exporter.open(handle, expected.path));
        EXPECT_EQ((Lines{Error(50, expected.error, "CCsvWriter::Open() failed.")}),
                  TakeRecordedLines());
        EXPECT_EQ(-1, m_exporter.writeBom(handle));
        EXPECT_EQ(-1, m_exporter.writeValues(handle, 0, nullptr, nullptr, nullptr));
        EXPECT_EQ(0, m_exporter.close(handle));
        m_exporter.dispose(handle);
        EXPECT_EQ(Lines{}, TakeRecordedLines());
        EXPECT_TRUE(fs::is_directory(folder));
    }
}

TEST_F(CsvWriterFailure, AFailedWriterStaysFailedAfterANewOpen) {
    EXPECT_EQ(EINVAL, m_exporter.open(m_handle, nullptr));
    EXPECT_EQ(0, m_exporter.open(m_handle, m_path.c_str()));
    EXPECT_TRUE(fs::exists(m_path));
    EXPECT_EQ(-1, WriteCell("a"));
    EXPECT_EQ(0, m_exporter.close(m_handle));
    EXPECT_FALSE(fs::exists(m_path));
}

TEST_F(CsvWriterFailure, FullDiskAtTheRowBreak) {
    ASSERT_EQ(0, m_exporter.open(m_handle, FullFile().c_str()));
    ASSERT_EQ(0, WriteCell("a"));
    // This fills the buffer to the last byte.
    ASSERT_EQ(0, WriteCell(std::string(STREAM_BUFFER - 6, 'x')));
    EXPECT_EQ(ENOSPC, WriteCell("y"));
    EXPECT_EQ((Lines{Error(200, ENOSPC, "CCsvWriter::WriteValues() failed (fprintf_s error)."),
                     Error(289, ENOSPC, "CCsvWriter::WriteValues() failed.")}),
              TakeRecordedLines());
    EXPECT_EQ(-1, WriteCell("z"));
}

TEST_F(CsvWriterFailure, FullDiskWithinARow) {
    ASSERT_EQ(0, m_exporter.open(m_handle, FullFile().c_str()));
    ASSERT_EQ(0, WriteCell(std::string(STREAM_BUFFER - 100, 'x')));
    EXPECT_EQ(ENOSPC, WriteCell(std::string(200, 'y')));
    EXPECT_EQ((Lines{Error(277, ENOSPC, "CCsvWriter::WriteValues() failed (fwrite error)."),
                     Error(289, ENOSPC, "CCsvWriter::WriteValues() failed.")}),
              TakeRecordedLines());
    EXPECT_EQ(-1, WriteCell("z"));
    EXPECT_EQ(-1, m_exporter.writeBom(m_handle));
    EXPECT_EQ(Lines{}, TakeRecordedLines());
}

TEST_F(CsvWriterFailure, FullDiskAtTheByteOrderMark) {
    ASSERT_EQ(0, m_exporter.open(m_handle, FullFile().c_str()));
    ASSERT_EQ(0, WriteCell(std::string(STREAM_BUFFER - 4, 'x')));
    EXPECT_EQ(ENOSPC, m_exporter.writeBom(m_handle));
    EXPECT_EQ((Lines{Error(130, ENOSPC, "CCsvWriter::WriteBOM() failed (fwrite error).")}),
              TakeRecordedLines());
    EXPECT_EQ(-1, WriteCell("z"));
}

TEST_F(CsvWriterFailure, FullDiskOnlyAtClose) {
    ASSERT_EQ(0, m_exporter.open(m_handle, FullFile().c_str()));
    ASSERT_EQ(0, WriteCell("a"));
    EXPECT_EQ(ENOSPC, m_exporter.close(m_handle));
    EXPECT_EQ((Lines{Error(78, ENOSPC, "CCsvWriter::Close() failed (fflush error)."),
                     Error(98, ENOSPC, "CCsvWriter::Close() failed.")}),
              TakeRecordedLines());
    EXPECT_FALSE(fs::exists(fs::symlink_status(m_path)));
    EXPECT_EQ(-1, WriteCell("b"));
}

TEST_F(CsvWriterFailure, StreamThatCannotBeClosed) {
    ASSERT_EQ(0, m_exporter.open(m_handle, m_path.c_str()));
    const int next = open("/dev/null", O_RDONLY);
    close(next);
    close(next - 1);  // the descriptor that was given out before, which is the stream's
    EXPECT_EQ(EBADF, m_exporter.close(m_handle));
    EXPECT_EQ((Lines{Error(87, EBADF, "CCsvWriter::Close() failed (fclose error)."),
                     Error(98, EBADF, "CCsvWriter::Close() failed.")}),
              TakeRecordedLines());
    EXPECT_FALSE(fs::exists(m_path));
}

TEST_F(CsvWriterFailure, FileSizeLimitRemovesTheIncompleteFile) {
    const FileSizeLimit limit(STREAM_BUFFER * 3 / 2);
    ASSERT_EQ(0, m_exporter.open(m_handle, m_path.c_str()));
    const std::string cell(100'000, 'x');
    int result = 0;
    for (int row = 0; row < 1000 && result == 0; ++row) {
        result = WriteCell(cell);
    }
    EXPECT_EQ(EFBIG, result);
    EXPECT_TRUE(fs::exists(m_path));
    m_exporter.close(m_handle);  // its result depends on whether the rest still fits
    EXPECT_FALSE(fs::exists(m_path));
}

TEST_F(CsvWriterFailure, NoMemoryForAWriter) {
    void* handle = &m_path;
    const FailingAllocation none(1);
    const int result = m_exporter.create(&handle);
    EXPECT_EQ(0, result);
    EXPECT_EQ(nullptr, handle);
}

TEST_F(CsvWriterFailure, NoMemoryForTheStreamsBufferIsAWarning) {
    {
        const FailingAllocation large(STREAM_BUFFER);
        ASSERT_EQ(0, m_exporter.open(m_handle, m_path.c_str()));
    }
    EXPECT_EQ((Lines{{"CCsvWriter", 55, 'w', 0, "setvbuf failed."}}), TakeRecordedLines());
    EXPECT_EQ(0, WriteCell("a"));
    EXPECT_EQ(0, m_exporter.close(m_handle));
    EXPECT_EQ("\"a\"", ReadFile(m_path));
}

TEST_F(CsvWriterFailure, NoMemoryForACell) {
    const std::string plain(100'000, 'x');
    for (const std::string& value : {plain, plain + ","}) {
        void* handle = nullptr;
        m_exporter.create(&handle);
        ASSERT_EQ(0, m_exporter.open(handle, m_path.c_str()));
        const char* values[] = {value.c_str()};
        {
            const FailingAllocation large(50'000);
            EXPECT_EQ(ENOMEM, m_exporter.writeValues(handle, 1, values, nullptr, nullptr));
        }
        EXPECT_EQ((Lines{Error(277, ENOMEM, "CCsvWriter::WriteValues() failed (fwrite error)."),
                         Error(289, ENOMEM, "CCsvWriter::WriteValues() failed.")}),
                  TakeRecordedLines());
        EXPECT_EQ(0, m_exporter.close(handle));
        EXPECT_FALSE(fs::exists(m_path));
        m_exporter.dispose(handle);
    }
}

// With no memory to remember anything in, times are worked out one by one.
TEST_F(CsvWriterFailure, NoMemoryToRememberOffsetsChangesNothing) {
    ASSERT_EQ(0, m_exporter.open(m_handle, m_path.c_str()));
    ASSERT_EQ(0, WriteCell("a"));
    const char* values[] = {"0", "86400"};
    const char* types[] = {"datetime", "datetime"};
    {
        const FailingAllocation large(10'000);
        EXPECT_EQ(0, m_exporter.writeValues(m_handle, 2, values, nullptr, types));
    }
    EXPECT_EQ(0, m_exporter.writeValues(m_handle, 2, values, nullptr, types));
    EXPECT_EQ(0, m_exporter.close(m_handle));
    const std::string file = ReadFile(m_path);
    const size_t row = file.find('\n') + 1;
    EXPECT_EQ(file.substr(row, 43), file.substr(row + 44));
}

}  // namespace
