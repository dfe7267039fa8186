#include <fcntl.h>
#include <sys/stat.h>

#include <array>

#include "CostCountCommon/src/FileDescriptor.h"
#include "host/common/Errors.h"
#include "host/messages/MessagePipe.h"
#include "tests/host/settings/ProgramFixture.h"

namespace {

using nlohmann::json;

class MessageCommand : public ProgramFixture {
protected:
    MessageCommand() {
        RunTallyquist(
            "printers add --serial 'A&B' --port-type ipv6 --port fe80::1 --mac 00:1B:44:11:3A:B7 "
            "--location-id 4294967295 --nic-index -3 --auth-info 'Top<Secret'",
            "/");
    }

    static ProgramRun Run(const std::string& arguments) {
        return RunTallyquist("message " + arguments, "/");
    }

    // A pipe with a reader that does not read.
    static FileDescriptor MakePipe(const std::string& path) {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        EXPECT_EQ(0, mkfifo(path.c_str(), 0600));
        return FileDescriptor::Open(path.c_str(), O_RDONLY | O_NONBLOCK);
    }

    static std::string ReadAll(const FileDescriptor& pipe) {
        std::string bytes(65536, '\0');
        const ssize_t size = read(pipe.Number(), bytes.data(), bytes.size());
        bytes.resize(size > 0 ? static_cast<size_t>(size) : 0);
        return bytes;
    }

    const std::string m_pipe = m_folder.Path("pipe");
};

TEST_F(MessageCommand, WhatIsBuiltIsParsed) {
    const json command = json::parse(
        R"({"message": "bntcmd", "massagetype": "end", "isreply": false, "event_name": "",
            "massagepriority": "normal", "processid": "7", "printerid": "", "iftype": "",
            "address": "", "password": "", "location_id": 0, "nic_index": 0,
            "usbretry_count": "3", "usbretry_interval": "1000", "commuretry_count": "3",
            "commuretry_interval": "5000"})");
    const json printer = json::parse(
        R"({"printerid": "A&B", "iftype": "ipv6", "address": "fe80::1", "password": "Top<Secret",
            "location_id": 4294967295, "nic_index": -3})");
    // Of commands, what differs from the end command; secrets are those of the printer.
    const json cases = json::parse(R"({
        "end --process 7": {},
        "get --printer 'A&B' --process 7 --priority high --show-secrets":
            {"massagetype": "get", "massagepriority": "high"},
        "export --printer 'A&B' --nth 1 --process 7 --show-secrets":
            {"massagetype": "ScheduledExport"},
        "start --process 7": {"massagetype": "ReqSatrt"},
        "stop --process 4294967295 --is-reply":
            {"massagetype": "ReqEnd", "processid": "4294967295", "isreply": true},
        "result --process 7 --event 'a<b'": {"massagetype": "ReqResult", "event_name": "a<b"},
        "reply ngqueue --param 'x\ny'": {"message": "bntcmdret", "ret": "ngqueue", "param": "x\ny"},
        "answer lock_timeout_incomp --printer 'A&B' --ip-changed":
            {"message": "bntresult", "printerid": "00:1B:44:11:3A:B7",
             "result": "lock_timeout_incomp", "last": false, "ip_changed": true},
        "answer unexecute --mac 001122334455 --last":
            {"message": "bntresult", "printerid": "001122334455", "result": "unexecute",
             "last": true, "ip_changed": false},
        "answer success_new --detch --last":
            {"message": "detchresult", "result": "success_new", "last": true}})");
    for (const auto& [arguments, given] : cases.items()) {
        json message = given.contains("message") ? json::object() : command;
        message.update(arguments.ends_with("--show-secrets") ? printer : json::object());
        message.update(given);
        EXPECT_EQ(json::array({message}), Json(std::string("message build ").append(arguments) +
                                               " | " TALLYQUIST " message parse --show-secrets"));
    }
    EXPECT_EQ(2, Run("build answer failure --detch --ip-changed").exitCode);
}

TEST_F(MessageCommand, PasswordsAreShownOnlyWhenAskedFor) {
    const std::string file = m_folder.Path("message");
    WriteFile(file, Run("build get --printer 'A&B' --show-secrets").out);
    for (const std::string& command : std::initializer_list<std::string>{
             "build get --printer 'A&B'", "parse <" + file, "parse --json " + file,
             "--version; sed -n s/.*Top//p " + file + " | " TALLYQUIST " message parse"}) {
        const auto hasSecret = [&](const std::string& option) {
            const ProgramRun run = Run(command + option);
            return (run.out + run.err).find("Secret") != std::string::npos;
        };
        EXPECT_FALSE(hasSecret("")) << command;
        EXPECT_TRUE(hasSecret(" --show-secrets")) << command;
    }
    EXPECT_EQ(nullptr, Json("message parse " + file)[0]["password"]);
    EXPECT_NE(std::string::npos, Run("parse " + file).out.find("password             ********\n"));
}

