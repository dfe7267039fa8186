// That rows agree with their own names is checked where they are compiled.
#include "cm_common/PaperNameIdList.h"

#include <gtest/gtest.h>

namespace {

TEST(PaperNameIdList, HasItsEntriesInTheirPlaces) {
    const struct {
        size_t at;
        const char* name;
    } rows[] = {{0, "na_index-4x6_4x6in"},   {4, "iso_a4_210x297mm"},     {72, "papersize_043"},
                {104, "UserDefinitionSize"}, {105, "custom_norvane_8in"}, {134, "general-purpose"}};
    for (const auto& row : rows) {
        EXPECT_EQ(row.name, PaperNameIdList[row.at].m_MediaName);
    }
    const PaperNameId& envelope = PaperNameIdList[10];
    EXPECT_EQ("na_number-10_4.125x9.5in", envelope.m_MediaName);
    EXPECT_STREQ("ID_NA_NUMBER_10_4_125X9_5IN", envelope.m_DisplayId);
    EXPECT_EQ(PAPER_KIND_CUT_SHEET, envelope.m_Kind);
    EXPECT_EQ(104775, envelope.m_WidthMicrometre);
    EXPECT_EQ(241300, envelope.m_HeightMicrometre);
    EXPECT_EQ(4125, envelope.m_WidthMilliInch);
    EXPECT_EQ(9500, envelope.m_HeightMilliInch);
}

const std::string FOUND_BEFORE_MAIN = PaperNameIdList.back().m_DisplayId;

TEST(PaperNameIdList, IsThereForStaticInitialisers) {
    EXPECT_EQ("IDS_CM026", FOUND_BEFORE_MAIN);
}

}  // namespace
