#include "cm_common/PaperNameIdList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace {

struct Entry {
    std::string name;
    std::string id;
    uint32_t kind;
    uint32_t sizes[4];  // width and height in micrometres, then in thousandths of an inch

    bool operator==(const Entry&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Entry& entry) {
    stream << entry.name << ' ' << entry.id << ' ' << entry.kind;
    for (const uint32_t size : entry.sizes) {
        stream << ' ' << size;
    }
    return stream;
}

Entry Found(const std::string& name) {
    const auto* entry = std::find_if(PaperNameIdList.begin(), PaperNameIdList.end(),
                                     [&](const auto& each) { return each.m_MediaName == name; });
    if (entry == PaperNameIdList.end()) {
        return {};
    }
    return {entry->m_MediaName,
            entry->m_DisplayId,
            entry->m_Kind,
            {entry->m_WidthMicrometre, entry->m_HeightMicrometre, entry->m_WidthMilliInch,
             entry->m_HeightMilliInch}};
}

TEST(PaperNameIdList, HoldsWhatOtherComponentsHaveStored) {
    const Entry entries[] = {
        {"na_index-4x6_4x6in", "ID_NA_INDEX_4X6_4X6IN", 1, {101600, 152400, 4000, 6000}},
        {"na_letter_8.5x11in", "ID_NA_LETTER_8_5X11IN", 1, {215900, 279400, 8500, 11000}},
        {"na_number-10_4.125x9.5in",
         "ID_NA_NUMBER_10_4_125X9_5IN",
         1,
         {104775, 241300, 4125, 9500}},
        {"iso_a4_210x297mm", "ID_ISO_A4_210X297MM", 1, {210000, 297000, 8268, 11693}},
        {"iso_a5_148x210mm", "ID_ISO_A5_148X210MM", 1, {148000, 210000, 5830, 8270}},
        {"iso_a0_841x1189mm", "ID_ISO_A0_841X1189MM", 1, {841000, 1189000, 33110, 46811}},
        {"custom_norvane_89x127mm", "ID_CUSTOM_NORVANE_89X127MM", 1, {89000, 127000, 3500, 5000}},
        {"custom_norvane_8.5x11in_blank30mm",
         "ID_CUSTOM_NORVANE_8_5X11IN_BLANK30MM",
         1,
         {215900, 279400, 8500, 11000}},
        {"papersize_043", "ID_PAPERSIZE_043", 1, {228600, 337800, 9000, 13300}},
        {"papersize_067", "ID_PAPERSIZE_067", 1, {0, 0, 0, 0}},
        {"UserDefinitionSize", "ID_USERDEFINITIONSIZE", 4, {0, 0, 0, 0}},
        {"custom_norvane_8in", "ID_CUSTOM_NORVANE_8IN", 2, {203200, 0, 8000, 0}},
        {"custom_norvane_iso_a0_a1", "ID_CUSTOM_NORVANE_ISO_A0_A1", 2, {841000, 0, 33110, 0}},
        {"custom_norvane_iso_a3_plus", "ID_CUSTOM_NORVANE_ISO_A3_PLUS", 2, {329000, 0, 12953, 0}},
        {"custom_norvane_1000mm", "ID_CUSTOM_NORVANE_1000MM", 2, {1000000, 0, 39370, 0}},
        {"general-purpose", "IDS_CM026", 3, {0, 0, 0, 0}},
    };
    for (const Entry& entry : entries) {
        EXPECT_EQ(entry, Found(entry.name));
    }
    EXPECT_EQ("na_index-4x6_4x6in", PaperNameIdList[0].m_MediaName);
    EXPECT_EQ("papersize_043", PaperNameIdList[72].m_MediaName);
    EXPECT_EQ("custom_norvane_8in", PaperNameIdList[105].m_MediaName);
    EXPECT_EQ("general-purpose", PaperNameIdList[134].m_MediaName);
}

const Entry FOUND_BEFORE_MAIN = Found("general-purpose");

TEST(PaperNameIdList, IsThereForStaticInitialisers) {
    EXPECT_EQ("IDS_CM026", FOUND_BEFORE_MAIN.id);
}

}  // namespace
