#include "JobCostExporter/CCsvWriter.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <string_view>

#include "CostCountCommon/CMLibLogger.h"
#include "CostCountCommon/src/platform/Platform.h"
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

char* CloseCell(char* end, bool last) {
    *end++ = QUOTE;
    if (!last) {
        *end++ = SEPARATOR;
    }
    return end;
}

// How many bytes NeedsEscape looks at in one go, and so how many must follow the text.
constexpr size_t SCAN_STEP = 16;

// Whether any of the `size` bytes at `text`, which are followed by SCAN_STEP zero bytes, makes a
// value need quoting. A loop of a fixed length without a way out, so that it becomes a few vector
// operations.
bool NeedsEscape(const char* text, size_t size) {
    for (size_t at = 0; at < size; at += SCAN_STEP) {
        unsigned found = 0;
        for (size_t i = 0; i < SCAN_STEP; ++i) {
            const char c = text[at + i];
            found |= static_cast<unsigned>(c == '"') | static_cast<unsigned>(c == ',') |
                     static_cast<unsigned>(c == '\r') | static_cast<unsigned>(c == '\n');
        }
        if (found != 0) {
            return true;
        }
    }
    return false;
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
    if (platform::WriteUnlocked(MARK.data(), MARK.size(), m_file) == MARK.size()) {
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
    if (m_rowCount != 0 && putc_unlocked('\n', m_file) == EOF) {
        const int error = errno;
        Log(200, 'e', error, "CCsvWriter::WriteValues() failed (fprintf_s error).");
        if (error != 0) {
            return FailRow(error);
        }
    }
    m_zoneFresh = false;
    for (int i = 0; i < count; ++i) {
        const char* type = types != nullptr ? types[i] : nullptr;
        const Cell cell = BuildCell(values[i] != nullptr ? values[i] : "", type, i == count - 1);
        if (cell.text == nullptr ||
            platform::WriteUnlocked(cell.text, cell.size, m_file) < cell.size) {
            const int error = cell.text == nullptr ? ENOMEM : errno;
            if (error != 0) {
                Log(277, 'e', error, "CCsvWriter::WriteValues() failed (fwrite error).");
                return FailRow(error);
            }
        }
    }
    ++m_rowCount;
    return 0;
}

int CCsvWriter::FailRow(int error) {
    ++m_rowCount;
    Log(289, 'e', error, "CCsvWriter::WriteValues() failed.");
    m_failed = true;
    return error;
}

CCsvWriter::Cell CCsvWriter::BuildCell(const char* value, const char* type, bool last) {
    const CellKind kind = KindOf(type);
    if (kind == CellKind::TEXT) {
        return BuildText(value, last);
    }
    char* cell = m_cell.Reserve(TYPED_CELL_SIZE + CELL_FRAME);
    if (cell == nullptr) {
        return {nullptr, 0};
    }
    if (kind == CellKind::DATE_TIME && !m_zoneFresh) {
        m_zone.Refresh();
        m_zoneFresh = true;
    }
    *cell = QUOTE;
    const int64_t seconds = ParseSeconds(value);
    char* end = kind == CellKind::DATE_TIME ? WriteDateTime(cell + 1, seconds, m_zone)
                                            : WriteTimeSpan(cell + 1, seconds);
    end = CloseCell(end, last);
    return {cell, static_cast<size_t>(end - cell)};
}

CCsvWriter::Cell CCsvWriter::BuildText(const char* value, bool last) {
    const size_t size = std::strlen(value);
    char* cell = m_cell.Reserve(size + CELL_FRAME + SCAN_STEP);
    if (cell == nullptr) {
        return {nullptr, 0};
    }
    *cell = QUOTE;
    std::memcpy(cell + 1, value, size);
    std::memset(cell + 1 + size, 0, SCAN_STEP);
    if (NeedsEscape(cell + 1, size)) {
        return BuildEscaped(value, last);
    }
    const char* end = CloseCell(cell + 1 + size, last);
    return {cell, static_cast<size_t>(end - cell)};
}

CCsvWriter::Cell CCsvWriter::BuildEscaped(const char* value, bool last) try {
    const std::string escaped = EscapeValue(value);
    char* cell = m_cell.Reserve(escaped.size() + CELL_FRAME);
    if (cell == nullptr) {
        return {nullptr, 0};
    }
    *cell = QUOTE;
    std::memcpy(cell + 1, escaped.data(), escaped.size());
    const char* end = CloseCell(cell + 1 + escaped.size(), last);
    return {cell, static_cast<size_t>(end - cell)};
} catch (const std::bad_alloc&) {
    return {nullptr, 0};
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
    const bool closed = std::fclose(m_file) == 0;
    const int error = errno;
    m_file = nullptr;
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
