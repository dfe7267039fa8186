#include "tests/support/CountingParser.h"

#include <stdexcept>

#include "compatible/osFree.h"

namespace {

template <typename Result, typename... Arguments>
Result Call(const char* name, Arguments... arguments) {
    void* module = LoadLibrary(COUNTING_PARSER);
    const auto function = reinterpret_cast<Result (*)(Arguments...)>(GetProcAddress(module, name));
    if (function == nullptr) {
        throw std::runtime_error("the counting parser cannot be loaded: " COUNTING_PARSER);
    }
    FreeLibrary(module);
    return function(arguments...);
}

}  // namespace

void CountingParser::Reset() {
    Call<void>("CountingParserReset");
}

void CountingParser::Fail(const std::string& entry, int nth, unsigned int error) {
    Call<void>("CountingParserFail", entry.c_str(), nth, error);
}

bool CountingParser::HasFailed() {
    return Call<int>("CountingParserHasFailed") != 0;
}

int CountingParser::CallCount(const std::string& entry) {
    return Call<int>("CountingParserCallCount", entry.c_str());
}

int CountingParser::LiveNodes() {
    return Call<int>("CountingParserLiveNodes");
}

int CountingParser::LiveDocuments() {
    return Call<int>("CountingParserLiveDocuments");
}

int CountingParser::StrayReleases() {
    return Call<int>("CountingParserStrayReleases");
}
