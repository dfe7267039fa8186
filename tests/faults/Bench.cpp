#include "tests/faults/Bench.h"

#include <filesystem>
#include <stdexcept>
#include <utility>

#include "CostCountCommon/CMLibLogger.h"
#include "compatible/osFree.h"
#include "tests/support/PrinterRecords.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* PARSER_LINK = "./parser";

Records RecordsWith(const std::string& text, const std::string& number, int items) {
    CCommonPrinterInfo printer = FilledPrinter(text);
    printer.SetExistTrackingName(false);  // one that cannot be written is deliberately passed over
    Records made{text, number, {}, {}, {}};
    for (int i = 0; i < items; ++i) {
        made.printers.push_back(printer);
        made.costs.m_InkList.push_back({text, text, text});
        made.costs.m_MediaList.push_back({text, text, text, text, text, text, text});
        made.costs.m_ExtraList.push_back({text, {{"en", text}}, text, text});
        made.caps.m_InkList.push_back({text, text, text});
        made.caps.m_MediaTypeList.push_back({text, {{"en", text}}});
        made.caps.m_MediaSizeList.push_back({text, text});
    }
    return made;
}

}  // namespace

Bench::Bench(const char* parser, int count)
    : items(count),
      records{RecordsWith("a text of the first state", "1", count),
              RecordsWith("another text", "2", count)} {
    fs::current_path(folder.Path());
    fs::permissions(".", fs::perms(0755));
    for (const char* made : {"App.app/Contents/PlugIns", "target", "config/Norvane/Tallyquist",
                             GROUP_FOLDER, LOCAL_FOLDER "/Cost", LOCAL_FOLDER "/PrinterCaps"}) {
        fs::create_directories(made);
    }
    for (const char* link : {"Resources", "PlugIns/qvtrelCore.plugin",
                             "PlugIns/qvtrelExporter.plugin", "PlugIns/zopmekLogger.plugin"}) {
        fs::create_symlink(fs::path(BUILT_CONTENTS) / link, fs::path(contents) / link);
    }
    fs::create_symlink(parser, contents + "/PlugIns/zopmekxmlpxd.plugin");
    fs::create_symlink(parser, PARSER_LINK);
    // The retry settings are those of the installed copy, so that messages are the same from both.
    WriteFile(GROUP_FOLDER "/CMSystemSetting.cfg",
              "<cmsystem><CMServiceName>own</CMServiceName><UsbRetryCount>3</UsbRetryCount>"
              "<MaxDetch>1</MaxDetch></cmsystem>");
    // Nothing that stays loaded is to be loaded or unloaded by a run.
    for (const char* module : {PARSER_LINK, LOGGER_MODULE, EXPORTER_PLUGIN}) {
        if (LoadLibrary(module) == nullptr) {
            throw std::runtime_error(std::string(module).append(" cannot be loaded"));
        }
    }
    CCMLibLogger::getInstance()->InitLibLogger(folder.Path("library.log"), "o", "m", LOGGER_MODULE);
    exporter.initLibLogger(exporter.getInstance(), folder.Path("exporter.log"), "o", "m",
                           LOGGER_MODULE);
    Begin();
    xml->CreateBNTRequestCommand(&command, BNTCOMMAND_REQUEST_START, BNTCOMMAND_HIGH, true, 1, "e");
    xml->CreateBNTRetCommand(&reply, BNTCMDRET_OK, "parameter");
    xml->CreateResultCommand(&result, records[0].printers.front(), 1, true, false, true);
    End();
}

void Bench::Begin() {
    Forget();
    name = "file";
    out = "earlier";
    if (!xml.emplace().InitializeXmlPxd("CMSystemSetting.cfg", "/", PARSER_LINK, false)) {
        throw std::runtime_error("the parser plug-in cannot be bound");
    }
    root = xml->OpenXml(fs::path(BUILT_CONTENTS) / "PlugIns/qvtrelCore.plugin/Contents/Resources" /
                            "xmls/DBSettingBase.xml",
                        &document);
}

void Bench::End() {
    std::string copied;
    xml->GetElementValueWithSearch(root, XMLTAG_DB_JOBLOGDB_PATH, true, &copied, &err);
    out += copied;
    while (printers != nullptr) {
        for (const std::string& field : PrinterFields(*printers)) {
            out.append(field).append("|");
        }
        delete std::exchange(printers, printers->GetNextPrinterInfo());
    }
    xml->DeleteNode(root);
    xml->CloseXml(document);
    xml.reset();
    // A semaphore's name outlives the process, so one that is left is lost for good.
    for (const std::string& left : {lockName, CEventHandle::FullNameOf(eventName)}) {
        if (CEventHandle().Open(left.c_str(), 0)) {
            out = "a name was left";
        }
    }
}

void Bench::Forget() {
    for (std::string* text : {&name, &out, &second}) {
        std::exchange(*text, {});  // an assignment would keep the memory
    }
    std::exchange(parsed, {});
    std::exchange(costs, {});
    std::exchange(caps, {});
    std::exchange(settings, {});
}

std::string Bench::Value() const {
    std::string value = out;
    for (const std::string& text :
         {second, parsed.m_MessageType, parsed.m_MessagePriority, parsed.m_ProcessId,
          parsed.m_PrinterId, parsed.m_UsbRetryCount, parsed.m_EventName}) {
        value.append("|").append(text);
    }
    return value;
}
