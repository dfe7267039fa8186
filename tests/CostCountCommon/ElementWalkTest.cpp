#include <set>

#include "tests/CostCountCommon/BoundXml.h"

namespace {

constexpr unsigned int NONE_LEFT = 1;
constexpr unsigned int UNKNOWN = 2;

class Walk : public testing::Test {
protected:
    ~Walk() override {
        EXPECT_EQ(0, CountingParser::LiveNodes());
        EXPECT_EQ(0, CountingParser::StrayReleases());
    }

    std::string NameOf(void* node) {
        unsigned int err = 0;
        char name[32] = "";
        m_xml.m_FunctionsXmlPxd->GetElementName(node, name, sizeof name, &err);
        return name;
    }

    BoundXml m_xml;
};

TEST_F(Walk, StepsIntoContainersAndAcrossAllElse) {
    // What the caller says an element is counts, not what it is.
    const std::set<unsigned int> containers = {
        1,  33,  35,  36,  49,  50,  51,  55,  56,  59,  60,  64,  66,  71,  80,  86,
        98, 101, 102, 104, 106, 108, 111, 112, 120, 126, 142, 145, 150, 151, 157, 168};
    const OpenedText text(m_xml, "<a><b><child/></b><sibling/></a>");
    unsigned int err = 0;
    const XmlNode start = m_xml.Own(m_xml.m_FunctionsXmlPxd->GetFirstChild(text.Root(), &err));
    for (unsigned int id = 1; id <= 202; ++id) {
        const XmlNode next = m_xml.Own(m_xml.GetNextNode(start.Get(), id, &err));
        EXPECT_EQ(containers.count(id) != 0 ? "child" : "sibling", NameOf(next.Get())) << id;
    }
    for (const unsigned int id : {0U, 203U}) {
        err = 77;
        EXPECT_EQ(nullptr, m_xml.GetNextNode(start.Get(), id, &err));
        EXPECT_EQ(77U, err);
    }
}

TEST_F(Walk, EndsWithTheReason) {
    const struct {
        const char* text;
        std::string steps;  // what comes after the root, step by step
        unsigned int end;
        std::string read;  // as many as the root has children
        unsigned int readError;
    } rows[] = {
        {"<InkList/>", "", NONE_LEFT, "", 0},
        {"<stranger/>", "", UNKNOWN, "", 0},
        {"<InkList><!-- x --><InkID/><!-- y --><InkTank/></InkList>", "InkID InkTank ", NONE_LEFT,
         "InkID InkTank ", 0},
        {"<InkList><InkID/><stranger/><InkTank/></InkList>", "InkID stranger ", UNKNOWN, "InkID ",
         UNKNOWN},
        // The children of a container are read instead of what follows it.
        {"<printer_list><printer><name/><port/></printer><printer/></printer_list>",
         "printer name port printer ", NONE_LEFT, "printer name ", 0},
        {"<InkList><Ink/><Ink/></InkList>", "Ink ", NONE_LEFT, "Ink ", NONE_LEFT},
        // A printer of the user settings is no container.
        {"<printerList><printer><name/></printer><printer/></printerList>", "printer printer ",
         NONE_LEFT, "printer printer ", 0},
        // From a last child to what follows its parent, and no further up.
        {"<mngprinter><printer_list><printer><name/></printer></printer_list><rsv/></mngprinter>",
         "printer_list printer name ", NONE_LEFT, "printer_list printer ", 0},
    };
    for (const auto& row : rows) {
        const OpenedText text(m_xml, row.text);
        unsigned int err = 0;
        std::string steps;
        XmlNode node = m_xml.Own(m_xml.GetNextNode(text.Root(), NODE_SELF, &err));
        while (node) {
            steps.append(NameOf(node.Get())).append(" ");
            node = m_xml.Own(m_xml.GetNextNode(node.Get(), NODE_SELF, &err));
        }
        EXPECT_EQ(row.steps, steps) << row.text;
        EXPECT_EQ(row.end, err) << row.text;

        CCommonXmlPxdElementData other;
        CCommonXmlPxdElementData* first = &other;
        EXPECT_EQ(row.readError == 0, m_xml.GetElements(text.Root(), &first, &err)) << row.text;
        EXPECT_EQ(row.readError, err) << row.text;
        std::string read;
        for (const auto* record = first; record != nullptr; record = record->m_Next) {
            read.append(record->m_Name).append(" ");
        }
        EXPECT_EQ(row.read, read) << row.text;
        m_xml.releaseElementData(first);  // also after a failure the caller's
    }
}

TEST_F(Walk, SiblingsAreFoundByName) {
    const OpenedText text(m_xml, "<InkList><Ink/><Media/><Ink><InkID/></Ink></InkList>");
    unsigned int err = 0;
    const XmlNode first = m_xml.Own(m_xml.SearchElement(text.Root(), 51, &err));
    const XmlNode last = m_xml.Own(m_xml.GetNextNode(first.Get(), "Ink"));
    EXPECT_EQ(2U, m_xml.GetElementNumber(text.Root(), "Ink", &err));
    const XmlNode id = m_xml.Own(m_xml.SearchParentElement(last.Get(), 52, &err));
    EXPECT_EQ("InkID", NameOf(id.Get()));
    EXPECT_EQ(nullptr, m_xml.GetNextNode(last.Get(), "Ink"));
}

}  // namespace
