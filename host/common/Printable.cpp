// Texts of unknown origin made fit for a message. External interface: Visible, Printable.
// A log may hold escape sequences that a terminal would obey.
#include "host/common/Printable.h"

#include <algorithm>

namespace tallyquist {
namespace {

constexpr size_t LONGEST = 60;

bool Continues(unsigned char c) {
    return (c & 0xC0U) == 0x80U;
}

// The length of the UTF-8 character at the front; 0 when there is none that may be shown.
size_t CharacterLength(std::string_view text) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    if (first < 0x80) {
        return first >= 0x20 && first != 0x7F ? 1 : 0;
    }
    const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) {
        return 0;
    }
    for (size_t i = 1; i < length; ++i) {
        if (!Continues(byte(i))) {
            return 0;
        }
    }
    const bool control = first == 0xC2 && byte(1) < 0xA0;
    const bool overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
    const bool invalid = (first == 0xED && byte(1) >= 0xA0) || (first == 0xF4 && byte(1) >= 0x90);
    // U+2028 to U+202E and U+2066 to U+2069 break lines or turn the direction of writing.
    const bool layout = first == 0xE2 && ((byte(1) == 0x80 && byte(2) >= 0xA8 && byte(2) <= 0xAE) ||
                                          (byte(1) == 0x81 && byte(2) >= 0xA6 && byte(2) <= 0xA9));
    return control || overlong || invalid || layout ? 0 : length;
}

// Takes a character off the front and appends it, or its first byte as \xNN.
void ShowNext(std::string_view& text, std::string& shown) {
    const size_t length = CharacterLength(text);
    if (length == 0) {
        const auto byte = static_cast<unsigned char>(text.front());
        shown += "\\x";
        shown += "0123456789ABCDEF"[byte >> 4U];
        shown += "0123456789ABCDEF"[byte & 15U];
    } else {
        shown += text.substr(0, length);
    }
    text.remove_prefix(std::max<size_t>(length, 1));
}

}  // namespace

std::string Visible(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        ShowNext(text, shown);
    }
    return shown;
}

std::string Printable(std::string_view text) {
    std::string shown = "'";
    while (!text.empty()) {
        if (shown.size() > LONGEST) {
            return shown + "...'";
        }
        ShowNext(text, shown);
    }
    return shown + "'";
}

}  // namespace tallyquist
