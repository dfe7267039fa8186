// Sizes of media by name. External interface: ResolveMedia, FormatMillimetres.
#include "host/input/MediaSize.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "compatible/Ascii.h"
#include "host/common/Thousandths.h"
#include "host/common/WholeNumber.h"

namespace tallyquist {
namespace {

constexpr double MILLIMETRE = 1000;
constexpr double INCH = 25400;
constexpr double POINT = INCH / 72;

struct Unit {
    std::string_view name;
    double micrometres;
};

// A unit that ends like another one stands before it.
constexpr std::array<Unit, 6> UNITS = {{{"pt", POINT},
                                        {"in", INCH},
                                        {"ft", 12 * INCH},
                                        {"cm", 10 * MILLIMETRE},
                                        {"mm", MILLIMETRE},
                                        {"m", 1000 * MILLIMETRE}}};

struct Millimetres {
    int width;
    int height;
};

constexpr std::array<Millimetres, 11> ISO_A = {{{841, 1189},
                                                {594, 841},
                                                {420, 594},
                                                {297, 420},
                                                {210, 297},
                                                {148, 210},
                                                {105, 148},
                                                {74, 105},
                                                {52, 74},
                                                {37, 52},
                                                {26, 37}}};
constexpr std::array<Millimetres, 11> ISO_B = {{{1000, 1414},
                                                {707, 1000},
                                                {500, 707},
                                                {353, 500},
                                                {250, 353},
                                                {176, 250},
                                                {125, 176},
                                                {88, 125},
                                                {62, 88},
                                                {44, 62},
                                                {31, 44}}};
constexpr std::array<Millimetres, 11> ISO_C = {{{917, 1297},
                                                {648, 917},
                                                {458, 648},
                                                {324, 458},
                                                {229, 324},
                                                {162, 229},
                                                {114, 162},
                                                {81, 114},
                                                {57, 81},
                                                {40, 57},
                                                {28, 40}}};
constexpr std::array<Millimetres, 11> JIS_B = {{{1030, 1456},
                                                {728, 1030},
                                                {515, 728},
                                                {364, 515},
                                                {257, 364},
                                                {182, 257},
                                                {128, 182},
                                                {91, 128},
                                                {64, 91},
                                                {45, 64},
                                                {32, 45}}};

struct Series {
    std::string_view before;
    std::string_view after;
    const std::array<Millimetres, 11>& sizes;
};

const std::array<Series, 11> SERIES = {{{"a", "", ISO_A},
                                        {"isoa", "", ISO_A},
                                        {"a", "small", ISO_A},
                                        {"b", "", JIS_B},
                                        {"jisb", "", JIS_B},
                                        {"b", "jis", JIS_B},
                                        {"isob", "", ISO_B},
                                        {"b", "iso", ISO_B},
                                        {"envisob", "", ISO_B},
                                        {"c", "", ISO_C},
                                        {"envc", "", ISO_C}}};

struct NamedSize {
    std::string_view name;  // lower case, without separators
    double width;
    double height;
    double unit;
};

constexpr std::array<NamedSize, 68> NAMED_SIZES = {{
    {"letter", 8.5, 11, INCH},
    {"lettersmall", 8.5, 11, INCH},
    {"ansia", 8.5, 11, INCH},
    {"legal", 8.5, 14, INCH},
    {"tabloid", 11, 17, INCH},
    {"ledger", 11, 17, INCH},
    {"ansib", 11, 17, INCH},
    {"ansic", 17, 22, INCH},
    {"ansid", 22, 34, INCH},
    {"ansie", 34, 44, INCH},
    {"archa", 9, 12, INCH},
    {"archb", 12, 18, INCH},
    {"archc", 18, 24, INCH},
    {"archd", 24, 36, INCH},
    {"arche", 36, 48, INCH},
    {"executive", 7.25, 10.5, INCH},
    {"statement", 5.5, 8.5, INCH},
    {"invoice", 5.5, 8.5, INCH},
    {"foolscap", 8.5, 13, INCH},
    {"quarto", 8.5, 10.83, INCH},
    {"oficio", 8.5, 13.4, INCH},
    {"governmentletter", 8, 10, INCH},
    {"governmentlegal", 8, 13, INCH},
    {"letterextra", 9.5, 12, INCH},
    {"legalextra", 9.5, 15, INCH},
    {"letterplus", 8.5, 12.69, INCH},
    {"supera", 8.94, 14, INCH},
    {"superb", 13, 19, INCH},
    {"index3x5", 3, 5, INCH},
    {"index4x6", 4, 6, INCH},
    {"index5x8", 5, 8, INCH},
    {"3x5", 3, 5, INCH},
    {"4x6", 4, 6, INCH},
    {"5x7", 5, 7, INCH},
    {"8x10", 8, 10, INCH},
    {"10x14", 10, 14, INCH},
    {"env9", 3.875, 8.875, INCH},
    {"env10", 4.125, 9.5, INCH},
    {"com10", 4.125, 9.5, INCH},
    {"number9envelope", 3.875, 8.875, INCH},
    {"number10envelope", 4.125, 9.5, INCH},
    {"env11", 4.5, 10.375, INCH},
    {"env12", 4.75, 11, INCH},
    {"env14", 5, 11.5, INCH},
    {"envmonarch", 3.875, 7.5, INCH},
    {"monarch", 3.875, 7.5, INCH},
    {"monarchenvelope", 3.875, 7.5, INCH},
    {"envpersonal", 3.625, 6.5, INCH},
    {"envdl", 110, 220, MILLIMETRE},
    {"dl", 110, 220, MILLIMETRE},
    {"isodl", 110, 220, MILLIMETRE},
    {"envinvite", 220, 220, MILLIMETRE},
    {"envitalian", 110, 230, MILLIMETRE},
    {"envchou3", 120, 235, MILLIMETRE},
    {"envchou4", 90, 205, MILLIMETRE},
    {"envkaku2", 240, 332, MILLIMETRE},
    {"envyou4", 105, 235, MILLIMETRE},
    {"folio", 210, 330, MILLIMETRE},
    {"a4extra", 235.5, 322.3, MILLIMETRE},
    {"postcard", 100, 148, MILLIMETRE},
    {"hagaki", 100, 148, MILLIMETRE},
    {"doublepostcard", 148, 200, MILLIMETRE},
    {"ra3", 305, 430, MILLIMETRE},
    {"ra4", 215, 305, MILLIMETRE},
    {"sra3", 320, 450, MILLIMETRE},
    {"sra4", 225, 320, MILLIMETRE},
    {"roc8k", 10.75, 15.5, INCH},
    {"roc16k", 7.75, 10.75, INCH},
}};

// A decimal number without sign or exponent. Not every C++ library reads such numbers without
// asking the locale for the decimal point, but all read integers.
std::optional<double> ParseDecimal(std::string_view text) {
    if (text.find_first_not_of("0123456789.") != std::string_view::npos) {
        return std::nullopt;
    }
    std::string digits(text);
    const size_t point = std::min(text.find('.'), text.size());
    digits.erase(point, 1);
    const std::optional<uint64_t> value = WholeNumber<uint64_t>(digits);
    if (!value) {
        return std::nullopt;
    }
    return static_cast<double>(*value) / std::pow(10.0, static_cast<double>(digits.size() - point));
}

std::optional<MediaSize> Measure(std::string_view width, std::string_view height, double unit) {
    constexpr double LARGEST = 1e9;  // a kilometre of paper
    const std::optional<double> w = ParseDecimal(width);
    const std::optional<double> h = ParseDecimal(height);
    if (!w || !h) {
        return std::nullopt;
    }
    const double sides[] = {*w * unit, *h * unit};
    if (sides[0] < 1 || sides[1] < 1 || sides[0] > LARGEST || sides[1] > LARGEST) {
        return std::nullopt;
    }
    return MediaSize{.width = std::llround(sides[0]), .height = std::llround(sides[1])};
}

// WIDTHxHEIGHT without a unit.
std::optional<MediaSize> MeasurePair(std::string_view text, double unit) {
    const size_t x = text.find('x');
    if (x == std::string_view::npos) {
        return std::nullopt;
    }
    return Measure(text.substr(0, x), text.substr(x + 1), unit);
}

std::optional<MediaSize> FromCustom(std::string_view text) {
    for (const Unit& unit : UNITS) {
        if (text.ends_with(unit.name)) {
            text.remove_suffix(unit.name.size());
            return MeasurePair(text, unit.micrometres);
        }
    }
    return MeasurePair(text, POINT);
}

std::optional<MediaSize> FromSelfDescribing(std::string_view name) {
    const size_t last = name.rfind('_');
    if (last == std::string_view::npos || last == 0 || name.find('_') == last ||
        name.size() < last + 3) {
        return std::nullopt;
    }
    const std::string_view size = name.substr(last + 1);
    const std::string_view numbers = size.substr(0, size.size() - 2);
    if (size.ends_with("mm")) {
        return MeasurePair(numbers, MILLIMETRE);
    }
    return size.ends_with("in") ? MeasurePair(numbers, INCH) : std::nullopt;
}

std::optional<MediaSize> FromPoints(std::string_view name) {
    const size_t h = name.find('h');
    if (!name.starts_with('w') || h == std::string_view::npos) {
        return std::nullopt;
    }
    return Measure(name.substr(1, h - 1), name.substr(h + 1), POINT);
}

std::optional<MediaSize> FromSeries(std::string_view name) {
    for (const Series& series : SERIES) {
        if (!name.starts_with(series.before) || !name.ends_with(series.after) ||
            name.size() <= series.before.size() + series.after.size()) {
            continue;
        }
        const std::string_view number = name.substr(
            series.before.size(), name.size() - series.before.size() - series.after.size());
        if (number == "10" || (number.size() == 1 && number[0] >= '0' && number[0] <= '9')) {
            const Millimetres& size =
                series.sizes.at(number == "10" ? 10 : static_cast<size_t>(number[0] - '0'));
            return MediaSize{.width = int64_t{1000} * size.width,
                             .height = int64_t{1000} * size.height};
        }
    }
    return std::nullopt;
}

std::optional<MediaSize> FromShortName(std::string_view name) {
    std::string plain;
    for (const char c : name.substr(0, name.find('.'))) {
        if (c != '-' && c != '_') {
            plain += c;
        }
    }
    if (plain.starts_with("na")) {
        plain.erase(0, 2);
    }
    if (std::optional<MediaSize> size = FromSeries(plain)) {
        return size;
    }
    const auto* known = std::ranges::find(NAMED_SIZES, plain, &NamedSize::name);
    if (known == NAMED_SIZES.end()) {
        return std::nullopt;
    }
    return MediaSize{.width = std::llround(known->width * known->unit),
                     .height = std::llround(known->height * known->unit)};
}

std::optional<MediaSize> ResolveOne(std::string_view name) {
    constexpr std::string_view CUSTOM = "custom.";
    if (name.starts_with(CUSTOM)) {
        return FromCustom(name.substr(CUSTOM.size()));
    }
    if (std::optional<MediaSize> size = FromSelfDescribing(name)) {
        return size;
    }
    if (std::optional<MediaSize> size = FromPoints(name.substr(0, name.find('.')))) {
        return size;
    }
    return FromShortName(name);
}

}  // namespace

std::optional<MediaSize> ResolveMedia(std::string_view name) {
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(), AsciiLower);
    std::string_view rest = lower;
    while (!rest.empty()) {
        const size_t comma = std::min(rest.find(','), rest.size());
        if (std::optional<MediaSize> size = ResolveOne(rest.substr(0, comma))) {
            return size;
        }
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
    return std::nullopt;
}

std::string FormatMillimetres(int64_t micrometres) {
    return FormatThousandths(micrometres);
}

}  // namespace tallyquist