TEST_F(MessageCommand, SendsThroughThePipeOfTheReceiver) {
    const std::string folder = m_folder.Path("data/K7Q3MZP2WD.RX.qvtrel/pipe/");
    for (const auto& [arguments, delivery, path] :
         std::initializer_list<std::array<std::string, 3>>{
             {"get --printer 'A&B' --process 7", "", folder + "app2bnt"},
             {"result --process 7", " --service", folder + "cms2bnt"},
             {"reply ok --param=", "", folder + "bnt2app"},
             {"answer failure --mac 001122334455", " --service", folder + "bnt2cms"},
             {"answer failure --detch", "", folder + "bnt2detch"},
             {"end --process 7", " --pipe " + m_pipe, m_pipe}}) {
        const FileDescriptor pipe = MakePipe(path);
        const std::string build = std::string("build ").append(arguments);
        const ProgramRun sent = Run(std::string(build).append(" --send").append(delivery));
        const std::string bytes = ReadAll(pipe);
        EXPECT_EQ(Run(build + " --show-secrets").out, bytes) << sent.err;
        const std::string kind = arguments.substr(0, arguments.find(' '));
        EXPECT_EQ(std::string("tallyquist: ")
                      .append(path)
                      .append(": ")
                      .append(kind)
                      .append(" sent, ")
                      .append(std::to_string(bytes.size()))
                      .append(" bytes\n"),
                  sent.err);
    }
}

TEST_F(MessageCommand, WhatCannotBeSentIsTold) {
    const auto fault = [&](size_t size) -> std::string {
        try {
            tallyquist::SendMessage(m_pipe, std::string(size, 'x'), std::chrono::seconds(0));
        } catch (const tallyquist::CommandError& error) {
            return std::string(error.what()).substr(m_pipe.size());
        }
        return "sent";
    };
    EXPECT_EQ(": No such file or directory (whoever reads the pipe makes it, with mkfifo)",
              fault(9));
    WriteFile(m_pipe, "mine");
    EXPECT_EQ(": is not a pipe", fault(9));
    EXPECT_EQ("mine", ReadFile(m_pipe));
    std::filesystem::remove(m_pipe);
    MakePipe(m_pipe).Close();
    ExpectFailure(1, "message build end --send --pipe " + m_pipe, m_pipe + ": nobody reads it");
    const FileDescriptor pipe = FileDescriptor::Open(m_pipe.c_str(), O_RDONLY | O_NONBLOCK);
    const std::string part = fault(100000);
    EXPECT_EQ(": 0 of 99 bytes were sent: nobody has read for 0 s", fault(99));
    EXPECT_EQ(": " + std::to_string(ReadAll(pipe).size()) +
                  " of 100000 bytes were sent: nobody has read for 0 s",
              part);
}

TEST_F(MessageCommand, APipeIsReadUntilNobodyWritesAnyMore) {
    MakePipe(m_pipe).Close();
    const std::string send = " >&2 --send --pipe " + m_pipe + "; ";
    const ProgramRun run = RunTallyquist(
        "message parse " + m_pipe + " & exec 3>" + m_pipe +
            "; " TALLYQUIST " message build reply ok" + send +
            TALLYQUIST " message build answer failure --detch --last" + send + "exec 3>&-; wait $!",
        "/");
    EXPECT_EQ(
        "key      value\nmessage  bntcmdret\nret      ok\nparam\n\n"
        "key      value\nmessage  detchresult\nresult   failure\nlast     yes\n",
        run.out)
        << run.err;
    EXPECT_EQ(0, run.exitCode);
    // Held open, it serves several senders one after the other.
    const std::string reply = TALLYQUIST " message build reply ok" + send;
    const ProgramRun held =
        RunTallyquist("message parse --follow --json --count 2 " + m_pipe + " & until (" + reply +
                          ") 2>/dev/null; do :; done; " + reply + " wait $!",
                      "/");
    const std::string line = R"({"message":"bntcmdret","ret":"ok","param":""})";
    EXPECT_EQ(line + "\n" + line + "\n", held.out) << held.err;
}

TEST_F(MessageCommand, WhatIsNoMessageIsToldAndTheRestRead) {
    const std::string file = m_folder.Path("messages");
    const std::string result = "<bntresult><printerid>p</printerid><result/><last>2</last>";
    const std::string xml = "<?xml version='1.0'?>";
    WriteFile(file, "\xFF\xD8 JPEG" + xml + result + "</bntresult>" + xml + "<bntcmdret><ret/>" +
                        xml + "<bntcmdret><ret/></bntcmdret>" + xml + "<a></b>" + xml +
                        "<cmsystem/>" + result + "</bntresult> " + xml + "<bntcmd><password>s");
    const ProgramRun run = Run("parse --json " + file);
    const json read = json::parse(
        R"({"message": "bntresult", "printerid": "p", "result": "", "last": true,
            "ip_changed": false})");
    EXPECT_EQ(json::array({read, read}), json::parse(run.out));
    EXPECT_EQ(1, run.exitCode);
    std::string expected;
    for (const std::string line :
         {"before message 1: no message; not shown without --show-secrets",
          "after message 1: no message; not shown without --show-secrets",
          "message 2: the element param is missing", "message 3: not well-formed XML",
          "message 4: the root element 'cmsystem' is that of no message",
          "after message 5: no message; not shown without --show-secrets",
          "not all of it could be read"}) {
        expected.append("tallyquist: " + file + ": ").append(line).append("\n");
    }
    EXPECT_EQ(expected, run.err);
    ExpectFailure(1, "message parse </dev/null", "standard input: holds no message");
    ExpectFailure(1, "message parse /", "cannot read /: Is a directory");
}

}  // namespace
