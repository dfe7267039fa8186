// Writing and reading a list of 100,000 printers through the library, against the same done
// directly on the parser library that the XML parser plug-in is built on.
//
// Usage: bench_data_files [Google Benchmark's options]. Files go to $TMPDIR, else /tmp.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <list>
#include <pugixml.hpp>
#include <string>
#include <utility>

#include "CostCountCommon/CommonXMLPxd.h"
#include "bench/Bench.h"
#include "bench/RatioReporter.h"

namespace {

constexpr int PRINTERS = 100'000;

using Printers = std::list<CCommonPrinterInfo>;

Printers MakePrinters() {
    Printers printers;
    for (int number = 0; number < PRINTERS; ++number) {
        CCommonPrinterInfo& printer = printers.emplace_back();
        const std::string digits = std::to_string(100'000 + number);
        printer.SetPrinterName(std::string("Plotter in room ").append(digits), 0);
        printer.SetLanguage("en", 0);
        printer.SetPrinterName(std::string("Plotter, Raum ").append(digits), 1);
        printer.SetLanguage("de", 1);
        printer.SetModelName("Large format 44 inch");
        printer.SetSerialNumber(std::string("XB").append(digits));
        printer.SetMacAddress("00:00:5e:00:53:af");
        printer.SetPortType("ipv4");
        printer.SetPortNumber(std::string("192.0.2.").append(std::to_string(number % 250)));
        printer.SetLocationId(static_cast<unsigned int>(number));
        printer.SetOXALServices("joblog,status,media");
        printer.SetFriendlyName(std::string("Plotter ").append(digits));
        printer.SetAdditionalInfo("R&D, <second> floor");
        printer.SetPrinterTick(3600);
        printer.SetPrinterCycleAcquisition("1");
        printer.SetRegist("1");
    }
    return printers;
}

// Records are handed over as a chain by both ways.
class Chain {
public:
    explicit Chain(CCommonPrinterInfo* first) : m_first(first) {}
    ~Chain() {
        while (m_first != nullptr) {
            delete std::exchange(m_first, m_first->GetNextPrinterInfo());
        }
    }
    Chain(const Chain&) = delete;
    Chain& operator=(const Chain&) = delete;

    const CCommonPrinterInfo* First() const { return m_first; }

private:
    CCommonPrinterInfo* m_first;
};

class Layer {
public:
    explicit Layer(const char* parser) {
        if (!m_xml.InitializeXmlPxd("settings", "/", parser, false)) {
            Fail("cannot load the XML parser plug-in");
        }
    }

    void Write(const Printers& printers, const std::string& path) {
        if (m_xml.CreatePrinterListFile(path, printers) != PRINTERS) {
            Fail("the library cannot write " + path);
        }
    }

    CCommonPrinterInfo* Read(const std::string& path) {
        CCommonPrinterInfo* first = nullptr;
        if (!m_xml.GetPrinterList(path, &first)) {
            Fail("the library cannot read " + path);
        }
        return first;
    }

private:
    CCommonXmlPxd m_xml;
};

// What the file says of a text, in the order of the elements.
struct DirectText {
    const char* element;
    void (CCommonPrinterInfo::*get)(std::string*) const;
    void (CCommonPrinterInfo::*set)(std::string);
};

constexpr DirectText BEFORE_PORT[] = {
    {"model_name", &CCommonPrinterInfo::GetModelName, &CCommonPrinterInfo::SetModelName},
    {"serial_number", &CCommonPrinterInfo::GetSerialNumber, &CCommonPrinterInfo::SetSerialNumber},
    {"mac_address", &CCommonPrinterInfo::GetMacAddress, &CCommonPrinterInfo::SetMacAddress},
};
constexpr DirectText AFTER_PORT[] = {
    {"support_oxal_service", &CCommonPrinterInfo::GetOXALServices,
     &CCommonPrinterInfo::SetOXALServices},
    {"friendly_name", &CCommonPrinterInfo::GetFriendlyName, &CCommonPrinterInfo::SetFriendlyName},
    {"auth_info", &CCommonPrinterInfo::GetAuthInfo, &CCommonPrinterInfo::SetAuthInfo},
    {"additional_info", &CCommonPrinterInfo::GetAdditionalInfo,
     &CCommonPrinterInfo::SetAdditionalInfo},
};
constexpr DirectText AFTER_CYCLE_TIME[] = {
    {"cycle_acquisition", &CCommonPrinterInfo::GetPrinterCycleAcquisition,
     &CCommonPrinterInfo::SetPrinterCycleAcquisition},
    {"regist_printer", &CCommonPrinterInfo::GetRegist, &CCommonPrinterInfo::SetRegist},
};

class Direct {
public:
    static void Write(const Printers& printers, const std::string& path) {
        pugi::xml_document document;
        pugi::xml_node root = document.append_child("mngprinter");
        root.append_attribute("version") = "1.0";
        root.append_child("app_info").append_attribute("version") = "1.0";
        pugi::xml_node list = root.append_child("printer_list");
        for (const CCommonPrinterInfo& printer : printers) {
            WritePrinter(list.append_child("printer"), printer);
        }
        if (!document.save_file(path.c_str(), "    ")) {
            Fail("the parser library cannot write " + path);
        }
    }

    static CCommonPrinterInfo* Read(const std::string& path) {
        pugi::xml_document document;
        if (!document.load_file(path.c_str())) {
            Fail("the parser library cannot read " + path);
        }
        CCommonPrinterInfo* first = nullptr;
        CCommonPrinterInfo* last = nullptr;
        const pugi::xml_node list = document.document_element().child("printer_list");
        for (const pugi::xml_node printer : list.children("printer")) {
            auto* const record = new CCommonPrinterInfo;
            if (last == nullptr) {
                first = record;
            } else {
                last->SetNextPrinterInfo(record);
            }
            last = record;
            ReadPrinter(printer, *record);
        }
        return first;
    }

private:
    template <size_t N>
    static void WriteTexts(pugi::xml_node element, const DirectText (&rows)[N],
                           const CCommonPrinterInfo& printer) {
        std::string text;
        for (const DirectText& row : rows) {
            (printer.*row.get)(&text);
            element.append_child(row.element).text().set(text.c_str());
        }
    }

    static void WritePrinter(pugi::xml_node element, const CCommonPrinterInfo& printer) {
        std::string text;
        std::string language;
        for (unsigned int slot = 0; slot < CCommonPrinterInfo::NAMES; ++slot) {
            printer.GetPrinterName(&text, slot);
            if (text.empty()) {
                break;
            }
            printer.GetLanguage(&language, slot);
            pugi::xml_node name = element.append_child("name");
            name.text().set(text.c_str());
            name.append_attribute("lang") = language.c_str();
        }
        WriteTexts(element, BEFORE_PORT, printer);
        printer.GetPortNumber(&text);
        pugi::xml_node port = element.append_child("port");
        port.text().set(text.c_str());
        printer.GetPortType(&text);
        port.append_attribute("type") = text.c_str();
        port.append_attribute("location_id") = printer.GetLocationId();
        port.append_attribute("nic_index") = printer.GetNicIndex();
        WriteTexts(element, AFTER_PORT, printer);
        element.append_child("cycle_time").text().set(printer.GetPrinterTick());
        WriteTexts(element, AFTER_CYCLE_TIME, printer);
    }

    template <size_t N>
    static void ReadTexts(pugi::xml_node element, const DirectText (&rows)[N],
                          CCommonPrinterInfo& printer) {
        for (const DirectText& row : rows) {
            (printer.*row.set)(element.child_value(row.element));
        }
    }

    static void ReadPrinter(pugi::xml_node element, CCommonPrinterInfo& printer) {
        unsigned int slot = 0;
        for (const pugi::xml_node name : element.children("name")) {
            printer.SetPrinterName(name.child_value(), slot);
            printer.SetLanguage(name.attribute("lang").value(), slot++);
        }
        ReadTexts(element, BEFORE_PORT, printer);
        const pugi::xml_node port = element.child("port");
        printer.SetPortNumber(port.child_value());
        printer.SetPortType(port.attribute("type").value());
        printer.SetLocationId(port.attribute("location_id").as_uint());
        printer.SetNicIndex(port.attribute("nic_index").as_int());
        ReadTexts(element, AFTER_PORT, printer);
        printer.SetPrinterTick(element.child("cycle_time").text().as_int());
        ReadTexts(element, AFTER_CYCLE_TIME, printer);
    }
};

size_t Digest(const CCommonPrinterInfo* printer) {
    size_t digest = 0;
    const auto add = [&digest](const std::string& text) {
        digest = digest * 31 + std::hash<std::string>{}(text);
    };
    std::string text;
    for (; printer != nullptr; printer = printer->GetNextPrinterInfo()) {
        for (unsigned int slot = 0; slot < CCommonPrinterInfo::NAMES; ++slot) {
            printer->GetPrinterName(&text, slot);
            add(text);
            printer->GetLanguage(&text, slot);
            add(text);
        }
        printer->GetPortType(&text);
        add(text);
        printer->GetPortNumber(&text);
        add(text);
        add(std::to_string(printer->GetLocationId()));
        add(std::to_string(printer->GetNicIndex()));
        add(std::to_string(printer->GetPrinterTick()));
        for (const DirectText& row : BEFORE_PORT) {
            (printer->*row.get)(&text);
            add(text);
        }
        for (const DirectText& row : AFTER_PORT) {
            (printer->*row.get)(&text);
            add(text);
        }
        for (const DirectText& row : AFTER_CYCLE_TIME) {
            (printer->*row.get)(&text);
            add(text);
        }
    }
    return digest;
}

template <typename Way>
void Register(const std::string& suffix, Way& way, const Printers& printers,
              const std::string& path) {
    benchmark::RegisterBenchmark(("write" + suffix).c_str(),
                                 [&way, &printers, suffix](auto& state) {
                                     const std::string target = Path(suffix.c_str() + 1);
                                     for ([[maybe_unused]] auto _ : state) {
                                         way.Write(printers, target);
                                     }
                                     std::remove(target.c_str());
                                 });
    benchmark::RegisterBenchmark(("read" + suffix).c_str(), [&way, &path](auto& state) {
        for ([[maybe_unused]] auto _ : state) {
            const Chain chain(way.Read(path));
            benchmark::DoNotOptimize(chain.First());
        }
    });
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    setenv("TALLYQUIST_CONTENTS", BUILT_CONTENTS, 0);
    const std::string path = Path("list");
    const Printers printers = MakePrinters();
    Layer layer(XML_PARSER);
    Direct direct;
    direct.Write(printers, path);
    const size_t digest = Digest(Chain(direct.Read(path)).First());
    layer.Write(printers, path);
    const bool same = digest == Digest(Chain(layer.Read(path)).First()) &&
                      digest == Digest(Chain(direct.Read(path)).First());
    if (!same) {
        Fail("the library and the parser library read different things");
    }
    Register("/work", layer, printers, path);
    Register("/limit", direct, printers, path);
    RatioReporter reporter({{"read", 6}, {"write", 4}});
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::remove(path.c_str());
    return 0;
}
