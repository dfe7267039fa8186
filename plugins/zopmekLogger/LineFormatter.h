// Makes the line of a record: separated fields, quoted where they need it, and a line feed.
#pragma once

#include <spdlog/formatter.h>

#include <memory>
#include <string_view>

// What a line holds beyond the time, the module and the message, which spdlog's message carries.
struct LineFields {
    std::string_view separator;  // one that is empty or cannot separate counts as ","
    std::string_view source;
    unsigned int line;
    int level;
    unsigned int code;
};

class LineFormatter final : public spdlog::formatter {
public:
    // The texts must outlive the formatter.
    explicit LineFormatter(const LineFields& fields);

    void format(const spdlog::details::log_msg& message, spdlog::memory_buf_t& line) override;
    std::unique_ptr<spdlog::formatter> clone() const override;

private:
    LineFields m_fields;
};
