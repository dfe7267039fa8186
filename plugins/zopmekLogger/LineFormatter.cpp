#include "plugins/zopmekLogger/LineFormatter.h"

#include <spdlog/pattern_formatter.h>
#include <unistd.h>

#include <climits>
#include <ctime>
#include <string>
#include <system_error>

namespace {

constexpr char TIME_PATTERN[] = "%Y-%m-%d %H:%M:%S.%e%z";

std::string TimeText(const spdlog::details::log_msg& message) {
    tzset();  // localtime_r need not notice that the zone was changed since it was first used
    spdlog::memory_buf_t text;
    spdlog::pattern_formatter(TIME_PATTERN, spdlog::pattern_time_type::local, "")
        .format(message, text);
    return {text.data(), text.size()};
}

std::string LevelWord(int level) {
    switch (level) {
        case 'e':
            return "error";
        case 'w':
            return "warning";
        case 'i':
            return "info";
        case 'd':
            return "debug";
        default:
            break;
    }
    const bool printable = level > ' ' && level <= '~';
    return printable ? std::string("level '") + static_cast<char>(level) + "'"
                     : "level " + std::to_string(level);
}

// The C library has a text for every number; for one that is no error it is, as a rule, the same
// text with another number in it, in whatever language. Empty for such a number.
std::string ErrorText(int code) {
    const std::string number = std::to_string(INT_MAX);
    std::string unknown = std::generic_category().message(INT_MAX);
    const size_t place = unknown.find(number);
    if (place != std::string::npos) {
        unknown.replace(place, number.size(), std::to_string(code));
    }
    const std::string text = std::generic_category().message(code);
    return text == unknown ? std::string() : text;
}

std::string CodeText(unsigned int code) {
    std::string text = std::to_string(code);
    const std::string error =
        code == 0 || code >= INT_MAX ? std::string() : ErrorText(static_cast<int>(code));
    if (!error.empty()) {
        text += " (" + error + ")";
    }
    return text;
}

// Appends a field, in quotes when a reader could not tell its end otherwise. The text is looked at
// together with the separator after it: "a;" before ";;" would be read as "a" and ";". A line break
// becomes the two characters \n or \r even inside the quotes, because many programs that read logs
// take a line for a record and know nothing of quotes.
void AppendField(const std::string& text, const std::string& separator,
                 spdlog::memory_buf_t& line) {
    const bool quoted = (text + separator).find(separator) != text.size() ||
                        text.find_first_of("\"\r\n") != std::string::npos;
    if (!quoted) {
        line.append(text.data(), text.data() + text.size());
        return;
    }
    line.push_back('"');
    for (const char c : text) {
        if (c == '\n' || c == '\r') {
            line.push_back('\\');
            line.push_back(c == '\n' ? 'n' : 'r');
            continue;
        }
        if (c == '"') {
            line.push_back('"');
        }
        line.push_back(c);
    }
    line.push_back('"');
}

bool CanSeparate(std::string_view text) {
    return !text.empty() && text.find_first_of("\"\r\n") == std::string_view::npos;
}

}  // namespace

LineFormatter::LineFormatter(const LineFields& fields) : m_fields(fields) {
    if (!CanSeparate(m_fields.separator)) {
        m_fields.separator = ",";
    }
}

void LineFormatter::format(const spdlog::details::log_msg& message, spdlog::memory_buf_t& line) {
    const std::string separator(m_fields.separator);
    const std::string fields[] = {
        TimeText(message),
        std::to_string(getpid()),
        LevelWord(m_fields.level),
        std::string(m_fields.source) + ":" + std::to_string(m_fields.line),
        CodeText(m_fields.code),
        std::string(message.logger_name.data(), message.logger_name.size()),
        std::string(message.payload.data(), message.payload.size()),
    };
    bool first = true;
    for (const std::string& field : fields) {
        if (!first) {
            line.append(separator.data(), separator.data() + separator.size());
        }
        first = false;
        AppendField(field, separator, line);
    }
    line.push_back('\n');
}

std::unique_ptr<spdlog::formatter> LineFormatter::clone() const {
    return std::make_unique<LineFormatter>(m_fields);
}
