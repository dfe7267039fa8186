#include <functional>
#include <map>

#include "tests/CostCountCommon/BoundXml.h"

namespace {

TEST(TagCatalogue, NumbersOfNames) {
    BoundXml xml;
    const struct {
        const char* name;
        unsigned int first;
        unsigned int second;
        unsigned int attribute;
    } rows[] = {
        {"cmsystem", 1, 0, 0},          {"printer", 36, 103, 0},    {"rsv", 69, 78, 0},
        {"printerid", 131, 146, 0},      // the third, 158, is out of reach
        {"name", 37, 194, 194},          // attributes count too
        {"location_id", 135, 162, 199},  // an attribute only as the third
        {"ATTRIBUTETOP", 188, 0, 188},  {"host_name", 202, 0, 202}, {"massagetype", 127, 0, 0},
        {"messagetype", 0, 0, 0},       {"printe", 0, 0, 0},        {"", 0, 0, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.first, xml.GetElementID(row.name, false)) << row.name;
        EXPECT_EQ(row.second, xml.GetElementID(row.name, true)) << row.name;
        EXPECT_EQ(row.attribute, xml.GetAttributeID(row.name)) << row.name;
    }
    EXPECT_EQ(0U, xml.m_XmlTagIDs.count(25));
    EXPECT_EQ(0U, xml.GetElementID(std::string("rsv\0", 4), false));
    EXPECT_EQ("ReqSatrt", xml.m_CommandKeys.at(15));
    EXPECT_EQ(23U, xml.m_CommandKeys.size());
    const std::map<unsigned int, unsigned int> attributes = {
        {1, 1},  {33, 1}, {34, 1}, {37, 1}, {41, 1},  {49, 1},  {53, 1},
        {58, 1}, {62, 1}, {82, 1}, {99, 3}, {103, 1}, {105, 2}, {107, 2}};
    for (unsigned int id = 0; id <= 203; ++id) {
        EXPECT_EQ(attributes.contains(id) ? attributes.at(id) : 0, xml.hasAttribute(id)) << id;
    }
}

// What a derived class makes of the catalogue holds at once, wherever names are looked up.
TEST(TagCatalogue, FollowsEveryChange) {
    BoundXml xml;
    const OpenedText text(xml, "<mngprinter><printer/></mngprinter>");
    unsigned int err = 0;
    void* printer = xml.SearchElement(text.Root(), 36, &err);
    ASSERT_NE(nullptr, printer);
    using Tags = std::map<unsigned int, std::string>;
    const struct {
        std::function<void(Tags&)> change;
        unsigned int expected;
    } rows[] = {
        {[](Tags&) {}, 36},
        {[](Tags& tags) { tags.erase(36); }, 103},
        {[](Tags& tags) { tags[25] = "printer"; }, 25},
        {[](Tags& tags) {  // no more entries than before
             tags.erase(190);
             tags[25] = "printer";
         },
         25},
        {[](Tags& tags) { tags[36] = tags[103] = "other"; }, 0},
        {[](Tags& tags) { tags.clear(); }, 0},
    };
    const Tags original = xml.m_XmlTagIDs;
    for (const auto& row : rows) {
        xml.m_XmlTagIDs = original;
        row.change(xml.m_XmlTagIDs);
        CCommonXmlPxdElementData record;
        EXPECT_EQ(row.expected != 0, xml.GetElementData(printer, &record, &err));
        EXPECT_EQ(row.expected, record.m_ElementID) << &row - rows;
        EXPECT_EQ(row.expected, xml.GetElementID("printer", false)) << &row - rows;
    }
    xml.m_XmlTagIDs = original;
    xml.m_XmlTagIDs.erase(188);
    EXPECT_EQ(0U, xml.GetAttributeID("version")) << "attributes begin behind the marker";
    // Made anew, the catalogue keeps what was changed.
    xml.CreateMapSystemCommonSettingTags();
    EXPECT_FALSE(xml.m_XmlTagIDs.contains(188));
    xml.DeleteNode(printer);
}

}  // namespace
