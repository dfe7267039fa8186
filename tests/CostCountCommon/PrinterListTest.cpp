#include "tests/CostCountCommon/DataFileFixture.h"
#include "tests/support/PrinterRecords.h"

namespace {

using namespace std::string_literals;

constexpr unsigned int NOT_WRITTEN = 0xFFFFFFFF;
const std::string WRITING = "CCommonXmlPxd::CreatePrinterListFile() ERROR: ";

// With one name, and all attributes of a port.
CCommonPrinterInfo Bonjour() {
    CCommonPrinterInfo printer;
    printer.SetPrinterName("N", 0);
    printer.SetPortType("bonjour");
    printer.SetPortNumber("h");
    printer.SetTrackingName("T");
    printer.SetExistTrackingName(true);
    return printer;
}

class PrinterList : public FileFixture {
protected:
    PrinterList() : FileFixture("printers.xml") {}

    unsigned int Write(const std::list<CCommonPrinterInfo>& printers) {
        WriteFile(m_file, "as it was");
        const unsigned int written = m_xml.CreatePrinterListFile(m_file, printers);
        EXPECT_EQ(written == NOT_WRITTEN, ReadFile(m_file) == "as it was");
        EXPECT_EQ(0, CountingParser::LiveNodes());
        return written;
    }

    // The result, then a field of each printer, or whether the head was set to null or kept.
    std::string Read(size_t field = 20) {
        CCommonPrinterInfo kept;
        CCommonPrinterInfo* head = &kept;
        std::string outcome = m_xml.GetPrinterList(m_file, &head) ? "true" : "false";
        outcome.append(head == &kept ? " kept" : head == nullptr ? " null" : "");
        m_read.clear();
        while (head != nullptr && head != &kept) {
            m_read.push_back(PrinterFields(*head));
            outcome.append(" ").append(m_read.back()[field]);
            delete std::exchange(head, head->GetNextPrinterInfo());
        }
        return outcome;
    }

