#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <random>

#include "CostCountCommon/include/CBntMessageReader.h"
#include "tests/CostCountCommon/DataFileFixture.h"
#include "tests/support/PrinterRecords.h"
#include "tests/support/Processes.h"

namespace {

// What the reader gives, 0 for a message.
std::string Next(CBntMessageReader& reader, int pipe, unsigned int milliseconds = 0xFFFFFFFF) {
    std::string message;
    const BntRead read = reader.Read(pipe, milliseconds, &message);
    return read == BntRead::MESSAGE ? message : std::to_string(static_cast<int>(read));
}
const std::string BROKEN = "1", END = "2", TIMED_OUT = "3", FAILURE = "4";

const unsigned char* Data(const std::string& message) {
    return reinterpret_cast<const unsigned char*>(message.data());
}

class BntExchange : public SettingsFixture {};

TEST_F(BntExchange, WhatIsBuiltIsWhatIsParsed) {
    WriteFile(DataFolder() + "/CMSystemSetting.cfg",
              "<cmsystem><CommuRetryCount>9</CommuRetryCount></cmsystem>");
    CCommonXmlPxd xml;
    Bind(xml);
    const std::string text = " <\u00DF&\"]]>\r\n\t'";
    CCommonPrinterInfo printer = FilledPrinter(text);
    const std::string told = text + "22" + text + "25" + text + "24" + text + "28-1-1";
    const std::string retries =
        "310009"
        "5000";
    std::string sent[5];
    xml.CreateBNTGetCommand(&sent[0], BNTCOMMAND_HIGH, printer, 1);
    xml.CreateBNTRequestCommand(&sent[1], BNTCOMMAND_REQUEST_START, BNTCOMMAND_NORMAL, true, 2,
                                text.c_str());
    xml.CreateBNTRequestCommand(&sent[2], BNTCOMMAND_REQUEST_RESULT, BNTCOMMAND_HIGH, false, 3,
                                nullptr);
    xml.CreateBNTScheduledExportCommand(&sent[3], BNTCOMMAND_NORMAL, printer, 4);
    xml.CreateBNTEndCommand(&sent[4], 5);
    const std::string parsed[] = {
        "gethigh01" + told + retries, "ReqSatrtnormal1200" + retries + text,
        "ReqResulthigh0300" + retries, "ScheduledExportnormal04" + told + retries,
        "endnormal0500" + retries};
    unsigned int err = 0;
    for (int i = 0; i < 5; ++i) {
        CBntCommandValue c;
        EXPECT_TRUE(xml.ParseBNTCommand(c, Data(sent[i]), sent[i].size(), &err));
        std::ostringstream read;
        read << c.m_MessageType << c.m_MessagePriority << c.m_IsReply << c.m_ProcessId
             << c.m_PrinterId << c.m_IfType << c.m_Address << c.m_Password << c.m_LocationId
             << c.m_NicIndex << c.m_UsbRetryCount << c.m_UsbRetryInterval << c.m_CommuRetryCount
             << c.m_CommuRetryInterval << c.m_EventName;
        EXPECT_EQ(parsed[i], read.str());
    }
    std::string message, first, second;
    xml.CreateBNTRetCommand(&message, BNTCMDRET_OK, text);
    EXPECT_TRUE(xml.ParseBNTCmdRet(first, second, Data(message), message.size(), &err));
    EXPECT_EQ("ok" + text, first + second);
    for (const bool isSet : {false, true}) {
        bool last = !isSet;
        bool ipChanged = isSet;
        xml.CreateResultCommand(&message, printer, 1, true, !isSet, isSet);
        EXPECT_TRUE(xml.ParseBNTResult(first, second, last, Data(message), message.size(), &err,
                                       &ipChanged));
        EXPECT_EQ(text + "23success_new", first + second);
        EXPECT_TRUE(last == isSet && ipChanged == !isSet);
    }
}

TEST_F(BntExchange, WhateverAPeerSendsTheNextMessageIsFound) {
    const std::string start = "<?xml version='1.0'?>";
    const std::string whole = start + "<a><b>1</b></a>";
    // What looks like an end and is none.
    const std::string tricky =
        start + "<!-- </a> --><a b='/>' c=\">'\"><d/><?e ></a>?><![CDATA[]></a>]]></a >";
    std::minstd_rand random;
    std::string noise(5000, ' ');
    std::generate(noise.begin(), noise.end(), [&] { return static_cast<char>(random() >> 8); });
    std::string largest = start + "<a>" + std::string(2 * CBntMessageReader::MAX_SIZE, 'x');
    const std::string endless = largest;
    largest.replace(CBntMessageReader::MAX_SIZE - 4, std::string::npos, "</a>");
    std::vector<std::pair<std::string, Texts>> rows = {
        {tricky + "\r\n" + start + "<a/>" + whole, {tricky, start + "<a/>", whole}},
        {largest + whole, {largest, whole}},
        {whole + "x" + whole + "<", {whole, BROKEN, whole, BROKEN}},
        {"<b/>", {"<b/>"}},  // of the next peer
    };
    for (const std::string& broken :
         {noise, endless, Replaced(largest, "x", "xx"), std::string("<<<"), std::string("</a>"),
          std::string("<!DOCTYPE a>")}) {
        rows.emplace_back(broken + whole, Texts{BROKEN, whole});
    }
    for (size_t size = 1; size < whole.size(); ++size) {
        rows.emplace_back(whole.substr(0, size), Texts{BROKEN});
        rows.emplace_back(whole.substr(0, size) + tricky, Texts{BROKEN, tricky});
    }
    const std::string name = m_folder.Path("pipe");
    ASSERT_EQ(0, mkfifo(name.c_str(), 0600));
    CBntMessageReader reader;
    for (auto& [bytes, expected] : rows) {
        const ChildProcess peer([&, sent = &bytes] {
            std::ofstream(name) << *sent << std::flush;
            return raise(SIGKILL);
        });
        const int pipe = open(name.c_str(), O_RDONLY);
        for (const std::string& message : expected) {
            EXPECT_EQ(message, Next(reader, pipe)) << bytes.substr(0, 100);
        }
        EXPECT_EQ(END, Next(reader, pipe));
        close(pipe);
    }
    const int pipe = open(name.c_str(), O_RDWR);
    for (const char& byte : tricky) {
        EXPECT_EQ(1, write(pipe, &byte, 1));
        EXPECT_EQ(&byte == &tricky.back() ? tricky : TIMED_OUT, Next(reader, pipe, 0));
    }
    close(pipe);
    EXPECT_EQ(FAILURE, Next(reader, pipe));
}

}  // namespace
