#include "tests/plugins/zopmekLogger/LoggerFixture.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>

std::vector<std::string> Lines(const std::string& path) {
    const std::string text = ReadFile(path);
    EXPECT_TRUE(text.empty() || text.back() == '\n') << path;
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

LibLoggerSettings Settings(const std::string& name, uint64_t size, uint32_t count) {
    LibLoggerSettings settings{};
    EXPECT_LE(name.size(), sizeof settings.m_logNameText);
    memcpy(settings.m_logNameText, name.data(), name.size());
    settings.m_separator[0] = ',';
    settings.m_sizeValue = size;
    settings.m_countValue = count;
    return settings;
}

LoggerFixture::LoggerFixture() : m_dataHome("XDG_DATA_HOME", Path("data").c_str()) {
    // Not closed again: the sanitizers name the plug-in's code in what they find at the end.
    void* module = dlopen(LOGGER_MODULE, RTLD_NOW | RTLD_LOCAL);
    if (module != nullptr) {
        m_alWrite = reinterpret_cast<decltype(&alWrite)>(dlsym(module, "alWrite"));
    }
    if (m_alWrite == nullptr) {
        throw std::runtime_error("the plug-in cannot be loaded");
    }
}

int LoggerFixture::Log(LibLoggerSettings& settings, const std::string& message) const {
    return m_alWrite("CCsvWriter", 50, &settings, "qvtrelExporter", "", 0, 'i', message.c_str());
}

std::string NumberedMessage(int writer, int number) {
    const auto length = static_cast<size_t>((writer * 131 + number * 37) % 300);
    return std::to_string(writer) + " " + std::to_string(number) + " " +
           std::string(length, static_cast<char>('a' + (writer + number) % 26));
}

std::map<std::string, int> CountMessages(const std::string& path) {
    std::map<std::string, int> seen;
    std::string file = path;
    for (int older = 1; std::filesystem::exists(file); ++older) {
        for (const std::string& line : Lines(file)) {
            const bool whole =
                std::count(line.begin(), line.end(), ',') == 6 && line.starts_with("20");
            ++seen[whole ? line.substr(line.rfind(',') + 1) : line];
        }
        file = path + "." + std::to_string(older);
    }
    return seen;
}

std::map<std::string, int> EachMessageOnce(int writers, int numbers) {
    std::map<std::string, int> messages;
    for (int writer = 0; writer < writers; ++writer) {
        for (int number = 0; number < numbers; ++number) {
            messages[NumberedMessage(writer, number)] = 1;
        }
    }
    return messages;
}
