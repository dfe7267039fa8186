#include <chrono>
#include <filesystem>
#include <map>

#include "tests/host/settings/ProgramFixture.h"

namespace {

using nlohmann::json;

class PrintersCommand : public ProgramFixture {
protected:
    static std::string ErrorsOf(const std::string& arguments) {
        return RunTallyquist("printers " + arguments, "/").err;
    }

    const std::string m_file = m_dataFolder + "/printer_list.xml";
    const json m_full = json::parse(
        R"({"name": [{"lang": "en", "text": "One"}, {"lang": "pt-BR", "text": "x=é"}],
            "model_name": "M & <m>", "serial_number": "A 1", "mac_address": "00:1B:44:11:3A:b7",
            "port": {"type": "ipv6", "text": "fe80::1", "location_id": 4294967295,
                     "nic_index": -2147483648, "tracking_name": "Track", "host_name": null},
            "support_oxal_service": "a b", "friendly_name": "Friend", "auth_info": "Secret",
            "additional_info": "line\nline", "cycle_time": 2147483647, "cycle_acquisition": "on",
            "regist_printer": "1"})");
    const std::string m_addFull =
        "add --serial 'A 1' --model 'M & <m>' --name en=One --name pt-BR='x=é' --regist 1 "
        "--mac 00:1B:44:11:3A:b7 --port-type ipv6 --port fe80::1 --location-id 4294967295 "
        "--nic-index -2147483648 --tracking-name Track --services 'a b' --friendly-name Friend "
        "--auth-info Secret --additional-info 'line\nline' --cycle-time 2147483647 "
        "--cycle-acquisition on";
};

TEST_F(PrintersCommand, KeepsEveryOptionAndSetsWhatIsGiven) {
    EXPECT_EQ(m_file + " does not exist yet: no printers\n",
              RunTallyquist("printers list", "/").out);
    EXPECT_EQ("", ErrorsOf(m_addFull));
    EXPECT_EQ(m_full, Json("printers show 'A 1' --show-secrets"));
    EXPECT_EQ(nullptr, Json("printers show 'A 1'")["auth_info"]);
    const std::map<std::string, json> changes{
        {"--model ''", {{"/model_name", ""}}},
        {"--no-tracking-name", {{"/port/tracking_name", nullptr}}},
        {"--port-type bonjour --port h",
         {{"/port/type", "bonjour"}, {"/port/text", ""}, {"/port/host_name", "h"}}},
        {"--name EN= --name fr=Un",
         {{"/name/0", m_full["name"][1]}, {"/name/1", {{"lang", "fr"}, {"text", "Un"}}}}},
        {"--auth-info '' --cycle-time 0", {{"/auth_info", ""}, {"/cycle_time", 0}}}};
    const std::string before = ReadFile(m_file);
    for (const auto& [options, change] : changes) {
        json changed = m_full;
        for (const auto& [pointer, value] : change.items()) {
            changed[json::json_pointer(pointer)] = value;
        }
        EXPECT_EQ("", ErrorsOf("set 'A 1' " + options));
        EXPECT_EQ(changed, Json("printers list --show-secrets")["printers"][0]) << options;
        WriteFile(m_file, before);
    }
    EXPECT_EQ("", ErrorsOf("add --serial B --port-type usb --location-id 7 --friendly-name Bee"));
    EXPECT_EQ("", ErrorsOf("remove 'A 1'"));
    EXPECT_EQ("serial  model  name  port  address     mac\nB              Bee   usb   location 7\n",
              RunTallyquist("printers list", "/").out);
}

