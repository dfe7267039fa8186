// Reading and saving a large printer list through the XML layer and its parser plug-in, against the
// same done directly on the parser library that the plug-in is built on.
//
// Usage: bench_xml_layer [Google Benchmark's options]. Files go to $TMPDIR, else /tmp.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <utility>

#include "CostCountCommon/CommonXMLPxd.h"
#include "bench/Bench.h"
#include "bench/RatioReporter.h"

namespace {

constexpr int ELEMENTS = 50'000;
constexpr int ELEMENTS_PER_PRINTER = 14;

void Append(pugi::xml_node parent, const char* name, const std::string& text) {
    parent.append_child(name).text().set(text.c_str());
}

void AppendPrinter(pugi::xml_node list, int number) {
    const std::string digits = std::to_string(100'000 + number);
    pugi::xml_node printer = list.append_child("printer");
    for (const char* language : {"en", "ja"}) {
        pugi::xml_node name = printer.append_child("name");
        name.append_attribute("lang") = language;
        name.text().set(std::string("Plotter in room ").append(digits).c_str());
    }
    Append(printer, "model_name", "Large format 44 inch");
    Append(printer, "serial_number", std::string("XB").append(digits));
    Append(printer, "mac_address", "00:00:5e:00:53:af");
    pugi::xml_node port = printer.append_child("port");
    port.text().set(std::string("192.0.2.").append(std::to_string(number % 250)).c_str());
    port.append_attribute("type") = "ipv4";
    port.append_attribute("location_id") = number;
    port.append_attribute("nic_index") = 0;
    Append(printer, "support_oxal_service", "joblog,status,media");
    Append(printer, "friendly_name", std::string("Plotter ").append(digits));
    Append(printer, "auth_info", "");
    Append(printer, "additional_info", "R&D, <second> floor");
    Append(printer, "cycle_time", "3600");
    Append(printer, "cycle_acquisition", "1");
    Append(printer, "regist_printer", "1");
}

void WritePrinterList(const std::string& path) {
    pugi::xml_document document;
    pugi::xml_node root = document.append_child("mngprinter");
    root.append_attribute("version") = "1.0";
    root.append_child("app_info").append_attribute("version") = "1.0";
    pugi::xml_node list = root.append_child("printer_list");
    for (int number = 0; number < ELEMENTS / ELEMENTS_PER_PRINTER; ++number) {
        AppendPrinter(list, number);
    }
    if (!document.save_file(path.c_str(), "  ")) {
        Fail("cannot write " + path);
    }
}

using Chain = CCommonXmlPxdElementData*;

// What a reader takes out of a chain; both ways must come to the same.
size_t Digest(const CCommonXmlPxdElementData* record) {
    size_t digest = 0;
    const auto add = [&digest](const std::string& text) {
        digest = digest * 31 + std::hash<std::string>{}(text);
    };
    for (; record != nullptr; record = record->m_Next) {
        add(record->m_Name);
        for (const auto* texts :
             {&record->m_Values, &record->m_AttributeNames, &record->m_AttributeValues}) {
            for (const std::string& text : *texts) {
                add(text);
            }
        }
    }
    return digest;
}

// Through the XML layer.
class Layer : public CCommonXmlPxd {
public:
    explicit Layer(const std::string& path) {
        if (!InitializeXmlPxd("settings", "/", XML_PARSER, false) ||
            (m_top = OpenXml(path, &m_opened)) == nullptr) {
            Fail("the layer cannot open " + path);
        }
    }
    ~Layer() {
        DeleteNode(m_top);
        CloseXml(m_opened);
    }
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    // Gives every printer's chain to `use`.
    template <typename Use>
    void ReadPrinters(Use use) {
        unsigned int err = 0;
        void* list = SearchParentElement(m_top, XMLTAG_PRN_PRINTER_LIST, &err);
        void* printer = SearchParentElement(list, XMLTAG_PRN_PRINTER, &err);
        DeleteNode(list);
        while (printer != nullptr) {
            Chain first = nullptr;
            void* port = SearchParentElement(printer, XMLTAG_PRN_PORT, &err);
            if (!GetElements(printer, &first, &err) || port == nullptr) {
                Fail("the layer cannot read a printer");
            }
            use(first);
            releaseElementData(first);
            DeleteNode(port);
            void* next = m_FunctionsXmlPxd->GetNextSibling(printer, &err);
            DeleteNode(printer);
            printer = next;
        }
    }

    void Save(const std::string& path) {
        if (m_FunctionsXmlPxd->Save(m_opened, path.c_str()) != XMLPXD_OK) {
            Fail("the layer cannot save " + path);
        }
    }

private:
    void* m_opened = nullptr;
    void* m_top = nullptr;
};

// Directly on the parser library.
class Direct {
public:
    explicit Direct(const std::string& path) {
        if (!m_document.load_file(path.c_str())) {
            Fail("the parser library cannot open " + path);
        }
    }

    template <typename Use>
    void ReadPrinters(Use use) const {
        const pugi::xml_node list = m_document.document_element().child("printer_list");
        for (const pugi::xml_node printer : list.children("printer")) {
            Chain first = Elements(printer);
            if (!printer.child("port")) {
                Fail("a printer has no port");
            }
            use(first);
            while (first != nullptr) {
                delete std::exchange(first, first->m_Next);
            }
        }
    }

    void Save(const std::string& path) const {
        if (!m_document.save_file(path.c_str(), "  ")) {
            Fail("the parser library cannot save " + path);
        }
    }

private:
    static Chain Elements(pugi::xml_node parent) {
        Chain first = nullptr;
        Chain* end = &first;
        for (const pugi::xml_node element : parent.children()) {
            auto record = std::make_unique<CCommonXmlPxdElementData>();
            record->m_Name = element.name();
            record->m_Values.emplace_back(element.child_value());
            for (const pugi::xml_attribute attribute : element.attributes()) {
                record->m_AttributeNames.emplace_back(attribute.name());
                record->m_AttributeValues.emplace_back(attribute.value());
            }
            *end = record.release();
            end = &(*end)->m_Next;
        }
        return first;
    }

    pugi::xml_document m_document;
};

template <typename Reader>
size_t DigestOfAll(Reader&& reader) {
    size_t digest = 0;
    reader.ReadPrinters([&digest](Chain first) { digest = digest * 31 + Digest(first); });
    return digest;
}

template <typename Reader>
void Register(const std::string& suffix, Reader& reader) {
    benchmark::RegisterBenchmark(("read" + suffix).c_str(), [&reader](auto& state) {
        for ([[maybe_unused]] auto _ : state) {
            reader.ReadPrinters([](Chain first) { benchmark::DoNotOptimize(first); });
        }
    });
    benchmark::RegisterBenchmark(("save" + suffix).c_str(), [&reader, suffix](auto& state) {
        const std::string path = Path(suffix.c_str() + 1);
        for ([[maybe_unused]] auto _ : state) {
            reader.Save(path);
        }
        std::remove(path.c_str());
    });
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    const std::string path = Path("list");
    WritePrinterList(path);
    Layer layer(path);
    const Direct direct(path);
    layer.Save(path);
    const bool same = DigestOfAll(layer) == DigestOfAll(direct) &&
                      DigestOfAll(Direct(path)) == DigestOfAll(direct);
    std::remove(path.c_str());
    if (!same) {
        Fail("the layer and the parser library read different things");
    }
    Register("/work", layer);
    Register("/limit", direct);
    RatioReporter reporter({{"read", 6}, {"save", 2}});
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
