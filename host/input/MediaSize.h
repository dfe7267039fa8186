// Sizes of media by name.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallyquist {

struct MediaSize {
    int64_t width;   // in micrometres
    int64_t height;  // in micrometres

    bool operator==(const MediaSize&) const = default;
};

// Understands, whatever the case of the letters:
//   - self-describing names, class_name_WIDTHxHEIGHT with the unit in or mm (PWG 5101.1);
//   - Custom.WIDTHxHEIGHT with the unit pt, in, ft, cm, mm or m; points when there is none;
//   - wWIDTHhHEIGHT in points, as label printers name their sizes;
//   - short names such as A4, Letter, EnvC5, na-letter or ISOB5. The numbers are those of ISO 216
//     (A, B), ISO 269 (C, DL), JIS P 0138 (JIS B), ANSI Y14.1 (ANSI A to E) and, for all others,
//     of the name's entry in PWG 5101.1. B0 to B10 alone are JIS sizes, as printer descriptions
//     use these words; the ISO ones are ISOB0 to ISOB10.
// What follows a dot in a short name is a variant of the same size (A4.Borderless). Of a list
// separated by commas the first name that is understood counts. Empty for every other name.
std::optional<MediaSize> ResolveMedia(std::string_view name);

// Millimetres with at most three decimals and no zeros at the end, such as 215.9.
std::string FormatMillimetres(int64_t micrometres);

}  // namespace tallyquist
