#include "compatible/ReplaceAll.h"

#include <utility>

size_t ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
    size_t count = 0;
    if (from.empty()) {
        return count;
    }
    std::string result;
    size_t begin = 0;
    for (size_t at = 0; (at = text.find(from, begin)) != std::string::npos;
         begin = at + from.size()) {
        result.append(text, begin, at - begin).append(to);
        ++count;
    }
    if (count > 0) {
        result.append(text, begin);
        text = std::move(result);
    }
    return count;
}