    std::list<Texts> m_read;
};

TEST_F(PrinterList, EveryFieldSurvivesTheTripThroughTheFile) {
    const CCommonPrinterInfo marked = FilledPrinter(" <&>\"' ]]>\u00DF\u6F22\U0001F5A8\r\n\t ");
    EXPECT_EQ(3U, Write({marked, CCommonPrinterInfo(), Bonjour()}));
    Read();
    EXPECT_EQ((std::list{PrinterFields(marked), PrinterFields(CCommonPrinterInfo()),
                         PrinterFields(Bonjour())}),
              m_read);
}

TEST_F(PrinterList, TheFileAsOthersSeeIt) {
    CCommonPrinterInfo printer = FilledPrinter("f");
    printer.SetPortType("bonjour");
    printer.SetLanguage("", 0);
    printer.SetPrinterName("", 1);  // the last that is looked at
    EXPECT_EQ(1U, Write({printer}));
    EXPECT_EQ(R"(<?xml version="1.0" encoding="UTF-8"?><mngprinter version="1.0">)"
              R"(<app_info version="1.0"/><printer_list><printer><name lang="">f1</name>)"
              "<model_name>f21</model_name><serial_number>f22</serial_number>"
              R"(<mac_address>f23</mac_address><port type="bonjour" location_id="4294967295" )"
              R"(nic_index="-1" tracking_name="f32" host_name="f24"/><support_oxal_service>f26)"
              "</support_oxal_service><friendly_name>f27</friendly_name><auth_info>f28</auth_info>"
              "<additional_info>f29</additional_info><cycle_time>-2147483648</cycle_time>"
              "<cycle_acquisition>f30</cycle_acquisition><regist_printer>f31</regist_printer>"
              "</printer></printer_list></mngprinter>",
              WithoutLayout(ReadFile(m_file)));
    printer.SetPortType("Bonjour");
    printer.SetExistTrackingName(false);
    Write({printer});
    EXPECT_NE(std::string::npos, ReadFile(m_file).find(R"(nic_index="-1">f24</port>)"));
    EXPECT_EQ(0U, Write({}));
    EXPECT_EQ(ReadFile(CorePlugin() + "/Contents/Resources/xmls/PrinterListBase.xml"),
              ReadFile(m_file));
}

// The texts are kept as they are known: the list is called bntinfo, a name and the port otherwise
// than in the file.
TEST_F(PrinterList, WhatFailsIsNamed) {
    ExpectFaults(R"(step CreatePrinterListFile
CreateDocByFile 1 OpenXml() PATH=/xmls/PrinterListBase.xml
tag 35 SearchParentElement(bntinfo) errCode=2
GetFirstChild 1 SearchParentElement(bntinfo) errCode=4711
tag 36  m_XmlTagIDs.end()
CreateElement 1  <printer>
tag 37  find <lang name>
CreateElementWithValue 1  CreateElementWithValue <lang name>
tag 190  find <lang ATTR>
SetAttribute 1  SetAttribute <lang ATTR>
values 2 38 model_name 39 serial_number 40 mac_address
tag 41  find <port type>
CreateElementWithValue 5  CreateElementWithValue <port type>
tag 191  find <port type ATTR>
SetAttribute 2  SetAttribute <port type ATTR>
tag 199  find <port location_id ATTR>
SetAttribute 3  SetAttribute <port location_id ATTR>
tag 200  find <port nic_index ATTR>
SetAttribute 4  SetAttribute <port nic_index ATTR>
values 6 42 support_oxal_service 43 friendly_name 44 auth_info 45 additional_info 46 cycle_time
values 11 47 cycle_acquisition 48 regist_printer)",
                 [&] { EXPECT_EQ(NOT_WRITTEN, Write({Bonjour()})); });
    m_xml.m_XmlTagIDs.erase(37);
    EXPECT_EQ(WRITING + " find <lang name>\n", Printed([&] { Write({CCommonPrinterInfo()}); }));
    EXPECT_EQ(Texts{}, Logged());
}

TEST_F(PrinterList, ATrackingNameOrHostNameThatCannotBeWrittenIsLeftOut) {
    const std::string log = "CommonXmlPxd: " + WRITING;
    const struct {
        int call;  // of SetAttribute
        unsigned int tag;
        const char* attribute;
        Texts failed, unknown;  // what is logged
    } rows[] = {
        {5, 201, " tracking_name=\"T\"", {}, {}},
        {6,
         202,
         " host_name=\"h\"",
         {log + "SetAttribute <port host_name ATTR> 6"},
         {log + "find <host_name ATTR>"}},
    };
    EXPECT_EQ(1U, Write({Bonjour()}));
    const std::string whole = ReadFile(m_file);
    for (const auto& row : rows) {
        CountingParser::Fail("SetAttribute", row.call, 6);
        EXPECT_EQ(1U, Write({Bonjour()}));
        EXPECT_EQ(Replaced(whole, row.attribute, ""), ReadFile(m_file));
        EXPECT_EQ(row.failed, Logged());
        auto taken = m_xml.m_XmlTagIDs.extract(row.tag);
        EXPECT_EQ(1U, Write({Bonjour()}));
        EXPECT_EQ(Replaced(whole, row.attribute, ""), ReadFile(m_file));
        EXPECT_EQ(row.unknown, Logged());
        m_xml.m_XmlTagIDs.insert(std::move(taken));
    }
}

TEST_F(PrinterList, AListIsReadWholeOrNotAtAll) {
    Write({CCommonPrinterInfo(), CCommonPrinterInfo()});
    CountingParser::Fail("GetNextSibling", 13, 6);  // the step to the second printer
    EXPECT_EQ("false null", Read());
    const FailingAllocation failing(sizeof(CCommonXmlPxdElementData),
                                    sizeof(CCommonXmlPxdElementData));
    EXPECT_EQ("false null", Read());
    EXPECT_EQ(Texts{"CommonXmlPxd: new CCommonXmlPxdElementData failed."}, Logged());
}

