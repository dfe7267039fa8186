// Data files, read and written through the counting parser, and tables of faults with what the
// library says of each.
#pragma once

#include <sstream>

#include "tests/CostCountCommon/BoundXml.h"
#include "tests/CostCountCommon/SettingsFixture.h"
#include "tests/support/FailingAllocation.h"

constexpr unsigned int FAILED = 0xFFFFFFFF;

inline std::string Replaced(std::string text, const std::string& part, const std::string& by) {
    return text.replace(text.find(part), part.size(), by);
}

// Without the first element of that name.
inline std::string Without(std::string file, const std::string& name) {
    const size_t start = std::min(file.find("<" + name + " "), file.find("<" + name + ">"));
    const std::string end = "</" + name + ">";
    return file.erase(start, file.find(end, start) + end.size() - start);
}

// With `by` behind each text that is a number.
inline std::string WithNumbersMarked(std::string file, const std::string& by) {
    for (size_t start = file.find('>'); start != std::string::npos; start = file.find('>', start)) {
        const size_t end = file.find_first_not_of("0123456789", ++start);
        if (end != std::string::npos && end != start && file[end] == '<') {
            file.insert(end, by);
        }
    }
    return file;
}

// A file that is read and written through the counting parser.
class FileFixture : public SettingsFixture {
protected:
    explicit FileFixture(const char* place) : m_file(m_folder.Path(place)) {}

    static std::string WithoutLayout(const std::string& xml) {
        std::istringstream lines(xml);
        std::string file;
        for (std::string line; std::getline(lines, line);) {
            const size_t element = line.find_first_not_of(' ');
            const bool isText = element == std::string::npos || line[element] != '<';
            file.append(isText ? "\n" + line : line.substr(element));
        }
        return file;
    }

    // What the steps of an operation print, without what the searches in them print.
    template <typename Operation>
    static std::string Steps(Operation operation) {
        std::istringstream printed(Printed(operation));
        std::string steps;
        for (std::string line; std::getline(printed, line);) {
            if (line.find("SearchParentElement() ERROR: ") == std::string::npos &&
                line.find("(ElementID=") == std::string::npos) {
                steps.append(line).append("\n");
            }
        }
        return steps;
    }

    // A fault is a "tag" that is missing from the catalogue, an element that is "gone" from the
    // file or has one attribute "more", or an entry of the parser whose nth call fails.
    template <typename Operation>
    void ExpectFault(const std::string& fault, unsigned int n, const std::string& printed,
                     Operation operation) {
        const auto tags = m_xml.m_XmlTagIDs;
        const std::string file = ReadFile(m_file);
        const std::string& name = tags.at(n);
        if (fault == "tag") {
            m_xml.m_XmlTagIDs.erase(n);
        } else if (fault == "gone") {
            WriteFile(m_file, Without(file, name));
        } else if (fault == "more") {
            WriteFile(m_file, Replaced(file, "<" + name + " ", "<" + name + " more='' "));
        } else {
            CountingParser::Fail(fault, static_cast<int>(n), 4711);
        }
        EXPECT_EQ(printed, Steps(operation)) << fault << n;
        WriteFile(m_file, file);
        m_xml.m_XmlTagIDs = tags;
        CountingParser::Reset();
    }

    // Each line is one of
    //   step STEP OUTER             begins the lines of a step, after whose faults OUTER is printed
    //   write LIST TAG TAG N ITEM   a list, and items, of which the Nth new element is the first
    //   values N TAG NAME ...       elements of an item, the first by the Nth such call
    //   read LIST TAG TAG N ITEM    a list, and its items, which the Nth such call gives
    //   missing GROUP TAG NAME ...  elements of an item
    //   FAULT N TEXT                what the step prints of it
    template <typename Operation>
    void ExpectFaults(const char* lines, Operation operation) {
        std::string step;
        std::string outer;
        const auto expect = [&](const std::string& fault, unsigned int n, const std::string& text) {
            const std::string inner = "CCommonXmlPxd::" + step + "() ERROR: " + text + "\n";
            ExpectFault(fault, n, (text.empty() ? "" : inner) + outer, operation);
        };
        std::istringstream faults(lines);
        for (std::string line, kind, name, item; std::getline(faults, line);) {
            std::istringstream words(line);
            unsigned int n = 0;
            unsigned int list = 0;
            unsigned int tag = 0;
            words >> kind;
            if (kind == "step") {
                words >> step >> std::ws;
                outer = std::getline(words, name) ? "CCommonXmlPxd::" + name + "\n" : "";
            } else if (kind == "write") {
                words >> name >> list >> tag >> n >> item;
                expect("tag", list, "SearchParentElement(XMLTAG_ID_" + name + ")");
                expect("tag", tag, " m_XmlTagIDs.end()");
                expect("CreateElement", n, " <" + item + ">");
            } else if (kind == "read") {
                words >> name >> list >> tag >> n >> item;
                expect("gone", list, "SearchParentElement(XMLTAG_ID_" + name + ")");
                expect("tag", tag, " find <" + item + ">");
                expect("gone", tag, " GetElementNumber()");
                expect("GetElementsByElementName", n, " GetElementsByElementName()");
            } else if (kind == "values") {
                for (words >> n; words >> tag >> name; ++n) {
                    expect("tag", tag, " find <" + name + ">");
                    expect("CreateElementWithValue", n, " CreateElementWithValue <" + name + ">");
                }
            } else if (kind == "missing") {
                for (words >> item; words >> tag >> name;) {
                    item.append("_").append(name).append(")");
                    expect("gone", tag, "GetElementValueWithSearch(XMLTAG_ID_" + item);
                    item.resize(item.find('_'));
                }
            } else {
                words >> n;
                words.ignore();
                expect(kind, n, std::getline(words, name) ? name : "");
            }
        }
    }

