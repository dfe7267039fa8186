#include <climits>

#include "tests/CostCountCommon/DataFileFixture.h"

namespace {

struct Costs {
    using Record = CCommonXmlPxdDataUnitCost;
    static constexpr const char* PLACE = "data/Norvane/Tallyquist/Cost/a";
    static constexpr unsigned int NOT_MADE = FAILED;

    template <typename Next>
    static Record Filled(Next next) {
        return {{{next(), next(), next()}},
                {{next(), next(), next(), next(), next(), next(), next()}},
                {{next(), {{"en", next()}}, next(), next()}},
                INT_MIN};
    }
    static unsigned int Write(CCommonXmlPxd& xml, std::string& name, const Record& cost) {
        return xml.CreateUnitCostFile(name, "", cost);
    }
    static bool Read(CCommonXmlPxd& xml, std::string& name, Record& cost) {
        return xml.GetUnitCost(name, "", cost);
    }
};

class UnitCost : public DataFile<Costs> {};

const std::string HEAD = R"(<?xml version="1.0" encoding="UTF-8"?><mngprinter version="1.0">)";
const std::string INK = "<Ink><InkID>1</InkID><InkCost>2</InkCost><rsv>3</rsv></Ink>";
const std::string COSTS =
    HEAD + "<InkList>" + INK +
    R"(</InkList><MediaList><Media>)"
    R"(<MediaTypeID>4</MediaTypeID><MediaSizeID>5</MediaSizeID><MediaSizeW>6</MediaSizeW>)"
    R"(<MediaSizeL>7</MediaSizeL><MediaNum>8</MediaNum><MediaCost>9</MediaCost><rsv>10</rsv>)"
    R"(</Media></MediaList><ExtraList><ExtraHiddenNumber>-2147483648</ExtraHiddenNumber>)"
    R"(<Extra><ExtraID>11</ExtraID><ExtraName lang="en">12</ExtraName><ExtraCost>13</ExtraCost>)"
    R"(<ExtraCalc>14</ExtraCalc></Extra></ExtraList></mngprinter>)";

TEST_F(UnitCost, SurvivesTheTripThroughTheFile) {
    ExpectTrips(COSTS, 12,
                HEAD + R"(<InkList/><MediaList/><ExtraList>)"
                       R"(<ExtraHiddenNumber>0</ExtraHiddenNumber></ExtraList></mngprinter>)");
    EXPECT_EQ(0U, m_xml.CreateUnitCostFile(m_name = ":b", m_folder.Path("c"), {}));
    EXPECT_TRUE(std::filesystem::exists(m_folder.Path("cb")));
    EXPECT_TRUE(m_xml.GetUnitCost(m_name = "b:", m_folder.Path("c"), m_record));
}

// The texts are kept as they are known: an ink speaks of a media type, and media of inks.
TEST_F(UnitCost, IsWrittenWholeOrNotAtAll) {
    ExpectWritingFaults(COSTS, R"(step CreateUnitCostFile
CreateDocByFile 1 OpenXml() PATH=/xmls/UnitCostBase.xml
step CreateUnitCostFile_Ink CreateUnitCostFile() ERROR: CreateUnitCostFile_Ink()
write UNITCOST_INKLIST 65 66 1 MediaType
values 1 67 InkID 68 InkCost 69 rsv
step CreateUnitCostFile_Media CreateUnitCostFile() ERROR: CreateUnitCostFile_Media()
write UNITCOST_MEDIALIST 70 71 2 MediaType
values 4 72 MediaTypeID 73 MediaSizeID 74 MediaSizeW 75 MediaSizeL 76 MediaNum 77 MediaCost
CreateElementWithValue 10  CreateElementWithValue <rsv>
step CreateUnitCostFile_Extra CreateUnitCostFile() ERROR: CreateUnitCostFile_Extra()
write UNITCOST_EXTRALIST 79 80 3 Extra
values 11 85 ExtraHiddenNumber 81 ExtraID
tag 82  find <ExtraName >
CreateElementWithValue 13  CreateElementWithValue <lang name>
tag 190  find <lang ATTR>
SetAttribute 1  SetAttribute <lang ATTR>
values 14 83 ExtraCost 84 ExtraCalc)");
}

TEST_F(UnitCost, TellsWhatCannotBeRead) {
    EXPECT_EQ("CCommonXmlPxd::GetUnitCost() ERROR: OpenXml() PATH=" + m_file + "\n",
              Printed([&] { EXPECT_FALSE(Read()); }));
    ExpectReadingFaults(COSTS, R"(step GetUnitCost_Ink GetUnitCost() ERROR: GetUnitCostFile_Ink()
read UNITCOST_INKLIST 65 66 2 Ink
missing UNITCOST 67 INKID 68 INKCOST 69 X
step GetUnitCost_Media GetUnitCost() ERROR: GetUnitCostFile_Media()
read UNITCOST_MEDIALIST 70 71 4 Ink
missing UNITCOST 72 MEDIATYPEID 73 MEDIASIZEID 74 MEDIASIZEW 75 MEDIASIZEL 76 MEDIANUM 77 MEDIACOST
step GetUnitCost_Extra
missing UNITCOST 85 EXTRAINDEX
step GetUnitCost_Extra GetUnitCost() ERROR: GetUnitCostFile_Extra()
read UNITCOST_EXTRALIST 79 80 6 Extra
missing UNITCOST 81 EXTRAID 83 EXTRACOST 84 EXTRACALC
GetAllChildElements 1)");
    EXPECT_EQ(
        R"(CCommonXmlPxd::GetUnitCost_Ink() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_X)
CCommonXmlPxd::GetUnitCost() ERROR: GetUnitCostFile_Media()
)",
        Reading(Replaced(COSTS, "<rsv>10</rsv>", "")));
    EXPECT_EQ((Texts{"CommonXmlPxd: new PNODE[] failed. inkElementNum[1]",
                     "CommonXmlPxd: new PNODE[] failed. mediaElementNum[1]",
                     "CommonXmlPxd: new PNODE[] failed. extraElementNum[1]"}),
              LoggedWithoutMemory(COSTS));
}

