// Holds every row of the paper sizes to what its place, its name and its display identifier say,
// while it is compiled. There is no code in it.
#include <algorithm>
#include <optional>
#include <string_view>

#include "cm_common/PaperNameIdList.h"

namespace {

constexpr size_t COUNT = 135;
constexpr size_t USER_DEFINED_AT = 104;  // cut sheets stand before it, rolls after it
constexpr size_t GENERAL_PURPOSE_AT = 134;

constexpr uint64_t MICROMETRES_PER_MILLIMETRE = 1000;
constexpr uint64_t MICROMETRES_PER_INCH = 25400;  // exactly, by the definition of 1959

// In micrometres.
struct Size {
    uint64_t width;
    uint64_t height;

    bool operator==(const Size&) const = default;
};

struct NamedSize {
    std::string_view name;
    Size size;
};

// Rolls that are named after sheets are as wide as the short side of the first one.
constexpr auto ROLLS_BY_SHEET = std::to_array<NamedSize>({
    {"custom_norvane_iso_a0_a1", {841000, 0}},
    {"custom_norvane_iso_a1_a2", {594000, 0}},
    {"custom_norvane_iso_a2_a3", {420000, 0}},
    {"custom_norvane_iso_a3_a4", {297000, 0}},
    {"custom_norvane_jis_b0_b1", {1030000, 0}},
    {"custom_norvane_jis_b1_b2", {728000, 0}},
    {"custom_norvane_jis_b2_b3", {515000, 0}},
    {"custom_norvane_jis_b4", {257000, 0}},
    {"custom_norvane_iso_a3_plus", {329000, 0}},  // A3+ sheets measure 329 x 483 mm
});

// What all components have stored for these sizes is authoritative, though it is rounded more
// coarsely than elsewhere, or no name spells it.
constexpr auto STORED_OTHERWISE = std::to_array<PaperNameIdRow>({
    {"iso_a5_148x210mm", "", PAPER_KIND_CUT_SHEET, 148000, 210000, 5830, 8270},
    {"custom_norvane_89x127mm", "", PAPER_KIND_CUT_SHEET, 89000, 127000, 3500, 5000},
    {"papersize_043", "", PAPER_KIND_CUT_SHEET, 228600, 337800, 9000, 13300},
});

// Takes a decimal number off the front of `text`; in thousandths.
constexpr std::optional<uint64_t> TakeNumber(std::string_view& text) {
    uint64_t number = 0;
    int decimals = -1;  // no point yet
    size_t length = 0;
    for (; length < text.size(); ++length) {
        const char c = text[length];
        if (c == '.' && decimals < 0) {
            decimals = 0;
        } else if (c >= '0' && c <= '9' && decimals < 3) {
            number = number * 10 + static_cast<uint64_t>(c - '0');
            decimals += decimals < 0 ? 0 : 1;
        } else {
            break;
        }
    }
    if (length == 0) {
        return std::nullopt;
    }
    text.remove_prefix(length);
    for (decimals = std::max(decimals, 0); decimals < 3; ++decimals) {
        number *= 10;
    }
    return number;
}

// Reads "210x297mm", "8.5x11in" and "8in".
constexpr std::optional<Size> ReadSize(std::string_view text) {
    const std::optional<uint64_t> width = TakeNumber(text);
    std::optional<uint64_t> height = 0;
    if (text.starts_with('x')) {
        text.remove_prefix(1);
        height = TakeNumber(text);
    }
    const uint64_t unit = text == "mm"   ? MICROMETRES_PER_MILLIMETRE
                          : text == "in" ? MICROMETRES_PER_INCH
                                         : 0;
    if (!width || !height || unit == 0) {
        return std::nullopt;
    }
    return Size{*width * unit / 1000, *height * unit / 1000};
}

// Of the parts between underscores the last one that is a size counts. Nothing known gives zeros.
constexpr Size SizeByName(std::string_view name) {
    for (const NamedSize& roll : ROLLS_BY_SHEET) {
        if (roll.name == name) {
            return roll.size;
        }
    }
    Size size{0, 0};
    for (size_t end = 0; end != std::string_view::npos;) {
        end = name.find('_');
        size = ReadSize(name.substr(0, end)).value_or(size);
        name.remove_prefix(end == std::string_view::npos ? 0 : end + 1);
    }
    return size;
}

constexpr uint64_t MilliInches(uint64_t micrometres) {
    return (micrometres * 1000 + MICROMETRES_PER_INCH / 2) / MICROMETRES_PER_INCH;
}

constexpr bool HasSizesOf(const PaperNameIdRow& row, const PaperNameIdRow& other) {
    return row.m_WidthMicrometre == other.m_WidthMicrometre &&
           row.m_HeightMicrometre == other.m_HeightMicrometre &&
           row.m_WidthMilliInch == other.m_WidthMilliInch &&
           row.m_HeightMilliInch == other.m_HeightMilliInch;
}

constexpr bool HasItsSizes(size_t at) {
    const PaperNameIdRow& row = PAPER_NAME_ID_ROWS[at];
    const std::string_view name = row.m_MediaName;
    for (const PaperNameIdRow& stored : STORED_OTHERWISE) {
        if (name == stored.m_MediaName) {
            return HasSizesOf(row, stored);
        }
    }
    const Size size = SizeByName(name);
    return size == Size{row.m_WidthMicrometre, row.m_HeightMicrometre} &&
           row.m_WidthMilliInch == MilliInches(size.width) &&
           row.m_HeightMilliInch == MilliInches(size.height);
}

constexpr bool HasItsKind(size_t at) {
    return PAPER_NAME_ID_ROWS[at].m_Kind == (at < USER_DEFINED_AT    ? PAPER_KIND_CUT_SHEET
                                             : at == USER_DEFINED_AT ? PAPER_KIND_USER_DEFINED
                                             : at < GENERAL_PURPOSE_AT
                                                 ? PAPER_KIND_ROLL
                                                 : PAPER_KIND_GENERAL_PURPOSE);
}

constexpr char IdCharacter(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c == '.' || c == '-' ? '_' : c;
}

constexpr bool HasItsDisplayId(size_t at) {
    const std::string_view name = PAPER_NAME_ID_ROWS[at].m_MediaName;
    const std::string_view id = PAPER_NAME_ID_ROWS[at].m_DisplayId;
    if (at == GENERAL_PURPOSE_AT) {
        return id == "IDS_CM026";
    }
    return id.starts_with("ID_") &&
           std::equal(name.begin(), name.end(), id.begin() + 3, id.end(),
                      [](char inName, char inId) { return IdCharacter(inName) == inId; });
}

constexpr bool HasNameOfItsOwn(size_t at) {
    const std::string_view name = PAPER_NAME_ID_ROWS[at].m_MediaName;
    return std::none_of(PAPER_NAME_ID_ROWS.begin(),
                        PAPER_NAME_ID_ROWS.begin() + static_cast<std::ptrdiff_t>(at),
                        [&](const PaperNameIdRow& earlier) { return name == earlier.m_MediaName; });
}

constexpr bool EveryRow(bool (*holds)(size_t at)) {
    size_t at = 0;
    while (at < PAPER_NAME_ID_ROWS.size() && holds(at)) {
        ++at;
    }
    return at == PAPER_NAME_ID_ROWS.size();
}

static_assert(PAPER_NAME_ID_ROWS.size() == COUNT);
static_assert(EveryRow(HasItsKind));
static_assert(EveryRow(HasNameOfItsOwn));
static_assert(EveryRow(HasItsDisplayId));
static_assert(EveryRow(HasItsSizes));

}  // namespace
