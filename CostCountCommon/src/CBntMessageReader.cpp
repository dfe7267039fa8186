// Framing of messages. Its external interface is CBntMessageReader.
#include "CostCountCommon/include/CBntMessageReader.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <exception>
#include <limits>
#include <string_view>

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// What a pipe holds unless it was told otherwise, so that one read takes all of it.
constexpr size_t CHUNK = 65536;

// White space follows.
constexpr std::string_view DECLARATION = "<?xml";

constexpr std::string_view COMMENT_START = "<!--";
constexpr std::string_view CDATA_START = "<![CDATA[";
constexpr std::string_view INSTRUCTION_START = "<?";
constexpr std::string_view COMMENT_END = "-->";
constexpr std::string_view CDATA_END = "]]>";
constexpr std::string_view INSTRUCTION_END = "?>";

constexpr std::string_view SPACES = " \t\r\n";

bool IsSpace(char byte) {
    return SPACES.find(byte) != std::string_view::npos;
}

// When to stop waiting.
class Deadline {
public:
    explicit Deadline(unsigned int limit)
        : m_isSet(limit != CBntMessageReader::FOREVER),
          m_end(steady_clock::now() + milliseconds(limit)) {}

    bool HasPassed() const { return m_isSet && steady_clock::now() >= m_end; }

    // As poll takes it; the end may be further away than that can say.
    int Milliseconds() const {
        if (!m_isSet) {
            return -1;
        }
        const auto left = std::chrono::ceil<milliseconds>(m_end - steady_clock::now()).count();
        return static_cast<int>(
            std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
    }

private:
    bool m_isSet;
    steady_clock::time_point m_end;
};

}  // namespace

BntRead CBntMessageReader::Read(int pipe, unsigned int milliseconds, std::string* message) {
    if (pipe < 0) {
        errno = EBADF;  // poll would wait for it
        return BntRead::FAILED;
    }
    const Deadline deadline(milliseconds);
    // What comes may be no message for as long as it comes: the time limit holds all the same.
    for (bool isFirst = true;; isFirst = false) {
        const BntRead found = Next(message);
        if (found != BntRead::END) {
            return found;
        }
        if (!isFirst && deadline.HasPassed()) {
            return BntRead::TIMED_OUT;
        }
        pollfd waiting = {pipe, POLLIN, 0};
        const int ready = poll(&waiting, 1, deadline.Milliseconds());
        if (ready <= 0) {
            if (ready == 0 || errno == EINTR) {
                continue;
            }
            return BntRead::FAILED;
        }
        char bytes[CHUNK];
        const ssize_t count = read(pipe, bytes, sizeof bytes);
        if (count == 0) {
            return Finish(message);
        }
        if (count < 0) {
            if (errno != EINTR && errno != EAGAIN) {
                return BntRead::FAILED;
            }
        } else if (!Append(bytes, static_cast<size_t>(count))) {
            errno = ENOMEM;
            return BntRead::FAILED;
        }
    }
}

bool CBntMessageReader::Append(const char* bytes, size_t size) try {
    // Not each time: when little was taken, much would be moved.
    if (m_start > m_bytes.size() / 2) {
        m_bytes.erase(0, m_start);
        m_at -= m_start;
        m_token -= std::min(m_token, m_start);  // of no message when it is smaller
        m_start = 0;
    }
    m_bytes.append(bytes, size);
    return true;
} catch (const std::exception&) {
    return false;  // out of memory
}

BntRead CBntMessageReader::Next(std::string* message) {
    if (m_isDropping) {
        m_start = m_at = DeclarationFrom(m_start);
        m_isDropping = m_bytes.size() - m_start <= DECLARATION.size();
    }
    if (m_isDropping) {
        return BntRead::END;
    }
    if (m_at == m_start) {  // nothing of the message has been looked at
        m_start = m_at = std::min(m_bytes.find_first_not_of(SPACES, m_start), m_bytes.size());
    }
    for (; m_at < m_bytes.size(); ++m_at) {
        const Step step = m_at - m_start < MAX_SIZE ? Take(m_bytes[m_at]) : Step::BROKEN;
        if (step == Step::WHOLE) {
            return Give(m_at + 1, BntRead::MESSAGE, message);
        }
        if (step == Step::BROKEN) {
            const size_t declaration = m_at - std::min(m_at, DECLARATION.size());
            return Give(DeclarationFrom(std::max(m_start + 1, declaration)), BntRead::BROKEN,
                        message);
        }
    }
    return BntRead::END;
}

