#include "plugins/zopmekxmlpxd/Loading.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include "CostCountCommon/src/FileDescriptor.h"
#include "compatible/Utf16.h"
#include "compatible/Utf8.h"
#include "plugins/zopmekxmlpxd/Entry.h"
#include "plugins/zopmekxmlpxd/TextChecks.h"
#include "plugins/zopmekxmlpxd/WellFormed.h"

namespace {

constexpr std::string_view UTF8_MARK = "\xEF\xBB\xBF";
constexpr std::string_view UTF16_LITTLE_MARK = "\xFF\xFE";
constexpr std::string_view UTF16_BIG_MARK = "\xFE\xFF";

std::string FromUtf16(std::string_view bytes, bool isBigEndian) {
    Require(bytes.size() % 2 == 0, XMLPXD_NOT_WELL_FORMED);
    std::u16string units(bytes.size() / 2, u'\0');
    for (size_t at = 0; at < units.size(); ++at) {
        const auto first = static_cast<unsigned char>(bytes[2 * at]);
        const auto second = static_cast<unsigned char>(bytes[2 * at + 1]);
        units[at] = static_cast<char16_t>(isBigEndian ? first << 8 | second : second << 8 | first);
    }
    std::string text;
    Require(Utf8FromUtf16(units, &text), XMLPXD_NOT_WELL_FORMED);
    return text;
}

// The bytes as UTF-8 without a byte order mark; `*encoding` is what they were in.
std::string Decoded(std::string bytes, std::string_view* encoding) {
    const std::string_view view = bytes;
    *encoding = "UTF-16";
    if (view.starts_with(UTF16_LITTLE_MARK) || view.starts_with(UTF16_BIG_MARK)) {
        return FromUtf16(view.substr(2), view.starts_with(UTF16_BIG_MARK));
    }
    *encoding = "UTF-8";
    Require(IsUtf8(view), XMLPXD_NOT_WELL_FORMED);
    if (view.starts_with(UTF8_MARK)) {
        bytes.erase(0, UTF8_MARK.size());
    }
    return bytes;
}

// A carriage return, with a line feed after it or without, becomes a line feed, as the XML standard
// asks for before anything else. One that is meant is written as a reference.
void NormaliseLineBreaks(std::string* text) {
    size_t kept = text->find('\r');
    if (kept == std::string::npos) {
        return;
    }
    for (size_t at = kept; at < text->size(); ++at) {
        const bool isReturn = (*text)[at] == '\r';
        if (isReturn && at + 1 < text->size() && (*text)[at + 1] == '\n') {
            continue;
        }
        (*text)[kept++] = isReturn ? '\n' : (*text)[at];
    }
    text->resize(kept);
}

}  // namespace

std::unique_ptr<Document> ParseDocument(std::string bytes) {
    constexpr unsigned int OPTIONS = pugi::parse_full | pugi::parse_ws_pcdata;
    Require(bytes.size() <= MAX_DOCUMENT_SIZE, XMLPXD_NOT_WELL_FORMED);
    auto document = std::make_unique<Document>();
    std::string& text = document->m_text;
    std::string_view encoding;
    text = Decoded(std::move(bytes), &encoding);
    Require(FindForbidden(text) == std::string::npos, XMLPXD_NOT_WELL_FORMED);
    NormaliseLineBreaks(&text);
    Require(IsWellFormed(text, encoding), XMLPXD_NOT_WELL_FORMED);
    const pugi::xml_parse_result result = document->m_tree.load_buffer_inplace(
        text.data(), text.size(), OPTIONS, pugi::encoding_utf8);
    Require(result.status != pugi::status_out_of_memory, XMLPXD_OUT_OF_MEMORY);
    Require(result.status == pugi::status_ok, XMLPXD_NOT_WELL_FORMED);
    return document;
}

std::string ReadDocumentFile(const char* path) {
    Require(path != nullptr, XMLPXD_INVALID_ARGUMENT);
    // Not blocking, because a pipe without a writer would never open.
    const FileDescriptor file = FileDescriptor::Open(path, O_RDONLY | O_NONBLOCK);
    struct stat status {};
    Require(file.IsOpen() && fstat(file.Number(), &status) == 0 && S_ISREG(status.st_mode),
            XMLPXD_FILE_NOT_READ);
    // One byte more than the file has shows its end; one more than the limit, that it is too large:
    // the buffer grows no further then, and the next read gets nothing.
    const auto fileSize = static_cast<size_t>(status.st_size);
    std::string bytes(std::min(fileSize, MAX_DOCUMENT_SIZE) + 1, '\0');
    size_t length = 0;
    while (true) {
        const ssize_t got = read(file.Number(), bytes.data() + length, bytes.size() - length);
        Require(got >= 0 || errno == EINTR, XMLPXD_FILE_NOT_READ);
        if (got == 0) {
            break;
        }
        length += got > 0 ? static_cast<size_t>(got) : 0;
        if (length == bytes.size()) {
            bytes.resize(std::min(2 * length, MAX_DOCUMENT_SIZE) + 1);
        }
    }
    bytes.resize(length);
    return bytes;
}
