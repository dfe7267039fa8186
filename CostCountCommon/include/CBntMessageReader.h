// Cuts the bytes that come out of a pipe into messages.
//
// Messages follow each other with nothing in between but white space: no length, no separator. A
// message is an XML document and ends with its root element. Nobody knows what a peer sends, or
// whether it dies in the middle: whatever is no message, or more than MAX_SIZE bytes, is told once
// and dropped up to the next XML declaration ("<?xml"), with which every message of the library
// begins. For that reason the text "<?xml " stands nowhere else in a message, not in comments
// either. Document types, byte order marks, and comments behind the root element are no part of
// messages.
//
// What the reader gives has as many end tags as start tags; whether it is well-formed is the
// parser's to find out. One thread at a time. No exception leaves it. Outputs are never null.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

enum class BntRead {
    MESSAGE,
    BROKEN,     // bytes that are no message
    END,        // nobody has the pipe open for writing any more
    TIMED_OUT,  // what has come of a message stays for the next call
    FAILED,     // errno tells why
};

class CBntMessageReader {
public:
    // In bytes, and more than enough.
    static constexpr size_t MAX_SIZE = 1024 * 1024;
    // As a time limit in milliseconds: none.
    static constexpr unsigned int FOREVER = 0xFFFFFFFF;

    // Waits for the next message from `pipe`, a descriptor that is open for reading and always
    // given to the same reader, for at most so many milliseconds. `*message` is set to the message,
    // or to the broken bytes. A cancellation point.
    BntRead Read(int pipe, unsigned int milliseconds, std::string* message);

    // The same for bytes that come otherwise.
    bool Append(const char* bytes, size_t size);  // false when there is no memory
    // MESSAGE or BROKEN with `*message` set, END when there is no whole message, or FAILED when
    // there is no memory, which loses nothing.
    BntRead Next(std::string* message);
    // As Next when nothing will follow: what is left of a message is broken.
    BntRead Finish(std::string* message);

private:
    enum class Token { TEXT, MARKUP, TAG, QUOTED, COMMENT, CDATA, INSTRUCTION };
    // What the byte at m_at makes of the message.
    enum class Step { ON, WHOLE, BROKEN };

    Step Take(char byte);
    Step TakeMarkup(char byte);
    Step TakeTag(char byte);
    Step TakeUntil(std::string_view start, std::string_view end);
    std::string_view OpenMarkup() const;
    size_t DeclarationFrom(size_t from) const;
    BntRead Give(size_t end, BntRead what, std::string* message);

    std::string m_bytes;
    size_t m_start = 0;  // of the message
    size_t m_at = 0;     // up to where it has been looked at
    size_t m_token = 0;  // where the markup that is open begins
    Token m_kind = Token::TEXT;
    char m_quote = 0;
    size_t m_depth = 0;         // open elements
    bool m_isDropping = false;  // up to the next declaration
};