BntRead CBntMessageReader::Finish(std::string* message) {
    const BntRead found = Next(message);
    if (found != BntRead::END) {
        return found;
    }
    if (m_isDropping || m_start == m_bytes.size()) {
        *this = {};
        return BntRead::END;
    }
    const BntRead broken = Give(m_bytes.size(), BntRead::BROKEN, message);
    m_isDropping = false;  // whoever comes next begins anew
    return broken;
}

// Where the next declaration begins, or what may become one when more follows.
size_t CBntMessageReader::DeclarationFrom(size_t from) const {
    for (size_t at = from; (at = m_bytes.find('<', at)) != std::string::npos; ++at) {
        const std::string_view bytes = std::string_view(m_bytes).substr(at, DECLARATION.size() + 1);
        if (DECLARATION.starts_with(bytes.substr(0, DECLARATION.size())) &&
            (bytes.size() <= DECLARATION.size() || IsSpace(bytes.back()))) {
            return at;
        }
    }
    return m_bytes.size();
}

// Hands out what ends there; the next message begins there.
BntRead CBntMessageReader::Give(size_t end, BntRead what, std::string* message) try {
    m_at = m_start;  // whatever becomes of it, the next look begins at a message's beginning
    m_kind = Token::TEXT;
    m_depth = 0;
    message->assign(m_bytes, m_start, end - m_start);
    m_start = m_at = end;
    m_isDropping = what == BntRead::BROKEN;
    return what;
} catch (const std::exception&) {
    errno = ENOMEM;
    return BntRead::FAILED;
}

CBntMessageReader::Step CBntMessageReader::Take(char byte) {
    const std::string_view before = std::string_view(m_bytes).substr(m_start, m_at - m_start);
    if (IsSpace(byte) && before.size() > DECLARATION.size() && before.ends_with(DECLARATION)) {
        return Step::BROKEN;  // the next message begins, so this one has no end
    }
    switch (m_kind) {
        case Token::TEXT:
            if (byte == '<') {
                m_token = m_at;
                m_kind = Token::MARKUP;
                return Step::ON;
            }
            return m_depth > 0 || IsSpace(byte) ? Step::ON : Step::BROKEN;
        case Token::MARKUP:
            return TakeMarkup(byte);
        case Token::TAG:
            return TakeTag(byte);
        case Token::QUOTED:
            if (byte == m_quote) {
                m_kind = Token::TAG;
            }
            return byte == '<' ? Step::BROKEN : Step::ON;
        case Token::COMMENT:
            return TakeUntil(COMMENT_START, COMMENT_END);
        case Token::CDATA:
            return TakeUntil(CDATA_START, CDATA_END);
        case Token::INSTRUCTION:
            return TakeUntil(INSTRUCTION_START, INSTRUCTION_END);
    }
    return Step::BROKEN;
}

// The markup that is open, with the byte at hand.
std::string_view CBntMessageReader::OpenMarkup() const {
    return std::string_view(m_bytes).substr(m_token, m_at + 1 - m_token);
}

// What kind of markup it is.
CBntMessageReader::Step CBntMessageReader::TakeMarkup(char byte) {
    const std::string_view markup = OpenMarkup();
    if (markup == INSTRUCTION_START) {
        m_kind = Token::INSTRUCTION;
    } else if (markup == COMMENT_START) {
        m_kind = Token::COMMENT;
    } else if (markup == CDATA_START) {
        m_kind = Token::CDATA;
    } else if (!COMMENT_START.starts_with(markup) && !CDATA_START.starts_with(markup)) {
        m_kind = Token::TAG;
        return markup.starts_with("<!") ? Step::BROKEN : TakeTag(byte);
    }
    return Step::ON;
}

CBntMessageReader::Step CBntMessageReader::TakeTag(char byte) {
    if (byte == '"' || byte == '\'') {
        m_quote = byte;
        m_kind = Token::QUOTED;
    }
    if (byte != '>') {
        return byte == '<' ? Step::BROKEN : Step::ON;
    }
    m_kind = Token::TEXT;
    const std::string_view tag = OpenMarkup();
    if (tag.starts_with("</")) {
        return m_depth == 0 ? Step::BROKEN : --m_depth == 0 ? Step::WHOLE : Step::ON;
    }
    if (tag.ends_with("/>")) {
        return m_depth == 0 ? Step::WHOLE : Step::ON;
    }
    ++m_depth;
    return Step::ON;
}

CBntMessageReader::Step CBntMessageReader::TakeUntil(std::string_view start, std::string_view end) {
    const std::string_view markup = OpenMarkup();
    if (markup.size() >= start.size() + end.size() && markup.ends_with(end)) {
        m_kind = Token::TEXT;
    }
    return Step::ON;
}
