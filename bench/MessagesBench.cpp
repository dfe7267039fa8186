// Building a get command and parsing it through the library, against the same done directly on the
// parser library that the XML parser plug-in is built on.
//
// Usage: bench_messages [Google Benchmark's options]. Files go to $TMPDIR, else /tmp.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <utility>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/CommonXMLPxd.h"
#include "bench/Bench.h"
#include "bench/RatioReporter.h"

namespace {

namespace fs = std::filesystem;

constexpr std::pair<const char*, std::string CBntCommandValue::*> TEXTS[] = {
    {"massagetype", &CBntCommandValue::m_MessageType},
    {"massagepriority", &CBntCommandValue::m_MessagePriority},
    {"processid", &CBntCommandValue::m_ProcessId},
    {"printerid", &CBntCommandValue::m_PrinterId},
    {"iftype", &CBntCommandValue::m_IfType},
    {"address", &CBntCommandValue::m_Address},
    {"password", &CBntCommandValue::m_Password},
    {"usbretry_count", &CBntCommandValue::m_UsbRetryCount},
    {"usbretry_interval", &CBntCommandValue::m_UsbRetryInterval},
    {"commuretry_count", &CBntCommandValue::m_CommuRetryCount},
    {"commuretry_interval", &CBntCommandValue::m_CommuRetryInterval},
    {"event_name", &CBntCommandValue::m_EventName}};

bool AreSame(const CBntCommandValue& a, const CBntCommandValue& b) {
    return a.m_IsReply == b.m_IsReply && a.m_LocationId == b.m_LocationId &&
           a.m_NicIndex == b.m_NicIndex &&
           std::all_of(std::begin(TEXTS), std::end(TEXTS),
                       [&](const auto& text) { return a.*text.second == b.*text.second; });
}

struct Layer {
    std::string Build(CCommonPrinterInfo& printer) {
        std::string message;
        xml.CreateBNTGetCommand(&message, BNTCOMMAND_HIGH, printer, 4711);
        return message;
    }
    CBntCommandValue Parse(const std::string& message) {
        CBntCommandValue command;
        unsigned int err = 0;
        xml.ParseBNTCommand(command, reinterpret_cast<const unsigned char*>(message.data()),
                            message.size(), &err);
        return command;
    }

    CCommonXmlPxd xml;
};

struct Direct {
    std::string Build(const CCommonPrinterInfo& printer) const {
        pugi::xml_document document, settings;
        document.load_file(base.c_str());
        settings.load_file(settingsFile.c_str());
        const pugi::xml_node root = document.document_element();
        const pugi::xml_node system = settings.document_element();
        std::string text[4];
        printer.GetSerialNumber(&text[0]);
        printer.GetPortType(&text[1]);
        printer.GetPortNumber(&text[2]);
        printer.GetAuthInfo(&text[3]);
        const char* const texts[] = {"get",
                                     "high",
                                     "4711",
                                     text[0].c_str(),
                                     text[1].c_str(),
                                     text[2].c_str(),
                                     text[3].c_str(),
                                     system.child_value("UsbRetryCount"),
                                     system.child_value("UsbRetryInterval"),
                                     system.child_value("CommuRetryCount"),
                                     system.child_value("CommuRetryInterval")};
        for (size_t i = 0; i < std::size(texts); ++i) {
            root.child(TEXTS[i].first).text().set(texts[i]);
        }
        root.child("location_id").text().set(printer.GetLocationId());
        root.child("nic_index").text().set(printer.GetNicIndex());
        std::ostringstream message;
        document.save(message, "    ");
        return message.str();
    }
    CBntCommandValue Parse(const std::string& message) const {
        pugi::xml_document document;
        document.load_buffer(message.data(), message.size());
        const pugi::xml_node root = document.document_element();
        CBntCommandValue c;
        for (const auto& [name, text] : TEXTS) {
            c.*text = root.child_value(name);
        }
        c.m_IsReply = root.child("isreply").text().as_int() == 1;
        c.m_LocationId = root.child("location_id").text().as_int();
        c.m_NicIndex = root.child("nic_index").text().as_int();
        return c;
    }

    std::string base, settingsFile;
};

template <typename Way>
void Register(const std::string& suffix, Way& way, CCommonPrinterInfo& printer,
              const std::string& message) {
    const auto add = [&](const char* name, auto run) {
        benchmark::RegisterBenchmark((name + suffix).c_str(), [run](auto& state) {
            for ([[maybe_unused]] auto _ : state) {
                benchmark::DoNotOptimize(run());
            }
        });
    };
    add("build", [&] { return way.Build(printer); });
    add("parse", [&] { return way.Parse(message); });
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    const std::string data = Path("data");
    setenv("TALLYQUIST_CONTENTS", BUILT_CONTENTS, 1);
    setenv("XDG_DATA_HOME", data.c_str(), 1);
    std::string folder;
    CCommonUtility::GetDataFolderBase(MANAGEMENT_DATA_SYSTEM_SETTING, &folder);
    fs::create_directories(folder);
    fs::copy(BUILT_CONTENTS "/Resources/CMSystemSetting.cfg", folder);

    CCommonPrinterInfo printer;
    printer.SetSerialNumber("XB100000");
    printer.SetPortType("ipv4");
    printer.SetPortNumber("192.0.2.17");
    printer.SetAuthInfo("R&D <second floor>");
    printer.SetLocationId(0x14100000);
    printer.SetNicIndex(2);
    Layer layer;
    const Direct direct{BUILT_CONTENTS
                        "/PlugIns/qvtrelCore.plugin/Contents/Resources/xmls/BNTCmdBase.xml",
                        folder + "/CMSystemSetting.cfg"};
    const bool isBound = layer.xml.InitializeXmlPxd("CMSystemSetting.cfg", "/", XML_PARSER, false);
    const std::string message = layer.Build(printer);
    const CBntCommandValue command = layer.Parse(message);
    if (!isBound || command.m_CommuRetryInterval.empty() ||
        !AreSame(command, direct.Parse(message)) ||
        !AreSame(command, direct.Parse(direct.Build(printer)))) {
        Fail("the library and the parser library build or parse different things");
    }
    Register("/work", layer, printer, message);
    Register("/limit", direct, printer, message);
    RatioReporter reporter({{"build", 8}, {"parse", 8}});
    benchmark::RunSpecifiedBenchmarks(&reporter);
    fs::remove_all(data);
    return 0;
}
