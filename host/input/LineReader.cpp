// Lines of one input, read through zlib, which takes plain files as they are and unpacks gzip.
// External interface: LineReader, InputName.
#include "host/input/LineReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "host/common/Printable.h"
#include "host/input/RowSource.h"

namespace tallyquist {
namespace {

int OpenDescriptor(const std::string& path) {
    if (path == "-") {
        return dup(STDIN_FILENO);
    }
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        close(descriptor);
        errno = EISDIR;
        return -1;
    }
    return descriptor;
}

std::string ReadFailure(gzFile_s* file) {
    const int systemError = errno;
    int code = Z_OK;
    const char* text = gzerror(file, &code);
    switch (code) {
        case Z_OK:
        case Z_STREAM_END:
            return {};
        case Z_ERRNO:
            return std::strerror(systemError);
        case Z_BUF_ERROR:
            return "the compressed data ends too early; the file is cut";
        default: {
            // The library puts a name for the descriptor in front, which means nothing to a user.
            const char* reason = std::strstr(text, ": ");
            return std::string("the compressed data is damaged (") + (reason ? reason + 2 : text) +
                   ")";
        }
    }
}

}  // namespace

std::string InputName(const std::string& path) {
    return path == "-" ? "standard input" : Visible(path);
}

LineReader::LineReader(const std::string& path) : m_name(InputName(path)) {
    const int descriptor = OpenDescriptor(path);
    if (descriptor < 0) {
        Fail(std::strerror(errno));
    }
    m_file.reset(gzdopen(descriptor, "rb"));
    if (!m_file) {
        close(descriptor);
        Fail("out of memory");
    }
    m_buffer.resize(PEEK_SIZE);
    gzbuffer(m_file.get(), PEEK_SIZE);
}

LineReader::LineReader(std::string name, std::string text)
    : m_name(std::move(name)), m_buffer(std::move(text)), m_end(m_buffer.size()), m_atEnd(true) {}

std::string LineReader::Tail(const std::string& path) {
    LineReader reader(path);
    gzFile_s* file = reader.m_file.get();
    struct stat status {};
    // A packed file can only be read through to its end.
    if (gzdirect(file) == 1 && stat(path.c_str(), &status) == 0 &&
        status.st_size > static_cast<off_t>(PEEK_SIZE)) {
        gzseek(file, status.st_size - static_cast<off_t>(PEEK_SIZE), SEEK_SET);
    }
    std::string tail;
    std::string block(PEEK_SIZE, '\0');
    for (int size = 0; (size = gzread(file, block.data(), PEEK_SIZE)) > 0;) {
        tail.append(block, 0, static_cast<size_t>(size));
        tail.erase(0, tail.size() - std::min(tail.size(), PEEK_SIZE));
    }
    // The first line is the end of one that began before; damage is told when the lines are read.
    return tail.erase(0, tail.find('\n') + 1);
}

void LineReader::Fail(const std::string& reason) const {
    throw InputError(m_name + ": " + reason);
}

// Adds what one read gives behind the bytes that wait; moves these to the front first.
void LineReader::Fill() {
    if (m_atEnd) {
        return;
    }
    std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
    m_end -= m_begin;
    m_begin = 0;
    errno = 0;
    const int count = gzread(m_file.get(), m_buffer.data() + m_end,
                             static_cast<unsigned>(m_buffer.size() - m_end));
    if (count <= 0) {
        // A gzip file that was cut gives its last bytes first and the error only here.
        const std::string failure = ReadFailure(m_file.get());
        if (!failure.empty()) {
            Fail(failure);
        }
        m_atEnd = true;
    } else {
        m_end += static_cast<size_t>(count);
    }
    const z_off_t offset = gzoffset(m_file.get());
    if (offset > 0) {
        m_bytesRead = static_cast<uint64_t>(offset);
    }
}

void LineReader::SkipByteOrderMark() {
    m_started = true;
    while (!m_atEnd && m_end - m_begin < 3) {
        Fill();
    }
    const std::string_view start(m_buffer.data() + m_begin, m_end - m_begin);
    if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF")) {
        Fail("is UTF-16 text; convert it to UTF-8 first");
    }
    if (start.starts_with("\xEF\xBB\xBF")) {
        m_begin += 3;
    }
}

std::string_view LineReader::Peek() {
    if (!m_started) {
        SkipByteOrderMark();
    }
    while (!m_atEnd && (m_begin > 0 || m_end < m_buffer.size())) {
        Fill();
    }
    return std::string_view(m_buffer).substr(m_begin, m_end - m_begin);
}

// Moves bytes to the line up to its line feed; false when the buffer ended before one.
bool LineReader::AppendUntilLineFeed(Line& line) {
    const char* begin = m_buffer.data() + m_begin;
    const size_t size = m_end - m_begin;
    const void* feed = std::memchr(begin, '\n', size);
    const size_t length =
        feed != nullptr ? static_cast<size_t>(static_cast<const char*>(feed) - begin) : size;
    if (!line.tooLong) {
        if (line.text.size() + length > MAX_LINE) {
            line.tooLong = true;
            line.text.clear();
        } else {
            line.text.append(begin, length);
        }
    }
    m_begin += length + (feed != nullptr ? 1 : 0);
    return feed != nullptr;
}

// False at the end.
bool LineReader::HasBytes() {
    if (m_begin == m_end) {
        Fill();
    }
    return m_begin != m_end;
}

bool LineReader::Next(Line& line) {
    if (!m_started) {
        SkipByteOrderMark();
    }
    line.text.clear();
    line.end = {};
    line.number = m_lines + 1;
    line.tooLong = m_isRestLeft;
    while (m_isRestLeft && HasBytes()) {
        m_isRestLeft = !AppendUntilLineFeed(line);
    }
    line.tooLong = false;
    if (!HasBytes()) {
        return false;
    }
    ++m_lines;
    while (HasBytes()) {
        if (AppendUntilLineFeed(line)) {
            line.end = "\n";
            if (line.text.ends_with('\r')) {
                line.text.pop_back();
                line.end = "\r\n";
            }
            return true;
        }
        if (line.tooLong) {
            m_isRestLeft = true;
            return true;
        }
    }
    return true;
}

}  // namespace tallyquist
