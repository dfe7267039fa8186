// An spdlog sink that puts each line at the end of a LogFile.
#pragma once

#include <spdlog/details/null_mutex.h>
#include <spdlog/sinks/base_sink.h>

#include <memory>
#include <utility>

#include "plugins/zopmekLogger/LogFile.h"

// Made anew for each record and used by one thread, so it needs no mutex. log() throws
// std::system_error when the line could not be written.
class LogFileSink final : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
public:
    LogFileSink(LogFile file, std::unique_ptr<spdlog::formatter> formatter)
        : base_sink(std::move(formatter)), m_file(std::move(file)) {}

private:
    void sink_it_(const spdlog::details::log_msg& message) override {
        spdlog::memory_buf_t line;
        formatter_->format(message, line);
        m_file.Append({line.data(), line.size()});
    }
    void flush_() override {}  // a line is with the system as soon as it is appended

    LogFile m_file;
};
