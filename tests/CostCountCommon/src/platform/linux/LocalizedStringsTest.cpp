#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "CostCountCommon/include/MacUtility.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class LocalizedStrings : public testing::Test {
protected:
    void WriteTable(const std::string& language, const std::string& contents) {
        const std::string folder = m_contents.Path("Resources/" + language + ".lproj");
        fs::create_directories(folder);
        WriteFile(folder + "/Localizable.strings", contents);
    }

    static std::string Text(const char* key) {
        std::string text = "earlier";
        const int found = LoadResourceString(key, &text);
        if (found == 0) {
            EXPECT_EQ("", text);
            return "none";
        }
        EXPECT_EQ(-1, found);
        return text;
    }

    TempFolder m_contents;
    ScopedVariable m_main{"TALLYQUIST_CONTENTS", m_contents.Path().c_str()};
    ScopedVariable m_language{"LANGUAGE", nullptr};
    ScopedVariable m_all{"LC_ALL", nullptr};
    ScopedVariable m_messages{"LC_MESSAGES", nullptr};
    ScopedVariable m_lang{"LANG", nullptr};
};

std::string Utf16(const std::string& ascii, bool bigEndian) {
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : ascii) {
        bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    }
    return bytes;
}

TEST_F(LocalizedStrings, OfAStringsFile) {
    const struct {
        std::string file;
        std::string expected;  // of "k"
    } rows[] = {
        {"\"k\" = \"v\";", "v"},
        {"\xEF\xBB\xBFk=v;", "v"},
        {Utf16("k = \"v\";", true), "v"},
        {Utf16("k = \"v\";", false), "v"},
        {"/* \"k\" = 1; **/ // k = 2;\rk = /**/ a_$/:.-9 // 3\n;", "a_$/:.-9"},
        {"/*/ k = 1; */ 'k' = 'it\"s';", "it\"s"},
        {"k;", "k"},
        {"k = 1; k = 2;", "2"},
        {"k = \"two\nlines = ; // /*\";", "two\nlines = ; // /*"},
        {R"(k = "\n\t\r\a\b\f\v\\\"\'\q\U";)", "\n\t\r\a\b\f\v\\\"'qU"},
        {R"(k = "\101\0\7z\377\U00e4\u20AC\Ud83d\Ude00\u41;";)",
         "A\0\7z\u00FF\u00E4\u20AC\U0001F600\x41;"s},
        {R"(k = "a\Ud83d\Ude";)", "a\uFFFD\u00DE"},
        {"\xFE\xFF\0k\0=\0\"\xD8\0\0\"\0;"s, "\uFFFD"},
        // Damage ends the table, and what stood before it counts.
        {"k = v; j = ", "v"},
        {"k = v; } k = 2;", "v"},
        {"k = v", "none"},
        {"k = \"v\\", "none"},
        {"/* k = v;", "none"},
        {"K = v;", "none"},
        {"k = v; // \xFF", "none"},
        {Utf16("k = v;", true) + "x", "v"},
        {std::string(17 * 1024 * 1024, ' ') + "k = v;", "none"},
    };
    for (const auto& row : rows) {
        WriteTable("en", row.file);
        EXPECT_EQ(row.expected, Text("k")) << row.file.substr(0, 80);
    }
}

TEST_F(LocalizedStrings, LanguageIsThatOfTheLocale) {
    for (const char* language : {"de", "de-AT", "de_CH", "en", "fr", "ja", "zh-Hans", "zh-Hant"}) {
        WriteTable(language, std::string("k = ").append(language).append(";"));
    }
    WriteFile(m_contents.Path("Info.plist"),
              "<key>CFBundleDevelopmentRegion</key><string>ja</string>");
    const struct {
        const char* language;
        const char* all;
        const char* messages;
        const char* lang;
        const char* expected;
    } rows[] = {
        {nullptr, nullptr, nullptr, "de_AT.UTF-8@euro", "de-AT"},
        {nullptr, nullptr, nullptr, "de_CH", "de_CH"},
        {nullptr, nullptr, "de_LU.UTF-8", "fr", "de"},
        {nullptr, "fr_FR", "de", "de", "fr"},
        {nullptr, "", "", "fr", "fr"},
        {"xx::fr_CA:de", nullptr, nullptr, "en_US.UTF-8", "fr"},
        {"xx", nullptr, nullptr, "de", "de"},
        {"de", nullptr, nullptr, "C", "ja"},
        {"de", nullptr, nullptr, nullptr, "ja"},
        {nullptr, nullptr, nullptr, "zh_CN.UTF-8", "zh-Hans"},
        {nullptr, nullptr, nullptr, "zh_HK", "zh-Hant"},
        {nullptr, nullptr, nullptr, "../Resources/fr", "ja"},
    };
    for (const auto& row : rows) {
        const ScopedVariable language("LANGUAGE", row.language);
        const ScopedVariable all("LC_ALL", row.all);
        const ScopedVariable messages("LC_MESSAGES", row.messages);
        const ScopedVariable lang("LANG", row.lang);
        EXPECT_STREQ(row.expected, Text("k").c_str())
            << testing::PrintToString(row.language) << testing::PrintToString(row.lang);
    }
    fs::remove(m_contents.Path("Info.plist"));
    EXPECT_EQ("en", Text("k"));
}

TEST_F(LocalizedStrings, OfOneLanguageServeAllKeys) {
    EXPECT_EQ("none", Text("k"));
    EXPECT_EQ(0, localizationsCount());
    WriteTable("en", "k = v;");
    WriteTable("fr", "j = v;");
    fs::create_directories(m_contents.Path("Resources/xmls"));
    WriteFile(m_contents.Path("Resources/file.lproj"), "");
    EXPECT_EQ(2, localizationsCount());
    const ScopedVariable lang("LANG", "fr");
    EXPECT_EQ("none", Text("k"));
}

}  // namespace
