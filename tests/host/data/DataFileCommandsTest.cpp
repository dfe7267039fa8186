#include <filesystem>
#include <sstream>

#include "tests/host/settings/ProgramFixture.h"

namespace {

namespace fs = std::filesystem;

class DataFileCommands : public ProgramFixture {
protected:
    void SetUp() override { fs::create_directories(m_costs); }

    static void Run(const std::string& arguments) {
        EXPECT_EQ("", RunTallyquist("costs " + arguments, "/").err) << arguments;
    }
    std::string Table(const std::string& text) const {
        WriteFile(m_folder.Path("t.csv"), text);
        return m_folder.Path("t.csv");
    }
    static nlohmann::json Shown(const std::string& name, const char* list) {
        return Json("costs show " + name)[list];
    }

    const std::string m_costs = m_folder.Path("data/Norvane/Tallyquist/Cost/");
    const std::string m_caps = m_folder.Path("data/Norvane/Tallyquist/PrinterCaps/");
    const std::string m_small =
        "<mngprinter><InkList><Ink><InkID>C</InkID><InkCost>1</InkCost><rsv/></Ink></InkList>"
        "<MediaList/><ExtraList/></mngprinter>";
    const std::string m_import =
        "caps import X - <<.\nkind;id;color;tank;name;value;name:en\nink;C;cyan;2;;;\n"
        "media_type;p;;;;;Plain\nmedia_size;A4;;;A4, ISO;;\nunknown_joblog;;;;;on;\n.";
};

TEST_F(DataFileCommands, ExportAndImportKeepEveryText) {
    std::istringstream texts(
        "=1+1|'=x|''-|'|''a|-5|@x||&#9;tab|a\tb|&#13;cr|a&#13;&#10;&#10;b&#13;|&quot;q&quot;, ;| ü |");
    std::string extras;
    size_t count = 0;
    for (std::string text; std::getline(texts, text, '|'); ++count) {
        const char* language = count % 2 == 0 ? "de" : "zh-Hans";
        for (const char* part :
             {"<Extra><ExtraID>x", text.c_str(), "</ExtraID><ExtraName lang='", language, "'>",
              text.c_str(), "</ExtraName><ExtraCost/><ExtraCalc>", text.c_str(),
              "</ExtraCalc></Extra>"}) {
            extras += part;
        }
    }
    WriteFile(m_costs + "a",
              "<mngprinter><InkList/><MediaList/><ExtraList>" + extras +
                  "<ExtraHiddenNumber>-7</ExtraHiddenNumber></ExtraList></mngprinter>");
    const std::string path = m_folder.Path("a.csv");
    Run("export a -o " + path);
    Run("import b " + path);
    EXPECT_EQ(count, Shown("a", "ExtraList").size());
    EXPECT_EQ(Shown("a", "ExtraList"), Shown("b", "ExtraList"));
    EXPECT_EQ(-7, Shown("b", "ExtraHiddenNumber"));
    for (const char* start : {",=", ",@", ",\t", ",\"\r"}) {
        EXPECT_EQ(std::string::npos, ReadFile(path).find(start)) << start;
    }
}

TEST_F(DataFileCommands, ReadsWhatSpreadsheetProgramsSave) {
    Run("set want ink C 0.5");
    Run("set want media p A4 12 --width 210");
    Run("set want extra e --name de='ü, \"x\"' --cost 1.25");
    const std::pair<std::string, std::string> tables[] = {
        {"\xEF\xBB\xBFkind,id,size_id,width,cost,name:de\r\nink,C,,,0.5,\r\nmedia,p,A4,210,12,\r\n"
         "extra,e,,,1.25,\"ü, \"\"x\"\"\"\r\n\r\n",
         ""},
        {"Kind;ID;Cost;Width;Size_ID;Name:de;;\nMedia;p;12;210;A4;;;\n;;;;;;;\n"
         "Extra;e;1,25;;;\"ü, \"\"x\"\"\"\nInk;C;0,5\n;;;;;;;\n",
         " --decimal-comma"},
        {"sep=|\r\n|\nkind|id|size_id|width|cost|name:de\nink|C|||0.5\nmedia|p|A4|210|12\n"
         "extra|e|||1.25|\"ü, \"\"x\"\"\"\n",
         ""},
        {"\t\t\n\nkind\tcost\tid\tsize_id\twidth\tname:de\nink\t0.5\tC\nmedia\t12\tp\tA4\t210\n"
         "extra\t1.25\te\t\t\t\"ü, \"\"x\"\"\"",
         ""}};
    for (const auto& [table, options] : tables) {
        Run("import got " + Table(table) + options);
        EXPECT_EQ(ReadFile(m_costs + "want"), ReadFile(m_costs + "got")) << table;
        fs::remove(m_costs + "got");
    }
}

TEST_F(DataFileCommands, NamesThePlaceOfAMistakeInATable) {
    const std::pair<std::string, std::string> tables[] = {
        {";;\n\nid;cost\n", "3: the header has no column 'kind'"},
        {"kind,Name:pt_br,name:pt-BR\n",
         "1: the columns 'Name:pt_br' and 'name:pt-BR' are of one language"},
        {"kind,id,cost\nextra,e\nink,C\n",
         "3: column 'cost': the row ends before it, but ink needs it"},
        {"kind,id,cost\nink,C,1\nink,C,2\n", "3: column 'id': ink 'C' stands in line 2 already"},
        {"kind\nx\n", "2: column 'kind': 'x' is no kind; there are ink, media, extra, hidden"},
        {"kind,calc\nink,x\n", "2: column 'calc': 'x' has no place in a row of kind ink"},
        {"kind,id\nink,C\n", "2: column 'cost': is missing, but ink needs it"},
        {"kind,ID\nextra,\n,\n", "2: column 'ID': is empty"},
        {"kind,id,cost\nink,C,\"1,5\"\n",
         "2: column 'cost': '1,5' has a decimal comma; write a point, "
         "or import the table with --decimal-comma"},
        {"kind,id,cost\nink,\"\n\",1\nink,D,-1\n",
         "4: column 'cost': '-1' is no plain number such as 12.5"},
        {"kind,id\nextra,\x01\n",
         "2: column 'id': '\\x01' holds a character that an XML file cannot hold"},
        {"kind,id\nink,\xF6\n", "2: column 'id': '\\xF6' is not UTF-8; save the table as UTF-8"}};
    for (const auto& [table, message] : tables) {
        ExpectFailure(1, "costs import p " + Table(table), Table(table) + ":" + message);
    }
    const std::string path = Table("kind;id;cost\nink;C;1.234\n");
    ExpectFailure(1, "costs import p " + path + " --decimal-comma",
                  path + ":2: column 'cost': '1.234' is no plain number such as 12,5");
    ExpectFailure(1, "costs import p /dev/zero", "/dev/zero:1: the line is longer than 1 MiB");
    EXPECT_TRUE(fs::is_empty(m_costs));
}

TEST_F(DataFileCommands, TellsOfEmptyCostsAndEmptiesNoListUnasked) {
    const std::string path = Table("kind,id,cost\nink,C,1\nink,M,\nextra,e,\nink,Y,\n");
    const ProgramRun run = RunTallyquist("costs import p " + path, "/");
    EXPECT_EQ(m_costs + "p: imported: ink 3, media 0, extra 1\n", run.out);
    EXPECT_EQ("tallyquist: " + path + ":3: column 'cost': is empty; empty ones in all: 2\n",
              run.err);
    const std::string before = ReadFile(m_costs + "p");
    ExpectFailure(1, "costs import p " + Table("kind,number\nhidden,1\n"),
                  path + " has no entries, but " + m_costs +
                      "p has: ink 3, media 0, extra 1; to remove them all, import with --force");
    EXPECT_EQ(before, ReadFile(m_costs + "p"));
}

TEST_F(DataFileCommands, SetChangesOneEntryAndRefusesNonsense) {
    for (const char* arguments :
         {"media A 1 5 --width 3 --number 7", "media A 2 5", "media A 1 6 --number ''", "hidden -3",
          "extra e --name de=Alt --name en=Old --calc j", "extra e --name de= --name EN=New"}) {
        Run(std::string("set p ").append(arguments));
    }
    EXPECT_EQ(
        "kind,id,size_id,width,length,number,cost,calc,rsv,name:en\r\nmedia,A,1,3,,,6,,,\r\n"
        "media,A,2,,,,5,,,\r\nextra,e,,,,,,j,,New\r\nhidden,,,,,-3,,,,\r\n",
        RunTallyquist("costs export p", "/").out);
    const std::pair<std::string, std::string> refused[] = {
        {"p toner C 1", "'toner' is not one of ink, media, extra and hidden"},
        {"p ink '' 1", "id: is empty"},
        {"a/b ink C 1", "the name 'a/b' holds a slash; a plain file name is wanted"},
        {"a:b ink C 1", "the name 'a:b' holds a colon, which programs remove from such names"}};
    for (const auto& [arguments, message] : refused) {
        ExpectFailure(2, "costs set " + arguments, message);
    }
}

TEST_F(DataFileCommands, DamagedFilesAreToldOfAndLeftAlone) {
    const auto changed = [this](const std::string& from, const std::string& to) {
        return std::string(m_small).replace(m_small.find(from), from.size(), to);
    };
    const std::pair<std::string, std::string> files[] = {
        {"<mngprinter>\n<InkList>", ":2: not well-formed XML: Start-end tags mismatch"},
        {changed("<InkCost>1</InkCost>", ""), ": Ink 1 has no InkCost"},
        {changed("<InkID>", "<Own/><InkID>"),
         ": Ink 1: an element in front of InkID hides it from programs"},
        {changed("<Ink>", "<Own>" + m_small + "</Own><Ink>"),
         ": programs read 2 of the elements Ink, but there are 1"}};
    for (const auto& [text, fault] : files) {
        WriteFile(m_costs + "bad", text);
        ExpectFailure(1, "costs set bad ink C 2", m_costs + "bad" + fault);
        ExpectFailure(1, "costs import bad " + Table("kind\n"), m_costs + "bad" + fault);
        EXPECT_EQ(text, ReadFile(m_costs + "bad"));
        const ProgramRun list = RunTallyquist("costs list", "/");
        EXPECT_TRUE(list.out.ends_with("\nbad   -    -      -      damaged\n")) << list.out;
        EXPECT_EQ("tallyquist: " + m_costs + "bad" + fault + "\n", list.err);
    }
    const ProgramRun forced = RunTallyquist("costs import --force bad " + Table("kind\n"), "/");
    EXPECT_TRUE(forced.err.ends_with(" kept as " + m_costs + ".bad.orig\n")) << forced.err;
    EXPECT_EQ(nlohmann::json::array(), Shown("bad", "InkList"));
    WriteFile(m_costs + "own", "<!-- mine -->" + m_small);
    EXPECT_NE("", RunTallyquist("costs set own ink C 2", "/").err);
    EXPECT_EQ("<!-- mine -->" + m_small, ReadFile(m_costs + ".own.orig"));
    EXPECT_EQ("2", Shown("own", "InkList")[0]["InkCost"]);
}

TEST_F(DataFileCommands, NothingIsLostAtOnceOrOnAFullDisk) {
    RunTallyquist("--version; for i in A B C D E F; do " TALLYQUIST
                  " costs set p ink $i 1 & done; wait",
                  "/");
    EXPECT_EQ(6U, Shown("p", "InkList").size());
    const std::string before = ReadFile(m_costs + "p");
    ExpectFailure(1,
                  "--version >/dev/null; ulimit -f 2; exec " TALLYQUIST " costs set p media A " +
                      std::string(4000, 'x') + " 1",
                  "cannot write " + m_costs + "p: File too large");
    EXPECT_EQ(before, ReadFile(m_costs + "p"));
    EXPECT_EQ(std::vector<std::string>{"p"}, NamesIn(m_costs));
}

TEST_F(DataFileCommands, CapsAreImportedAndShown) {
    EXPECT_EQ(m_caps + "X: imported: ink 1, media_type 1, media_size 1\n",
              RunTallyquist(m_import, "/").out);
    EXPECT_EQ(
        "ink  color  tank\nC    cyan   2\n\nmedia_type  name:en\np           Plain\n\n"
        "media_size  name\nA4          A4, ISO\n\nunknown_joblog  on\n",
        RunTallyquist("caps show X", "/").out);
    EXPECT_EQ(1, Json("caps show")[0]["media_type"]);
}

// The library tells of no failure but that of saving.
TEST_F(DataFileCommands, NoticesThatNothingWasWritten) {
    const std::string contents = m_folder.Path("App.app/Contents");
    const std::string xmls = contents + "/PlugIns/qvtrelCore.plugin/Contents/Resources/xmls";
    fs::create_directories(xmls);
    fs::create_symlink(BUILT_CONTENTS "/PlugIns/zopmekxmlpxd.plugin",
                       contents + "/PlugIns/zopmekxmlpxd.plugin");
    const ScopedVariable elsewhere("TALLYQUIST_CONTENTS", contents.c_str());
    ExpectFailure(1, m_import, xmls + "/PrinterCapsBase.xml is missing");
    WriteFile(xmls + "/PrinterCapsBase.xml", "<printercaps><InkList/></printercaps>");
    ExpectFailure(1, m_import, m_caps + "X could not be written as it should be");
    EXPECT_TRUE(fs::is_empty(m_caps));
}

}  // namespace
