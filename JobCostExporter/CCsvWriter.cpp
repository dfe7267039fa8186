#include "JobCostExporter/CCsvWriter.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "CostCountCommon/CMLibLogger.h"
#include "JobCostExporter/TypedCells.h"
#include "compatible/osFree.h"

namespace {

// The line numbers are part of the log's contents and do not follow the source.
void Log(unsigned int line, char level, int code, const char* message) {
    CCMLibLogger* logger = CCMLibLogger::getInstance();
    if (logger != nullptr) {
        logger->WriteLog("CCsvWriter", line, level, static_cast<unsigned int>(code), "%s", message);
    }
}

constexpr char QUOTE = '"';
constexpr char SEPARATOR = ',';

// A cell's opening quote, closing quote and separator.
constexpr size_t CELL_FRAME = 3;

enum class CellKind { TEXT, DATE_TIME, TIME_SPAN };

CellKind KindOf(const char* type) {
    if (type == nullptr) {
        return CellKind::TEXT;
    }
    return std::strcmp(type, "datetime") == 0   ? CellKind::DATE_TIME
           : std::strcmp(type, "timespan") == 0 ? CellKind::TIME_SPAN
                                                : CellKind::TEXT;
}

template <typename Word>
Word Load(const char* from) {
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

template <typename Word>
void Store(char* to, Word word) {
    std::memcpy(to, &word, sizeof word);
}

constexpr uint64_t Repeated(unsigned char byte) {
    return 0x0101010101010101U * byte;
}

// Not zero when some byte of `word` lies below `limit`, which is an ASCII character.
constexpr uint64_t HoldsBelow(uint64_t word, char limit) {
    return (word - Repeated(static_cast<unsigned char>(limit))) & ~word & Repeated(0x80);
}

constexpr uint64_t Holds(uint64_t word, char byte) {
    return HoldsBelow(word ^ Repeated(static_cast<unsigned char>(byte)), 1);
}

// Whether some byte of `word` makes a value need quoting. All that do lie below the minus sign, as
// few other characters of real values do, so one test answers for most words.
constexpr bool NeedsEscape(uint64_t word) {
    return HoldsBelow(word, '-') != 0 &&
           (Holds(word, QUOTE) | Holds(word, ',') | Holds(word, '\r') | Holds(word, '\n')) != 0;
}
static_assert(QUOTE < '-' && ',' < '-' && '\r' < '-' && '\n' < '-');

// Copies `size` bytes and tells whether one of them makes a value need quoting, in one pass of
// whole words. Where the size is no multiple of a word, the last one overlaps the one before it, so
// that no byte outside the text is touched.
bool CopyNeedsEscape(char* to, const char* from, size_t size) {
    if (size >= sizeof(uint64_t)) {
        bool found = false;
        const size_t last = size - sizeof(uint64_t);
        for (size_t at = 0; at < last; at += sizeof(uint64_t)) {
            const auto word = Load<uint64_t>(from + at);
            Store(to + at, word);
            found |= NeedsEscape(word);
        }
        const auto word = Load<uint64_t>(from + last);
        Store(to + last, word);
        return found | NeedsEscape(word);
    }
    if (size >= sizeof(uint32_t)) {
        const size_t last = size - sizeof(uint32_t);
        const auto head = Load<uint32_t>(from);
        const auto tail = Load<uint32_t>(from + last);
        Store(to, head);
        Store(to + last, tail);
        return NeedsEscape(head | uint64_t{tail} << 32);
    }
    uint64_t word = ~uint64_t{0};  // bytes that need nothing
    for (size_t at = 0; at < size; ++at) {
        to[at] = from[at];
        word = word << 8 | static_cast<unsigned char>(from[at]);
    }
    return NeedsEscape(word);
}

// Once so many bytes of a row are gathered they go to the stream, so that the buffer need not hold
// rows of very large cells whole.
constexpr size_t GATHERED = 4096;

void FinishCell(RowBuffer& row, char* end, bool last) {
    *end++ = QUOTE;
    if (!last) {
        *end++ = SEPARATOR;
    }
    row.Append(end);
}

// Each of the three appends one cell to the row, unless memory is exhausted.

// Kept out of the common path, which is then free of string objects and their clean-up.
__attribute__((noinline)) bool AppendEscaped(RowBuffer& row, const char* value, bool last) try {
    const std::string escaped = CCsvWriter::EscapeValue(value);
    char* cell = row.Reserve(escaped.size() + CELL_FRAME);
    if (cell == nullptr) {
        return false;
    }
    *cell = QUOTE;
    escaped.copy(cell + 1, escaped.size());
    FinishCell(row, cell + 1 + escaped.size(), last);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool AppendText(RowBuffer& row, const char* value, bool last) {
    const size_t size = std::strlen(value);
    char* cell = row.Reserve(size + CELL_FRAME);
    if (cell == nullptr) {
        return false;
    }
    *cell = QUOTE;
    if (CopyNeedsEscape(cell + 1, value, size)) {
        return AppendEscaped(row, value, last);
    }
    FinishCell(row, cell + 1 + size, last);
    return true;
}

bool AppendTyped(RowBuffer& row, const char* value, CellKind kind, DateTimeCells& dateTimes,
                 bool last) {
    char* cell = row.Reserve(TYPED_CELL_SIZE + CELL_FRAME);
    if (cell == nullptr) {
        return false;
    }
    *cell = QUOTE;
    const int64_t seconds = ParseSeconds(value);
    FinishCell(row,
               kind == CellKind::DATE_TIME ? dateTimes.Write(cell + 1, seconds)
                                           : WriteTimeSpan(cell + 1, seconds),
               last);
    return true;
}

}  // namespace

CCsvWriter::~CCsvWriter() {
    Close();
}

int CCsvWriter::Open(const char* path) {
    if (m_file != nullptr) {
        (void)m_streamBuffer.release();  // the abandoned stream goes on using it
    }
    m_rowCount = 0;
    int error = 0;
    try {
        m_path = path != nullptr ? path : "";
        error = u_fopen(&m_file, path, "w");
    } catch (const std::bad_alloc&) {
        error = ENOMEM;
    }
    if (error != 0) {
        m_file = nullptr;
        m_failed = true;
        Log(50, 'e', error, "CCsvWriter::Open() failed.");
        return error;
    }
    BufferStream();
    return 0;
}

void CCsvWriter::BufferStream() {
    if (m_streamBuffer == nullptr) {
        m_streamBuffer.reset(new (std::nothrow) char[BUFFER_SIZE]);
    }
    if (m_streamBuffer == nullptr ||
        std::setvbuf(m_file, m_streamBuffer.get(), _IOFBF, BUFFER_SIZE) != 0) {
        Log(55, 'w', 0, "setvbuf failed.");
    }
}

int CCsvWriter::WriteBOM() {
    if (m_failed || m_file == nullptr) {
        return -1;
    }
    constexpr std::string_view MARK = "\xEF\xBB\xBF";
    if (std::fwrite(MARK.data(), 1, MARK.size(), m_file) == MARK.size()) {
        return 0;
    }
    const int error = errno;
    if (error != 0) {
        m_failed = true;
        Log(130, 'e', error, "CCsvWriter::WriteBOM() failed (fwrite error).");
    }
    return error;
}

std::string CCsvWriter::EscapeValue(const char* value) {
    static constexpr std::string_view NEEDS_ESCAPE_CHARS = ",\r\n";
    std::string text = value != nullptr ? value : "";
    if (text.find(QUOTE) == std::string::npos &&
        text.find_first_of(NEEDS_ESCAPE_CHARS) == std::string::npos) {
        return text;
    }
    std::string quoted(1, QUOTE);
    for (const char c : text) {
        quoted.append(c == QUOTE ? 2 : 1, c);
    }
    return quoted += QUOTE;
}

int CCsvWriter::WriteValues(int count, const char** values, const char** /*unusedColumn*/,
                            const char** types) {
    if (m_failed || m_file == nullptr) {
        return -1;
    }
    if (m_rowCount != 0 && std::putc('\n', m_file) == EOF) {
        const int error = errno;
        Log(200, 'e', error, "CCsvWriter::WriteValues() failed (fprintf_s error).");
        if (error != 0) {
            return FailRow(error);
        }
    }
    bool refreshed = false;
    for (int i = 0; i < count; ++i) {
        const char* value = values[i] != nullptr ? values[i] : "";
        const CellKind kind = types != nullptr ? KindOf(types[i]) : CellKind::TEXT;
        if (kind == CellKind::DATE_TIME && !refreshed) {
            m_dateTimes.Refresh();
            refreshed = true;
        }
        const bool last = i == count - 1;
        const bool built = kind == CellKind::TEXT
                               ? AppendText(m_row, value, last)
                               : AppendTyped(m_row, value, kind, m_dateTimes, last);
        // Without memory for a cell, those before it go to the stream all the same.
        const bool due = last || !built || m_row.Size() >= GATHERED;
        const int error = due && !WriteGathered() ? errno : built ? 0 : ENOMEM;
        if (error != 0) {
            Log(277, 'e', error, "CCsvWriter::WriteValues() failed (fwrite error).");
            return FailRow(error);
        }
    }
    ++m_rowCount;
    return 0;
}

// Many small cells go to the stream together, because a call of its own for each would cost more
// than all the rest. The calls lock the stream: another thread of the host may flush all streams at
// once.
bool CCsvWriter::WriteGathered() {
    const size_t size = m_row.Size();
    m_row.Clear();
    return size == 0 || std::fwrite(m_row.Bytes(), 1, size, m_file) == size;
}

int CCsvWriter::FailRow(int error) {
    ++m_rowCount;
    Log(289, 'e', error, "CCsvWriter::WriteValues() failed.");
    m_failed = true;
    return error;
}

int CCsvWriter::Close() {
    if (m_file == nullptr) {
        return 0;
    }
    int flushError = 0;
    if (!m_failed && std::fflush(m_file) != 0) {
        flushError = errno;
        Log(78, 'e', flushError, "CCsvWriter::Close() failed (fflush error).");
    }
    int closeError = 0;
    // The stream is gone whatever the result, also when a cancelled thread leaves from within.
    const bool closed = std::fclose(std::exchange(m_file, nullptr)) == 0;
    const int error = errno;
    m_streamBuffer.reset();
    if (!closed) {
        closeError = error;
        Log(87, 'e', closeError, "CCsvWriter::Close() failed (fclose error).");
    }
    const int result = flushError != 0 ? flushError : closeError;
    if (result != 0) {
        m_failed = true;
        Log(98, 'e', result, "CCsvWriter::Close() failed.");
    }
    if (m_failed) {
        std::remove(m_path.c_str());
    }
    return result;
}