TEST_F(PrintersCommand, RefusesWhatMakesNoSense) {
    EXPECT_EQ("", ErrorsOf("add --serial B --port-type bonjour --port b.local"));
    const std::string before = ReadFile(m_file);
    const std::map<std::string, std::string> refused{
        {"set B", "'set' needs an option that says what to change"},
        {"set B --serial ''", "--serial: must not be empty"},
        {"add --port-type bonjour --serial C", "--port is needed: a bonjour port has a host name"},
        {"set B --port-type USB", "--port-type: 'USB' is not one of usb, ipv4, ipv6, bonjour"},
        {"set B --location-id -1", "--location-id: '-1' is not a number from 0 to 4294967295"},
        {"set B --mac 00:1B:44:11:3A-B7",
         "--mac: '00:1B:44:11:3A-B7' is not a MAC address such as 00:1B:44:11:3A:B7"},
        {"set B --name 1x=a", "--name: '1x' is not a language code such as en or pt-BR"},
        {"set B --name pt-BR=a --name PT_br=b", "--name: 'PT_br' is given twice"},
        {"set B $(for l in a b c d e f g h i j k; do echo --name x$l=n; done)",
         "--name: a printer has at most 10 names, not 11"},
        {"set B --auth-info \"$(printf 'a\\001')\"",
         "--auth-info: the value holds a character that an XML file cannot hold"}};
    for (const auto& [arguments, message] : refused) {
        ExpectFailure(2, "printers " + arguments, message);
    }
    ExpectFailure(1, "printers add --port-type usb --serial B",
                  m_file + ": a printer has the serial number 'B' already");
    ExpectFailure(
        2, "printers show",
        "SERIAL is required\nRun 'tallyquist printers show --help' for more information.");
    ExpectFailure(1, "printers set X --model m", m_file + ": no printer has the serial number 'X'");
    // A full disk.
    ExpectFailure(1,
                  "--version >/dev/null; ulimit -f 2; exec " TALLYQUIST
                  " printers set B --model $(printf %04000d 1)",
                  "cannot write " + m_file + ": File too large");
    EXPECT_EQ(before, ReadFile(m_file));
    const std::string serial = "<printer><serial_number>A</serial_number></printer>";
    const std::map<std::string, std::string> faults{
        {"\n<printer>", ":2: not well-formed XML: "},
        {"<printer/><printer><mine/></printer>",
         "because in or before printer 2 stands an element"},
        {"<printer/><name/><printer/>", ": 'printer_list' holds 'name', "},
        {"<printer>" + serial + "</printer>", ": a printer does not lie right below "},
        {serial + serial, ": 2 printers have the serial number 'A'; "}};
    for (const auto& [printers, fault] : faults) {
        const std::string text =
            "<mngprinter><printer_list>" + printers + "</printer_list></mngprinter>";
        WriteFile(m_file, text);
        for (const std::string command : {"show A", "set A --model m", "remove A"}) {
            EXPECT_NE(std::string::npos, ErrorsOf(command).find(fault)) << command << fault;
        }
        EXPECT_EQ(text, ReadFile(m_file));
    }
    EXPECT_EQ(std::vector<std::string>{"printer_list.xml"}, NamesIn(m_dataFolder));
}

TEST_F(PrintersCommand, ListsOfOtherProgramsAndLeftoversOfKilledOnesAreTidied) {
    EXPECT_EQ("", ErrorsOf("add --serial A --port-type usb"));
    WriteFile(m_file,
              "<mngprinter><printer_list><printer><serial_number>A</serial_number></printer>"
              "<printer/><printer><serial_number>A</serial_number><model_name>2</model_name>"
              "</printer></printer_list></mngprinter>");
    const std::string young = m_dataFolder + "/.tallyquist-YOUNGX";
    const std::string old = m_dataFolder + "/.tallyquist-OLDXXX";
    WriteFile(young, "");
    WriteFile(old, "");
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(old, now - std::chrono::hours(2));
    ErrorsOf("remove --nth 1");
    ErrorsOf("remove A --nth 1");
    EXPECT_EQ("2", Json("printers show A")["model_name"]);
    EXPECT_EQ(1U, Json("printers list")["printers"].size());
    ExpectFailure(1, "printers remove A --nth 2",
                  m_file +
                      ": 1 printer has the serial number 'A'; --nth tells which one, in the "
                      "order of 'tallyquist printers list'");
    EXPECT_TRUE(std::filesystem::exists(young));
    EXPECT_FALSE(std::filesystem::exists(old));
}

TEST_F(PrintersCommand, AddsAtOnceAreAllKeptAndOriginalsThatHoldMore) {
    RunTallyquist("--version; for serial in A B C D E F G H; do " TALLYQUIST
                  " printers add --serial $serial --port-type usb & done; wait",
                  "/");
    EXPECT_EQ(8U, Json("printers list")["printers"].size());
    for (const std::string end : {".orig", ".orig.2"}) {
        const std::string kept = m_dataFolder + "/.printer_list.xml" + end;
        EXPECT_EQ("", ErrorsOf("set A --model m" + end));
        const std::string edited = ReadFile(m_file) + "<!-- " + end + " -->\n";
        for (int i = 0; i < 2; ++i) {  // the second time it is there already
            WriteFile(m_file, edited);
            EXPECT_TRUE(ErrorsOf("set A --regist 1").ends_with(" kept as " + kept + "\n"));
            EXPECT_EQ(edited, ReadFile(kept));
        }
    }
    EXPECT_EQ(3U, NamesIn(m_dataFolder).size());
}

}  // namespace