    BoundXml m_xml;
    const std::string m_file;
};

// One kind of file. It lies at Kind::PLACE.
template <typename Kind>
class DataFile : public FileFixture {
protected:
    DataFile() : FileFixture(Kind::PLACE) {}
    void SetUp() override {
        SettingsFixture::SetUp();
        if (m_file.starts_with(CorePlugin())) {
            std::filesystem::remove(CorePlugin());  // the test has resources of its own
        }
        std::filesystem::create_directories(std::filesystem::path(m_file).parent_path());
    }

    bool Read() { return Kind::Read(m_xml, m_name = "a:", m_record); }
    std::string Reading(const std::string& file) {
        WriteFile(m_file, file);
        m_record = {};
        return Steps([&] { Read(); });
    }
    // What is in the file then, without layout.
    std::string Writing(const typename Kind::Record& record, unsigned int result = 0) {
        WriteFile(m_file, "<earlier>");
        EXPECT_EQ(result, Kind::Write(m_xml, m_name = ":a:", record));
        return WithoutLayout(ReadFile(m_file));
    }

    // No part of the file is read as if it were the whole.
    void ExpectReadingFaults(const std::string& file, const char* faults) {
        EXPECT_EQ("", Reading(file));
        ExpectFaults(faults, [&] { EXPECT_TRUE(Read()); });
    }

    // Nothing is saved after a fault.
    void ExpectWritingFaults(const std::string& file, const char* faults) {
        EXPECT_EQ("", Reading(file));
        ExpectFaults(faults, [&] { EXPECT_EQ("<earlier>", Writing(m_record, Kind::NOT_MADE)); });
        std::filesystem::remove_all(m_folder.Path("data/Norvane"));
        EXPECT_EQ(FAILED, Kind::Write(m_xml, m_name, m_record));
    }

    // The texts are the numbers from 1 on, of which one is a text that a person typed.
    void ExpectTrips(const std::string& file, int typed, const std::string& empty) {
        const auto filled = [](int chosen, const char* end) {
            return Kind::Filled([=, n = 0]() mutable {
                ++n;
                return std::to_string(n).append(chosen == 0 || chosen == n ? end : "");
            });
        };
        EXPECT_EQ(empty, Writing({}));
        EXPECT_EQ("a", m_name);
        EXPECT_EQ(file, Writing(filled(0, "")));
        const std::string marked = WithNumbersMarked(file, " &lt;\u00DF&amp;\"&#13;\n\t'");
        EXPECT_EQ(marked, Writing(filled(0, " <\u00DF&\"\r\n\t'")));
        EXPECT_EQ("", Reading(marked));
        EXPECT_EQ("a", m_name);
        EXPECT_EQ(marked, Writing(m_record));
        EXPECT_TRUE(Read());
        const auto& [first, second, third, single] = m_record;
        EXPECT_EQ(6U, first.size() + second.size() + third.size()) << single;
        // What XML cannot hold is replaced in the typed text, and refused elsewhere.
        const std::string text = std::to_string(typed) + "<";
        const std::string replaced = std::to_string(typed) + "\uFFFD<";
        EXPECT_EQ(Replaced(file, text, replaced), Writing(filled(typed, "\x01")));
        Printed([&] { EXPECT_EQ("<earlier>", Writing(filled(1, "\x01"), Kind::NOT_MADE)); });
    }

    // Changes to a file, what is written of it after it was read, and whether it is read whole.
    struct Rule {
        std::string part, by, written;
        bool isWhole;
    };
    void ExpectRules(const std::string& file, std::initializer_list<Rule> rules) {
        for (const auto& [part, by, written, isWhole] : rules) {
            EXPECT_EQ(isWhole, Reading(Replaced(file, part, by)).empty()) << by;
            EXPECT_EQ(Replaced(file, part, written), Writing(m_record)) << by;
        }
    }

    // Fails the memory for the one handle of each list's item.
    Texts LoggedWithoutMemory(const std::string& file) {
        WriteFile(m_file, file);
        const FailingAllocation failing(sizeof(void*), sizeof(void*));
        EXPECT_TRUE(Read());
        return Logged();
    }

    std::string m_name;
    typename Kind::Record m_record;
};