TEST_F(PrinterList, ADocumentThatCannotBeSavedStaysOpenUntilTheNext) {
    EXPECT_EQ(NOT_WRITTEN, m_xml.CreatePrinterListFile(m_file + "/x", {}));
    EXPECT_EQ(1, CountingParser::LiveDocuments());
    Write({});
    EXPECT_EQ(0, CountingParser::LiveDocuments());
}

TEST_F(PrinterList, OnlyNamesMayHoldWhatXmlCannot) {
    CCommonPrinterInfo named;
    named.SetPrinterName("a\x01\0b"s, 0);
    EXPECT_EQ(1U, Write({named}));
    EXPECT_EQ("true a\uFFFD\uFFFDb", Read(0));
    for (const std::string& bad : {"\x01"s, "\0"s, "\xFF"s}) {
        for (const PrinterText& text : PRINTER_TEXTS) {
            CCommonPrinterInfo printer;
            (printer.*text.set)(bad);
            EXPECT_EQ(NOT_WRITTEN, Write({named, printer}));
        }
        named.SetLanguage(bad, 0);
        EXPECT_EQ(NOT_WRITTEN, Write({named}));
    }
}

TEST_F(PrinterList, WhatIsRead) {
    constexpr size_t MODEL = 20, PORT = 23, TOLD = 32, TICK = 35;
    const auto list = [](const std::string& printers) {
        return "<printer_list>" + printers + "</printer_list>";
    };
    const auto printer = [&](const std::string& text) {
        return list("<printer>" + text + "</printer>");
    };
    const struct {
        std::string text;
        size_t field;
        const char* outcome;
    } rows[] = {
        {"<app_info/>", MODEL, "false kept"},
        {"<app_info/>" + list(""), MODEL, "true kept"},
        {list("<printer><model_name>A</model_name></printer><printer/><printer/>"), MODEL,
         "true A  "},
        // A printer in a printer is counted, and not met; what follows a printer is taken for one.
        {printer("<printer/>"), MODEL, "true null"},
        {list("<printer/>" + list("<model_name>L</model_name>") + "<printer/>"), MODEL, "true  L"},
        {list("<printer/><printer><strange/></printer>"), MODEL, "false null"},
        {printer("<port type='bonjour'>1</port>"), PORT, "true "},
        {printer("<port host_name='h' type='bonjour'>1</port>"), PORT, "true h"},
        {printer("<port host_name='h' type='ipv4'>1</port>"), PORT, "true 1"},
        {printer("<port/>"), TOLD, "true false"},
        {printer("<port tracking_name=''/>"), TOLD, "true true"},
        {printer("<cycle_time> +7x</cycle_time>"), TICK, "true 7"},
        {printer("<name/><name lang='de'>N</name>"), 3, "true de"},
        {printer("<name x='q' lang='de'/>"), 1, "true "},
        {printer("<name/><name/><name/><name/><name/><name/><name/><name/><name/><name>N</name>"
                 "<name>eleventh</name>"),
         18, "true N"},
    };
    for (const auto& row : rows) {
        WriteFile(m_file, "<mngprinter>" + row.text + "</mngprinter>");
        EXPECT_EQ(row.outcome, Read(row.field)) << row.text.substr(0, 200);
    }
    // Elements that a caller made up may lack anything.
    CCommonPrinterInfo kept = FilledPrinter("f");
    m_xml.SetPrinterData({"name", {}, 37, {"", "lang"}, {190, 190}, {"x", "de"}, nullptr}, kept);
    EXPECT_EQ("|f2", PrinterFields(kept)[0] + "|" + PrinterFields(kept)[1]);
    EXPECT_FALSE(m_xml.GetPrinterList(m_file, nullptr));
}

}  // namespace
