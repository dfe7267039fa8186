#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <list>

#include "CostCountCommon/CMLibLogger.h"
#include "tests/CostCountCommon/BoundXml.h"
#include "tests/support/Environment.h"
#include "tests/support/FailingAllocation.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned int BEFORE = 77;     // an error code that nobody sets
constexpr unsigned int REFUSED = 4711;  // one that only the parser of these tests gives

const std::string PARAMETER = "CCommonXmlPxd::GetElementValueWithSearch() ERROR: PARAMETER\n";
const std::string SEARCH = "CCommonXmlPxd::SearchParentElement() ERROR: ";
const std::string VALUE = "CCommonXmlPxd::GetDBSetting() ERROR: ";
const std::string SET = "CCommonXmlPxd::SetElementBySettingValue() ERROR: ";

constexpr const char* PRINTERS =
    "<mngprinter version='1.0'><app_info>some</app_info>"
    "<printer_list><printer>a<name lang='en'>One</name><port type='usb' odd='' host_name='h'/>"
    "</printer><printer>b<model_name> M<![CDATA[<&>]]>\n</model_name></printer></printer_list>"
    "<FilterCondition><printerList><printer id='7'>c</printer></printerList></FilterCondition>"
    "<stranger><name/></stranger></mngprinter>";

std::string Printed(const std::function<void()>& action) {
    testing::internal::CaptureStdout();
    action();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

class ElementAccess : public testing::Test {
protected:
    ~ElementAccess() override {
        EXPECT_EQ(1, CountingParser::LiveNodes());
        EXPECT_EQ(0, CountingParser::StrayReleases());
    }

    // An element by the names that lead to it.
    void* Element(std::initializer_list<const char*> names) {
        void* node = m_text.Root();
        for (const char* name : names) {
            unsigned int err = 0;
            unsigned int work = 0;
            void* found = nullptr;
            m_xml.m_FunctionsXmlPxd->SelectNodesInElement(node, name, &found, 1, &work, &err);
            EXPECT_NE(nullptr, found) << name;
            if (node != m_text.Root()) {
                m_xml.DeleteNode(node);
            }
            node = found;
        }
        return node;
    }

    std::string NameAndText(void* node) {
        CCommonXmlPxdElementData record;
        unsigned int err = 0;
        EXPECT_TRUE(m_xml.GetElementData(node, &record, &err));
        m_xml.DeleteNode(node);
        return record.m_Name + "=" + record.m_Values.front();
    }

    // Fails one call of the parser after the other until none is left that the action makes.
    void FailEachCall(const std::function<void()>& action) {
        const int nodes = CountingParser::LiveNodes();
        const int documents = CountingParser::LiveDocuments();
        int nth = 1;
        do {
            CountingParser::Fail("", nth, REFUSED);
            action();
            EXPECT_EQ(nodes, CountingParser::LiveNodes()) << nth;
            EXPECT_EQ(documents, CountingParser::LiveDocuments()) << nth;
        } while (CountingParser::HasFailed() && ++nth < 1000);
        EXPECT_GT(nth, 1);
        CountingParser::Fail("", 0, 0);
    }

    BoundXml m_xml;
    OpenedText m_text{m_xml, PRINTERS};
};

TEST_F(ElementAccess, ReadsAnElementIntoARecord) {
    using Texts = std::list<std::string>;
    const struct {
        const char* path;
        unsigned int id;
        const char* text;
        Texts names;
        std::list<unsigned int> ids;
        Texts values;
    } rows[] = {
        {".", 33, "", {"version"}, {189}, {"1.0"}},
        {"//port", 41, "", {"type", "odd", "host_name"}, {191, 0, 202}, {"usb", "", "h"}},
        {"//name", 37, "One", {"lang"}, {190}, {"en"}},
        {"//model_name", 38, " M<&>\n", {}, {}, {}},
        {"//printer_list/printer[2]", 36, "b", {}, {}, {}},
        {"//printerList/printer", 103, "c", {"id"}, {193}, {"7"}},
    };
    for (const auto& row : rows) {
        void* node = Element({row.path});
        CCommonXmlPxdElementData next;
        CCommonXmlPxdElementData record;
        record.m_Values = {"earlier"};
        record.m_Next = &next;
        unsigned int err = BEFORE;
        EXPECT_TRUE(m_xml.GetElementData(node, &record, &err)) << row.path;
        EXPECT_EQ(0U, err);
        EXPECT_EQ(row.id, record.m_ElementID) << row.path;
        EXPECT_EQ(Texts{row.text}, record.m_Values);
        EXPECT_EQ(row.names, record.m_AttributeNames);
        EXPECT_EQ(row.ids, record.m_AttributeIDs);
        EXPECT_EQ(row.values, record.m_AttributeValues);
        EXPECT_EQ(&next, record.m_Next);
        m_xml.DeleteNode(node);
    }
}

TEST_F(ElementAccess, ARecordThatCannotBeFilledStays) {
    CCommonXmlPxdElementData record;
    record.m_Name = "kept";
    unsigned int err = 0;
    void* stranger = Element({"stranger"});
    EXPECT_FALSE(m_xml.GetElementData(stranger, &record, &err));
    EXPECT_EQ(2U, err);
    m_xml.DeleteNode(stranger);
    void* printer = Element({"//printerList/printer"});
    FailEachCall([&] {
        record.m_Name = "kept";
        const bool isRead = m_xml.GetElementData(printer, &record, &err);
        EXPECT_EQ(!CountingParser::HasFailed(), isRead);
        EXPECT_EQ(isRead ? 0 : REFUSED, err);
        EXPECT_EQ(isRead ? "printer" : "kept", record.m_Name);
    });
    EXPECT_FALSE(m_xml.GetElementData(nullptr, &record, &err));
    EXPECT_FALSE(m_xml.GetElementData(printer, nullptr, &err));
    EXPECT_FALSE(m_xml.GetElementData(printer, &record, nullptr));
    m_xml.DeleteNode(printer);
}

TEST_F(ElementAccess, SearchesGiveTheFirstMatchOrTheReason) {
    const struct {
        bool childOnly;
        const char* start;
        unsigned int tag;
        const char* found;  // null for none
        unsigned int err;
        std::string printed;
    } rows[] = {
        {false, ".", 34, "app_info=some", 0, ""},
        {true, ".", 34, "app_info=some", 0, ""},
        {false, ".", 36, "printer=a", 0, ""},
        {false, ".", 103, "printer=a", 0, ""},  // the name decides
        {false, ".", 33, nullptr, 1, ""},       // never the start itself
        {false, "//printer_list/printer[1]", 36, "printer=b", 0, ""},
        {false, "//model_name", 101, nullptr, 1, ""},  // two levels up
        {false, "//printerList", 103, "printer=c", 0, ""},
        {false, "stranger", 37, nullptr, 2, ""},
        {true, ".", 36, nullptr, 1, SEARCH + "GetNextSibling() errcode=1\n"},
        {true, "//app_info", 36, nullptr, 1, SEARCH + "GetFirstChild() errcode=1\n"},
        {true, "stranger", 37, "name=", 0, ""},
        {false, ".", 25, nullptr, 2, ""},
        {true, ".", 25, nullptr, 2, SEARCH + "m_XmlTagIDs.end()\n"},
        {false, ".", 0, nullptr, BEFORE, ""},
        {true, ".", 0, nullptr, BEFORE, ""},
        {false, ".", 203, nullptr, BEFORE, ""},
        {true, ".", 203, nullptr, BEFORE, ""},
        {false, ".", NODE_SELF, nullptr, BEFORE, ""},
    };
    for (const auto& row : rows) {
        const std::string what = std::string(row.start) + " " + std::to_string(row.tag);
        void* start = Element({row.start});
        void* found = nullptr;
        unsigned int err = BEFORE;
        EXPECT_EQ(row.printed, Printed([&] {
                      found = row.childOnly ? m_xml.SearchParentElement(start, row.tag, &err)
                                            : m_xml.SearchElement(start, row.tag, &err);
                  }))
            << what;
        EXPECT_EQ(row.err, err) << what;
        ASSERT_EQ(row.found != nullptr, found != nullptr) << what;
        if (found != nullptr) {
            EXPECT_EQ(row.found, NameAndText(found));
        }
        EXPECT_EQ("", Printed([&] {
                      EXPECT_EQ(nullptr, m_xml.SearchElement(start, row.tag, nullptr));
                      EXPECT_EQ(nullptr, m_xml.SearchElement(nullptr, row.tag, &err));
                      EXPECT_EQ(nullptr, m_xml.SearchParentElement(start, row.tag, nullptr));
                      EXPECT_EQ(nullptr, m_xml.SearchParentElement(nullptr, row.tag, &err));
                      EXPECT_EQ(nullptr, m_xml.GetNextNode(nullptr, row.tag, &err));
                  }));
        EXPECT_EQ(row.err, err);
        m_xml.DeleteNode(start);
    }
    // Only these two numbers lie outside of what the walk takes.
    for (const unsigned int tag : {0U, 203U}) {
        unsigned int err = BEFORE;
        EXPECT_EQ(nullptr, m_xml.GetNextNode(m_text.Root(), tag, &err));
        EXPECT_EQ(BEFORE, err);
    }
    EXPECT_EQ(1, CountingParser::LiveNodes());
}

TEST_F(ElementAccess, TellsWhichCallFailed) {
    const std::string code = "errcode=4711\n";
    const struct {
        const char* entry;
        int nth;
        std::string printed;
    } rows[] = {
        {"GetFirstChild", 1, SEARCH + "GetFirstChild() " + code},
        {"GetElementName", 1, SEARCH + "GetElementName(1) " + code},
        {"GetElementName", 2, SEARCH + "GetElementName(2) " + code},
        {"GetElementName", 3, SEARCH + "GetElementName(1) " + code},
        {"GetNextSibling", 1, SEARCH + "GetNextSibling() " + code},
    };
    for (const auto& row : rows) {
        unsigned int err = 0;
        CountingParser::Fail(row.entry, row.nth, REFUSED);
        EXPECT_EQ(row.printed, Printed([&] {
                      EXPECT_EQ(nullptr, m_xml.SearchParentElement(m_text.Root(), 35, &err));
                  }));
        EXPECT_EQ(REFUSED, err);
        EXPECT_EQ(1, CountingParser::LiveNodes());
        // The reader of one value adds a line of its own.
        std::string value = "kept";
        CountingParser::Fail(row.entry, row.nth, REFUSED);
        EXPECT_EQ(row.printed + VALUE + "SearchParentElement(ElementID=35)\n", Printed([&] {
                      EXPECT_FALSE(
                          m_xml.GetElementValueWithSearch(m_text.Root(), 35, true, &value, &err));
                  }));
        EXPECT_EQ("kept", value);
    }
}

TEST_F(ElementAccess, ReadsTheValueOfOneElement) {
    const struct {
        int tag;
        bool childOnly;
        std::string value;  // "kept" on failure
        unsigned int err;
        std::string printed;
    } rows[] = {
        {34, true, "some", 0, ""},
        {34, false, "some", 0, ""},
        {41, false, "", 0, ""},
        {41, true, "kept", 1,
         SEARCH + "GetNextSibling() errcode=1\n" + VALUE + "SearchParentElement(ElementID=41)\n"},
        {42, false, "kept", 1, VALUE + "SearchElement(ElementID=42)\n"},
        {25, false, "kept", 2, VALUE + "SearchElement(ElementID=25)\n"},
        {0, true, "kept", BEFORE, PARAMETER},
        {-1, true, "kept", BEFORE, PARAMETER},
        {203, false, "kept", BEFORE, PARAMETER},
    };
    for (const auto& row : rows) {
        std::string value = "kept";
        unsigned int err = BEFORE;
        EXPECT_EQ(row.printed, Printed([&] {
                      EXPECT_EQ(row.value != "kept",
                                m_xml.GetElementValueWithSearch(m_text.Root(), row.tag,
                                                                row.childOnly, &value, &err));
                  }));
        EXPECT_EQ(row.value, value) << row.tag;
        EXPECT_EQ(row.err, err) << row.tag;
    }
    unsigned int err = BEFORE;
    std::string value;
    EXPECT_EQ(PARAMETER + PARAMETER + PARAMETER, Printed([&] {
                  m_xml.GetElementValueWithSearch(nullptr, 34, true, &value, &err);
                  m_xml.GetElementValueWithSearch(m_text.Root(), 34, true, nullptr, &err);
                  m_xml.GetElementValueWithSearch(m_text.Root(), 34, true, &value, nullptr);
              }));
    CountingParser::Fail("GetElementText", 2, REFUSED);
    EXPECT_EQ(VALUE + "GetElementData(ElementID=34), err_code=4711\n", Printed([&] {
                  m_xml.GetElementValueWithSearch(m_text.Root(), 34, true, &value, &err);
              }));
    // The only child element is looked at first, so that no failure is passed over by a step on.
    FailEachCall([&] {
        Printed([&] {
            value = "kept";
            const bool isRead =
                m_xml.GetElementValueWithSearch(m_text.Root(), 34, false, &value, &err);
            EXPECT_EQ(!CountingParser::HasFailed(), isRead);
            EXPECT_EQ(isRead ? "some" : "kept", value);
            EXPECT_EQ(isRead ? 0 : REFUSED, err);
        });
    });
}

TEST_F(ElementAccess, SetsTheTextOfTheFirstMatch) {
    const struct {
        unsigned int tag;
        const char* value;
        std::string printed;
    } rows[] = {
        {37, "<Zwei> & \xC3\xA4", ""},
        {34, "", ""},
        {38, "bell \x07", SET + "SetElementValue(2) errCode = 7\n"},
        {42, "v", SET + "SearchElement(1) in_CmdTagID=42, errCode=1\n"},
        {25, "v", SET + "SearchElement(1) in_CmdTagID=25, errCode=2\n"},
        {0, "v", SET + "SearchElement(1) in_CmdTagID=0, errCode=0\n"},
        {203, "v", SET + "SearchElement(1) in_CmdTagID=203, errCode=0\n"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.printed, Printed([&] {
                      EXPECT_EQ(row.printed.empty(),
                                m_xml.SetElementBySettingValue(m_text.Root(), row.tag, row.value));
                  }));
        if (row.printed.empty()) {
            std::string value;
            unsigned int err = 0;
            EXPECT_TRUE(m_xml.GetElementValueWithSearch(m_text.Root(), static_cast<int>(row.tag),
                                                        false, &value, &err));
            EXPECT_EQ(row.value, value);
        }
    }
    EXPECT_EQ(SET + "SearchElement(1) in_CmdTagID=34, errCode=0\n",
              Printed([&] { m_xml.SetElementBySettingValue(nullptr, 34, "v"); }));
    EXPECT_EQ("model_name= M<&>\n", NameAndText(Element({"//model_name"})));
    FailEachCall([&] {
        Printed([&] {
            const bool isSet = m_xml.SetElementBySettingValue(m_text.Root(), 34, "new");
            EXPECT_EQ(!CountingParser::HasFailed(), isSet);
        });
    });
}

TEST_F(ElementAccess, CountsElementsBelow) {
    const struct {
        const char* start;
        const char* name;
        unsigned int number;
    } rows[] = {
        {".", "printer", 3},    {"printer_list", "printer", 2}, {".", "stranger", 1},
        {".", "mngprinter", 0}, {"//port", "printer", 0},       {".", "", 0},
    };
    for (const auto& row : rows) {
        void* start = Element({row.start});
        unsigned int err = BEFORE;
        EXPECT_EQ(row.number, m_xml.GetElementNumber(start, row.name, &err)) << row.name;
        EXPECT_EQ(0U, err);
        m_xml.DeleteNode(start);
    }
    unsigned int err = BEFORE;
    EXPECT_EQ(4294967295U, m_xml.GetElementNumber(nullptr, "printer", &err));
    EXPECT_EQ(4294967295U, m_xml.GetElementNumber(m_text.Root(), "printer", nullptr));
    EXPECT_EQ(BEFORE, err);
    CountingParser::Fail("GetElementsByElementName", 1, REFUSED);
    EXPECT_EQ(4294967295U, m_xml.GetElementNumber(m_text.Root(), "printer", &err));
    EXPECT_EQ(REFUSED, err);
}

TEST_F(ElementAccess, ReadsAsManyElementsAsThereAreChildren) {
    void* printer = Element({"//printer_list/printer[1]"});
    CCommonXmlPxdElementData other;
    CCommonXmlPxdElementData* first = &other;
    unsigned int err = BEFORE;
    const auto names = [&] {
        std::string all;
        for (const auto* record = first; record != nullptr; record = record->m_Next) {
            all.append(record->m_Name).append(" ");
        }
        m_xml.releaseElementData(first);
        return all;
    };
    EXPECT_TRUE(m_xml.GetElements(printer, &first, &err));
    EXPECT_EQ(0U, err);
    EXPECT_EQ("name port ", names());

    // The walk steps into containers, whose children are then read instead of the later ones.
    void* list = Element({"printer_list"});
    EXPECT_TRUE(m_xml.GetElements(list, &first, &err));
    EXPECT_EQ("printer name ", names());
    // No step leads out of an empty one. What was read until then stays the caller's.
    const OpenedText inks(m_xml, "<InkList><Ink/><Ink/></InkList>");
    EXPECT_FALSE(m_xml.GetElements(inks.Root(), &first, &err));
    EXPECT_EQ(1U, err);
    EXPECT_EQ("Ink ", names());
    const OpenedText strangers(m_xml, "<InkList><InkID/><stranger/></InkList>");
    EXPECT_FALSE(m_xml.GetElements(strangers.Root(), &first, &err));
    EXPECT_EQ(2U, err);
    EXPECT_EQ("InkID ", names());

    void* port = Element({"//port"});
    first = &other;
    EXPECT_TRUE(m_xml.GetElements(port, &first, &err));
    EXPECT_EQ(nullptr, first);
    m_xml.releaseElementData(nullptr);

    first = &other;
    EXPECT_FALSE(m_xml.GetElements(nullptr, &first, &err));
    EXPECT_EQ(nullptr, first);
    EXPECT_FALSE(m_xml.GetElements(printer, nullptr, &err));
    EXPECT_FALSE(m_xml.GetElements(printer, &first, nullptr));

    // A failed step to the next sibling is no failure, the parent's may follow: of these two
    // elements the first is then followed by the next printer, which is read instead.
    FailEachCall([&] {
        const bool isRead = m_xml.GetElements(printer, &first, &err);
        EXPECT_TRUE(CountingParser::HasFailed() || isRead);
        EXPECT_EQ(isRead ? 0 : REFUSED, err);
        EXPECT_TRUE(!isRead || first->m_Next != nullptr);
        names();
    });
    for (void* node : {printer, list, port}) {
        m_xml.DeleteNode(node);
    }
}

TEST_F(ElementAccess, LogsARecordThatFindsNoMemory) {
    CCMLibLogger::getInstance()->InitLibLogger("n", "o", "m", RECORDING_LOGGER);
    void* printer = Element({"//printer_list/printer[1]"});
    CCommonXmlPxdElementData* first = nullptr;
    unsigned int err = 0;
    ASSERT_TRUE(m_xml.GetElements(printer, &first, &err));
    m_xml.releaseElementData(first);
    TakeRecordedCalls();
    const int nodes = CountingParser::LiveNodes();
    {
        const FailingAllocation records(sizeof(CCommonXmlPxdElementData),
                                        sizeof(CCommonXmlPxdElementData));
        EXPECT_FALSE(m_xml.GetElements(printer, &first, &err));
    }
    EXPECT_EQ(nullptr, first);
    EXPECT_EQ(nodes, CountingParser::LiveNodes());
    const auto lines = TakeRecordedLines();
    ASSERT_EQ(1U, lines.size());
    EXPECT_EQ((RecordedLine{"CommonXmlPxd", lines[0].line, 'e', 0,
                            "new CCommonXmlPxdElementData failed."}),
              lines[0]);
    m_xml.DeleteNode(printer);
}

// Texts find no memory either; nothing is thrown.
TEST_F(ElementAccess, AnExhaustedMemoryIsAnError) {
    const std::string name(200, 'n');
    const OpenedText text(m_xml, "<cmsystem><" + name + "/></cmsystem>");
    m_xml.m_XmlTagIDs[25] = name;
    unsigned int err = 0;
    void* node = m_xml.SearchElement(text.Root(), 25, &err);
    ASSERT_NE(nullptr, node);
    const int nodes = CountingParser::LiveNodes();
    const std::function<void()> actions[] = {
        [&] { EXPECT_EQ(nullptr, m_xml.SearchElement(text.Root(), 3, &err)); },
        [&] { EXPECT_EQ(nullptr, m_xml.SearchParentElement(text.Root(), 3, &err)); },
        [&] { EXPECT_EQ(nullptr, m_xml.GetNextNode(node, NODE_SELF, &err)); },
        [&] {
            CCommonXmlPxdElementData record;
            EXPECT_FALSE(m_xml.GetElementData(node, &record, &err));
        },
        [&] {
            CCommonXmlPxdElementData* first = nullptr;
            EXPECT_FALSE(m_xml.GetElements(text.Root(), &first, &err));
            EXPECT_EQ(nullptr, first);
        },
    };
    for (const auto& action : actions) {
        err = 0;
        {
            const FailingAllocation texts(200, 300);
            action();
        }
        EXPECT_EQ(6U, err) << &action - actions;
        EXPECT_EQ(nodes, CountingParser::LiveNodes());
    }
    m_xml.DeleteNode(node);
}

// A parser that lacks an entry fails what needs it, with the code of an invalid argument.
TEST(IncompleteParser, FailsWhatNeedsTheMissingEntry) {
    TempFolder folder;
    WriteFile(folder.Path("a.xml"), PRINTERS);
    BoundXml xml(XML_PARSER);
    const XMLPXD_FUNCLIST complete = *xml.m_FunctionsXmlPxd;
    for (const XmlPxdEntry& entry : XMLPXD_LOAD_ORDER) {
        SCOPED_TRACE(entry.name);
        XMLPXD_FUNCLIST& table = *xml.m_FunctionsXmlPxd;
        table = complete;
        const OpenedText text(xml, PRINTERS);
        void* const none = nullptr;
        std::memcpy(reinterpret_cast<char*>(&table) + entry.offset, &none, sizeof none);
        unsigned int err = 0;
        std::string value;
        const bool isReading = table.GetElementName != nullptr && table.GetElementText != nullptr &&
                               table.GetAttributes != nullptr;
        bool isRead = false;
        Printed(
            [&] { isRead = xml.GetElementValueWithSearch(text.Root(), 35, true, &value, &err); });
        EXPECT_EQ(isReading && table.GetFirstChild != nullptr && table.GetNextSibling != nullptr,
                  isRead);
        EXPECT_EQ(isRead ? 0U : 3U, err);
        EXPECT_EQ(table.GetElementsByElementName != nullptr ? 3 : 0xFFFFFFFF,
                  xml.GetElementNumber(text.Root(), "printer", &err));
        CCommonXmlPxdElementData* first = nullptr;
        xml.GetElements(text.Root(), &first, &err);
        EXPECT_EQ(
            isReading && table.GetAllChildElements != nullptr && table.GetFirstChild != nullptr,
            first != nullptr);
        xml.releaseElementData(first);
        Printed([&] {
            EXPECT_EQ(table.SetElementValue != nullptr && table.GetFirstChild != nullptr &&
                          table.GetElementName != nullptr,
                      xml.SetElementBySettingValue(text.Root(), 34, "some"));
        });
        void* document = nullptr;
        void* root = xml.OpenXml(folder.Path("a.xml"), &document);
        EXPECT_EQ(table.CreateDocByFile != nullptr && table.GetDocumentElement != nullptr,
                  root != nullptr);
        xml.DeleteNode(root);
        xml.CloseXml(document);
        if (table.DeleteDoc == nullptr) {
            complete.DeleteDoc(document);
        }
        table = complete;
    }
}

TEST_F(ElementAccess, OpensACallersDocument) {
    TempFolder folder;
    WriteFile(folder.Path("good.xml"), "<cmsystem/>");
    WriteFile(folder.Path("bad.xml"), "<cmsystem>");
    int untouched = 0;
    void* document = &untouched;
    EXPECT_EQ("", Printed([&] {
                  EXPECT_EQ(nullptr, m_xml.OpenXml("", &document));
                  EXPECT_EQ(nullptr, m_xml.OpenXml(folder.Path("none.xml"), &document));
                  EXPECT_EQ(nullptr, m_xml.OpenXml(folder.Path("bad.xml"), &document));
                  EXPECT_EQ(nullptr,
                            m_xml.OpenXml(folder.Path("good.xml"), static_cast<void**>(nullptr)));
              }));
    FailEachCall([&] {
        document = &untouched;
        void* root = m_xml.OpenXml(folder.Path("good.xml"), &document);
        EXPECT_EQ(CountingParser::HasFailed(), root == nullptr);
        EXPECT_EQ(root == nullptr, document == &untouched);
        if (root != nullptr) {
            CountingParser::Fail("", 0, 0);
            EXPECT_EQ("cmsystem=", NameAndText(root));
            m_xml.CloseXml(document);
        }
    });
    m_xml.CloseXml(nullptr);
}

TEST_F(ElementAccess, OpensOneDocumentOfItsOwnAtATime) {
    TempFolder contents;
    const ScopedVariable main("TALLYQUIST_CONTENTS", contents.Path().c_str());
    const std::string templates =
        contents.Path("PlugIns/qvtrelCore.plugin/Contents/Resources/xmls");
    fs::create_directories(templates);
    WriteFile(templates + "/a.xml", "<cmsystem>template</cmsystem>");
    WriteFile(contents.Path("b.xml"), "<cmsystem>file</cmsystem>");
    const int others = CountingParser::LiveDocuments();
    const struct {
        std::string path;
        bool fromResources;
        const char* root;  // null for none
        int documents;
    } rows[] = {
        {"/xmls/a.xml", true, "cmsystem=template", 1},
        {contents.Path("b.xml"), false, "cmsystem=file", 1},
        {"", false, nullptr, 1},  // leaves the earlier one open
        {"", true, nullptr, 1},
        {"/xmls/a.xml", true, "cmsystem=template", 1},
        {"/xmls/none.xml", true, nullptr, 0},
        {contents.Path("b.xml"), false, "cmsystem=file", 1},
        {"/xmls/a.xml", false, nullptr, 0},
    };
    for (const auto& row : rows) {
        void* root = nullptr;
        EXPECT_EQ("", Printed([&] { root = m_xml.OpenXml(row.path, row.fromResources); }));
        EXPECT_EQ(row.documents, CountingParser::LiveDocuments() - others) << row.path;
        ASSERT_EQ(row.root != nullptr, root != nullptr) << row.path;
        if (root != nullptr) {
            EXPECT_EQ(row.root, NameAndText(root));
        }
    }
    FailEachCall([&] {
        void* root = m_xml.OpenXml("/xmls/a.xml", true);
        EXPECT_EQ(CountingParser::HasFailed(), root == nullptr);
        EXPECT_EQ(root == nullptr ? 0 : 1, CountingParser::LiveDocuments() - others);
        m_xml.DeleteNode(root);
        m_xml.CloseXml();
        m_xml.CloseXml();
    });
}

}  // namespace
