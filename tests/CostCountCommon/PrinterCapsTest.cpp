#include "tests/CostCountCommon/DataFileFixture.h"

namespace {

struct Caps {
    using Record = CCommonXmlPxdDataPrinterCaps;
    static constexpr const char* PLACE = "data/Norvane/Tallyquist/PrinterCaps/a";
    static constexpr unsigned int NOT_MADE = 0;  // deliberately as if all were well

    template <typename Next>
    static Record Filled(Next next) {
        return {
            {{next(), next(), next()}}, {{next(), {{"en", next()}}}}, {{next(), next()}}, next()};
    }
    static unsigned int Write(CCommonXmlPxd& xml, std::string& name, const Record& caps) {
        return xml.CreatePrinterCapsFile(name, caps);
    }
    static bool Read(CCommonXmlPxd& xml, std::string& name, Record& caps) {
        return xml.GetPrinterCaps(name, caps);
    }
};

class PrinterCaps : public DataFile<Caps> {};

const std::string HEAD = R"(<?xml version="1.0" encoding="UTF-8"?><printercaps version="1.0">)";
const std::string INK = "<Ink><InkID>1</InkID><InkColor>2</InkColor><InkTank>3</InkTank></Ink>";
const std::string CAPS =
    HEAD + "<InkList>" + INK +
    R"(</InkList><MediaTypeList><MediaType>)"
    R"(<MediaTypeID>4</MediaTypeID><MediaTypeName lang="en">5</MediaTypeName></MediaType></MediaTypeList>)"
    R"(<MediaSizeList><MediaSize><MediaSizeID>6</MediaSizeID><MediaSizeName>7</MediaSizeName></MediaSize>)"
    R"(</MediaSizeList><DispUnknownJoblog>8</DispUnknownJoblog></printercaps>)";

TEST_F(PrinterCaps, SurviveTheTripThroughTheFile) {
    ExpectTrips(CAPS, 5,
                HEAD + R"(<InkList/><MediaTypeList/><MediaSizeList/><DispUnknownJoblog/>)"
                       R"(</printercaps>)");
}

// The texts are kept as they are known: media sizes speak as media types.
TEST_F(PrinterCaps, AreWrittenWholeOrNotAtAll) {
    ExpectWritingFaults(CAPS, R"(step CreatePrinterCapsFile
CreateDocByFile 1 OpenXml() PATH=/xmls/PrinterCapsBase.xml
tag 63 SearchParentElement(XMLTAG_ID_PRINTERCAPS_DISPUNKNOWNJOBLOG)
SetElementValue 1 SetElementValue() out_errCode = 4711
step CreatePrinterCapsFile_Ink CreatePrinterCapsFile() ERROR: CreatePrinterCapsFile_Ink()
write PRINTERCAPS_INKLIST 50 51 1 Ink
values 1 52 InkID 53 InkColor 54 InkTank
step CreatePrinterCapsFile_MediaTypeList CreatePrinterCapsFile() ERROR: CreatePrinterCapsFile_MediaTypeList()
write PRINTERCAPS_MEDIATYPELIST 55 56 2 MediaType
values 4 57 MediaTypeID
tag 58  find <MediaTypeName >
CreateElementWithValue 5  CreateElementWithValue <MediaTypeName>
tag 190  find <lang ATTR>
SetAttribute 1  SetAttribute <lang ATTR>
step CreatePrinterCapsFile_MediaTypeList CreatePrinterCapsFile() ERROR: CreatePrinterCapsFile_MediaSizeList()
write PRINTERCAPS_MEDIASIZELIST 59 60 3 MediaSize
values 6 61 MediaSizeID 62 MediaSizeName)");
}

TEST_F(PrinterCaps, TellWhatCannotBeRead) {
    EXPECT_EQ("CCommonXmlPxd::GetPrinterCaps() ERROR: OpenXml() PATH=" + m_file + "\n",
              Printed([&] { EXPECT_FALSE(Read()); }));
    ExpectReadingFaults(CAPS, R"(step GetPrinterCaps
missing PRINTERCAPS 63 DISPUNKNOWNJOBLOG
step GetPrinterCaps_Ink GetPrinterCaps() ERROR: GetPrinterCaps_Ink()
read PRINTERCAPS_INKLIST 50 51 2 Ink
missing PRINTERCAPS 52 INKID 54 INKTANK
GetAllChildElements 1 GetElements()
step GetPrinterCaps_MediaTypeList GetPrinterCaps() ERROR: GetPrinterCaps_MediaTypeList()
read PRINTERCAPS_MEDIATYPELIST 55 56 4 MediaType
missing PRINTERCAPS 57 MEDIATYPEID
GetAllChildElements 2 GetElements()
step GetPrinterCaps_MediaTypeList GetPrinterCaps() ERROR: GetPrinterCaps_MediaSizeList()
GetElementsByElementName 6  GetElementsByElementName()
step GetPrinterCaps_MediaSizeList GetPrinterCaps() ERROR: GetPrinterCaps_MediaSizeList()
gone 59 SearchParentElement(XMLTAG_ID_PRINTERCAPS_MEDIASIZELIST)
tag 60  find <MediaSize>
gone 60  GetElementNumber()
missing PRINTERCAPS 61 MEDIASIZEID
GetAllChildElements 3 GetElements())");
    EXPECT_EQ((Texts{"CommonXmlPxd: new PNODE[] failed. inkElementNum[1]",
                     "CommonXmlPxd: new PNODE[] failed. mediaTypeElementNum[1]",
                     "CommonXmlPxd: new PNODE[] failed. mediaSizeElementNum[1]"}),
              LoggedWithoutMemory(CAPS));
}

TEST_F(PrinterCaps, ValuesMayBeMissingOrRepeated) {
    const std::string noTank = "<Ink><InkID>0</InkID></Ink>";
    const std::string tank = "<Ink><InkID>0</InkID><InkColor/><InkTank>3</InkTank></Ink>";
    const std::string color = "<InkColor>2</InkColor>";
    const std::string size = "<MediaSizeName>7</MediaSizeName>";
    const std::string type = R"(<MediaTypeName lang="en">5</MediaTypeName>)";
    ExpectRules(CAPS, {{color, "", "<InkColor/>", true},
                       {color, "<InkColor>x</InkColor>" + color, color, true},
                       {INK, noTank + INK, tank + INK, true},
                       {INK, INK + noTank, INK, false},
                       {size, "", "<MediaSizeName/>", true},
                       {size, "<MediaSizeName>x</MediaSizeName>" + size, size, true},
                       {type, type + "<MediaTypeName lang='en'/><MediaTypeName key='de'/>",
                        R"(<MediaTypeName lang="de"/>)" + type, true}});
}

TEST_F(PrinterCaps, AreReadOneAfterTheOther) {
    const OpenedText text(m_xml,
                          "<printercaps><InkList><Ink><InkID>1</InkID><InkTank/></Ink><Media/>"
                          "</InkList><MediaTypeList><MediaType><MediaTypeID/></MediaType>"
                          "</MediaTypeList></printercaps>");
    unsigned int err = 77;
    const auto read = [&](void* node, bool first, unsigned int tag) {
        CCommonXmlPxdElementData* elements = nullptr;
        EXPECT_EQ(m_xml.GetPrinterCapsElements(node, first, tag, &elements, &err), elements);
        std::string names;
        for (const auto* element = elements; element != nullptr; element = element->m_Next) {
            names.append(element->m_Name);
        }
        m_xml.releaseElementData(elements);
        return names;
    };
    EXPECT_EQ("InkIDInkTank", read(text.Root(), true, 51));
    EXPECT_EQ("MediaTypeID", read(text.Root(), true, 56));
    EXPECT_EQ("", read(text.Root(), true, 52));
    EXPECT_EQ(2U, err);
    const XmlNode tank = m_xml.Own(m_xml.SearchElement(text.Root(), 54, &err));
    EXPECT_EQ("", read(tank.Get(), false, 51));
    EXPECT_EQ(0U, err) << "none follows, which is no error";
}

}  // namespace
