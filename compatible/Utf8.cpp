#include "compatible/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

// How many bytes follow `lead`, and the least and greatest value that the first of them may have,
// which rules out overlong forms, surrogates and what lies above U+10FFFF (RFC 3629, section 4).
struct Continuation {
    size_t count;
    unsigned char least;
    unsigned char greatest;
};

constexpr Continuation INVALID{SIZE_MAX, 0, 0};

Continuation After(unsigned char lead) {
    if (lead < 0x80) {
        return {0, 0, 0};
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return INVALID;
    }
    const auto least = static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80);
    const auto greatest = static_cast<unsigned char>(lead == 0xED   ? 0x9F
                                                     : lead == 0xF4 ? 0x8F
                                                                    : 0xBF);
    return {lead < 0xE0 ? 1U : lead < 0xF0 ? 2U : 3U, least, greatest};
}

// How many bytes at the beginning are ASCII for certain. Most texts are nothing else.
size_t AsciiLength(std::string_view text) {
    constexpr uint64_t BEYOND = 0x8080808080808080;
    size_t at = 0;
    for (uint64_t bytes = 0; text.size() - at >= sizeof bytes; at += sizeof bytes) {
        std::memcpy(&bytes, text.data() + at, sizeof bytes);
        if ((bytes & BEYOND) != 0) {
            break;
        }
    }
    return at;
}

}  // namespace

bool IsUtf8(std::string_view text) {
    for (size_t at = AsciiLength(text); at < text.size(); ++at) {
        Continuation rest = After(static_cast<unsigned char>(text[at]));
        if (rest.count > text.size() - at - 1) {
            return false;
        }
        for (; rest.count > 0; --rest.count) {
            const auto byte = static_cast<unsigned char>(text[++at]);
            if (byte < rest.least || byte > rest.greatest) {
                return false;
            }
            rest.least = 0x80;
            rest.greatest = 0xBF;
        }
    }
    return true;
}
