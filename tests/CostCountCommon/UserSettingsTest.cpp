#include "tests/CostCountCommon/DataFileFixture.h"

namespace {

struct Settings {
    using Record = CCommonXmlPxdDataUserSettings;
    static constexpr const char* PLACE =
        "App.app/Contents/PlugIns/qvtrelCore.plugin/Contents/Resources/CMUserSetting.cfg";

    static bool Read(CCommonXmlPxd& xml, const std::string& /*name*/, Record& settings) {
        return xml.GetUserSetting(settings);
    }
};

class UserSettings : public DataFile<Settings> {
protected:
    std::string Texts() const {
        const auto& [date, currency, separator, point, ink, width, length, square, number, span,
                     start, language, costs, printers, spans, others] = m_record;
        std::ostringstream all;
        for (const auto& text : {date, currency, separator, point, ink, width, length, square,
                                 number, span, start, language}) {
            all << text << "|";
        }
        for (const auto& [id, name, value] : costs) {
            all << id << "|" << name << "|" << value << "|";
        }
        for (const auto& printer : printers) {
            all << printer << "|";
        }
        for (const auto& [from, to] : spans) {
            all << from << "|" << to << "|";
        }
        for (const auto& [select, value] : others) {
            all << select << "|" << value << "|";
        }
        return all.str();
    }
};

constexpr const char* SETTINGS =
    "<CMUserSetting><date>1</date><currency>2</currency><separator>3</separator>"
    "<decimalPoint>4</decimalPoint><inkUnit>5</inkUnit><paperWidth>6</paperWidth>"
    "<paperLength>7</paperLength><squareUnit>8</squareUnit>"
    "<onePageJobNumber>9</onePageJobNumber><spanDate>10</spanDate><startDate>11</startDate>"
    "<language>12</language><jobCostListSetting><jobCostSetting id='13' name='14' visible='15'/>"
    "</jobCostListSetting><FilterCondition><printerList><printer id='16' name='x'/></printerList>"
    "<spanList><span from='17' to='18'/></spanList><otherList><other select='19' key='20'/>"
    "</otherList></FilterCondition></CMUserSetting>";

constexpr const char* ALL = "1|2|3|4|5|6|7|8|9|10|11|12|13|14|15|16|17|18|19|20|";

TEST_F(UserSettings, AreReadBehindWhatIsThere) {
    EXPECT_EQ("",
              Reading(ReadFile(BUILT_CONTENTS
                               "/PlugIns/qvtrelCore.plugin/Contents/Resources/CMUserSetting.cfg")));
    EXPECT_EQ(8U, m_record.m_JobCostList.size());
    EXPECT_EQ("", Reading(SETTINGS));
    EXPECT_EQ(ALL, Texts());
    EXPECT_TRUE(Read());
    EXPECT_EQ("1|2|3|4|5|6|7|8|9|10|11|12|13|14|15|13|14|15|16|16|17|18|17|18|19|20|19|20|",
              Texts());
    EXPECT_EQ(0U, m_xml.GetUserSetting_Scales(m_record, nullptr));
}

// The texts are kept as they are known: misspelt, named after another reader and cut short.
TEST_F(UserSettings, TellWhatCannotBeRead) {
    EXPECT_EQ("CCommonXmlPxd::GetDBSetting() ERROR: OpenXml() PATH=/CMUserSetting.cfg\n",
              Printed([&] { EXPECT_FALSE(Read()); }));
    ExpectReadingFaults(
        SETTINGS, R"(step GetUserSettingFile_Scales GetDBSetting() ERROR: GetUserSettingFile_Scales(
missing USRSETTING 87 DATE 88 CURRENCY 89 SEPARATOR 90 DECIMALPOINT 91 INKUINT 92 PAPERWIDTH
missing USRSETTING 93 PAPERLENGTH 94 SUQAREUINIT 95 ONEPAGEJOBNUMBER 96 SPANDATE 97 STARTDATE
missing USRSETTING 100 LANGUAGE
step GetUserSettingFile_JobCostList GetDBSetting() ERROR: GetUserSettingFile_JobCostList(
gone 98 SearchParentElement(XMLTAG_ID_USRSETTING_JOBCOSTLISTSETTING)
tag 99  m_XmlTagIDs.end()
GetAllChildElements 1 GetElements()
more 99 attrValueList Number
step GetUserSettingFile_FilterConditon GetDBSetting() ERROR: GetUserSettingFile_FilterConditon(
gone 101 SearchParentElement(XMLTAG_ID_USRSETTING_FILTERCONDITION)
step GetUserSettingFile_FC_PrinterList GetUserSettingFile_FilterConditon() ERROR: GetUserSettingFile_FC_PrinterList()
gone 102 SearchParentElement(XMLTAG_ID_USRSETTING_PRINTERLIST)
GetAllChildElements 2 GetElements()
step GetUserSettingFile_FC_SpanList GetUserSettingFile_FilterConditon() ERROR: GetUserSettingFile_FC_SpanList()
gone 104 SearchParentElement(XMLTAG_ID_USRSETTING_SPANLIST)
GetAllChildElements 3 GetElements()
more 105 attrValueList Number
step GetUserSettingFile_FC_OtherList GetUserSettingFile_FilterConditon() ERROR: GetUserSettingFile_FC_OtherList()
gone 106 SearchParentElement(XMLTAG_ID_USRSETTING_OTHERLIST)
GetAllChildElements 4 GetElements()
more 107 attrValueList Number)");
}

TEST_F(UserSettings, AttributesAreCountedAndKnownByName) {
    const struct {
        const char *part, *by, *readPart, *readBy;
        bool isWhole;
    } rows[] = {
        {"<startDate>11</startDate>", "", "11|12|", "||", false},
        {"id='13' name='14' visible='15'", "x='15' name='14' id='13'", "", "", true},
        {"id='13' name='14' visible='15'", "x='a' name='14' y='b'", "13|14|15", "|14|b", true},
        {"<jobCostSetting id='13' name='14' visible='15'/>", "", "13|14|15|", "", true},
        {"<printer ", "<printer/><span x='y'/><printer ", "16|", "y|16|", true},
        {"<span ", "<span to='b' x='a'/><span key='' ", "17|18|", "|a|", false},
        {" select='19'", "", "19|20|", "", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.isWhole, Reading(Replaced(SETTINGS, row.part, row.by)).empty()) << row.by;
        EXPECT_EQ(Replaced(ALL, row.readPart, row.readBy), Texts()) << row.by;
    }
}

}  // namespace
