// Lines of one input: a file, plain or gzip, standard input, or a text in memory.
#pragma once

#include <zlib.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tallyquist {

struct Line {
    std::string text;      // without its line end
    std::string_view end;  // "\n" or "\r\n"; empty when the input ends without one
    uint64_t number = 0;   // the first line is 1
    bool tooLong = false;  // longer than LineReader::MAX_LINE; `text` is empty then
};

// How an input is called in messages: its path, made visible, or "standard input" for "-".
std::string InputName(const std::string& path);

// All functions throw InputError when the input cannot be read.
class LineReader {
public:
    static constexpr size_t MAX_LINE = size_t{1} << 20;
    static constexpr size_t PEEK_SIZE = size_t{64} * 1024;

    explicit LineReader(const std::string& path);
    LineReader(std::string name, std::string text);

    // The complete lines in the last PEEK_SIZE bytes of a file that may be opened anew.
    static std::string Tail(const std::string& path);

    const std::string& Name() const { return m_name; }

    // The first PEEK_SIZE bytes, less when the input is shorter. Only before the first Next.
    std::string_view Peek();
    // Whether Peek showed the whole input.
    bool PeekedAll() const { return m_atEnd; }

    // A line that is too long is told as soon as it is, since it may never end; the next call skips
    // the rest of it.
    bool Next(Line& line);

    // How much of the file was read, as it lies on the disk.
    uint64_t BytesRead() const { return m_bytesRead; }

private:
    struct Closer {
        void operator()(gzFile_s* file) const { gzclose_r(file); }
    };

    void Fill();
    bool HasBytes();
    void SkipByteOrderMark();
    bool AppendUntilLineFeed(Line& line);
    [[noreturn]] void Fail(const std::string& reason) const;

    std::string m_name;
    std::unique_ptr<gzFile_s, Closer> m_file;
    std::string m_buffer;
    size_t m_begin = 0;
    size_t m_end = 0;
    bool m_started = false;
    bool m_atEnd = false;
    bool m_isRestLeft = false;  // of a line that is too long
    uint64_t m_lines = 0;
    uint64_t m_bytesRead = 0;
};

}  // namespace tallyquist