TEST_F(UnitCost, WhatAnItemLacksIsThatOfTheNext) {
    const std::string free = "<Ink><InkID>0</InkID><rsv>x</rsv></Ink>";
    const std::string paid = "<Ink><InkID>0</InkID><InkCost>2</InkCost><rsv>x</rsv></Ink>";
    const std::string number = "<ExtraHiddenNumber>-2147483648</ExtraHiddenNumber>";
    const std::string name = R"(<ExtraName lang="en">12</ExtraName>)";
    ExpectRules(COSTS, {{INK, free + INK, paid + INK, true},
                        {INK, INK + free + INK + free, INK + paid + INK, false},
                        {INK, "<Ink>" + INK + "</Ink>", INK + INK, true},
                        {number, "<ExtraHiddenNumber> 12.5</ExtraHiddenNumber>",
                         "<ExtraHiddenNumber>12</ExtraHiddenNumber>", true},
                        {name, name + "<ExtraName lang='en'/><ExtraName key='de'>x</ExtraName>",
                         R"(<ExtraName lang="de">x</ExtraName>)" + name, true}});
    // A number that is missing is 0.
    WriteFile(m_file, Replaced(COSTS, number, ""));
    m_record.m_ExtraHiddenNumber = 7;
    EXPECT_TRUE(Read());
    EXPECT_EQ(0, m_record.m_ExtraHiddenNumber);
    // Values are not looked for in items that are further away than is reasonable.
    std::string list = "<mngprinter><InkList>";
    for (int i = 0; i < 3000; ++i) {
        list.append(free);
    }
    WriteFile(m_file, list + INK + "</InkList></mngprinter>");
    BoundXml quick(XML_PARSER);
    EXPECT_TRUE(
        Steps([&] { quick.GetUnitCost(m_name, "", m_record); })
            .starts_with(
                "CCommonXmlPxd::GetUnitCost_Ink() ERROR: GetElementValueWithSearch(XMLTAG_ID_UNITCOST_INKCOST)\n"));
}

}  // namespace
