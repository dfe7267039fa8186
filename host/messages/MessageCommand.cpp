#include "host/messages/MessageCommand.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "CostCountCommon/include/MacUtility.h"
#include "host/common/Errors.h"
#include "host/common/LibraryOutput.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"
#include "host/data/PrinterChoice.h"
#include "host/data/PrinterFields.h"
#include "host/messages/MessagePipe.h"
#include "host/messages/MessageTexts.h"
#include "host/settings/XmlLayer.h"

namespace tallyquist {
namespace {

constexpr unsigned int FAILED = 0xFFFFFFFF;
constexpr std::chrono::seconds PATIENCE{10};

// Of all kinds; a line sets those of its own.
struct BuildOptions {
    PrinterChoice chosen;
    std::string mac;
    CCommonPrinterInfo printer;  // the one that these two name
    std::string priority = "normal";
    unsigned int processId = static_cast<unsigned int>(getpid());
    std::string event;
    bool isReply = false;
    std::string reply;
    std::string param;
    std::string result;
    bool isDetch = false;
    bool ipChanged = false;
    bool isLast = false;
    bool showSecrets = false;
    bool send = false;
    bool isService = false;
    std::string pipe;  // empty: that of the system settings
};

using Words = std::vector<std::string>;

// In the order of BNTCOMMAND_PRIORITY, BNTCMDRET_TYPE and BNTRESULT_TYPE, without gaps.
const Words PRIORITIES{"normal", "high"};
const Words REPLIES{"ok", "ngcmd", "ngqueue"};
const Words RESULTS{"success_none", "success_new",        "failure", "unexecute", "failure_incomp",
                    "lock_timeout", "lock_timeout_incomp"};

// An option or argument that is one of some words.
CLI::Option* AddWord(CLI::App& line, const char* name, std::string& word, const Words& words,
                     const char* meaning) {
    return line.add_option(name, word, meaning)
        ->type_name("")
        ->check(CLI::IsMember(words).description(""));
}

template <typename Enumeration>
Enumeration ValueOf(const std::string& word, const Words& words) {
    return static_cast<Enumeration>(std::find(words.begin(), words.end(), word) - words.begin());
}

void AddSender(CLI::App& line, BuildOptions& options) {
    line.add_option("--process", options.processId,
                    "The sender's process id; that of the program itself without it.")
        ->option_text("ID")
        ->check(CLI::Range(0U, std::numeric_limits<unsigned int>::max()));
}

void AddPriorityAndSender(CLI::App& line, BuildOptions& options) {
    AddWord(line, "--priority", options.priority, PRIORITIES, "normal without it.")
        ->option_text("normal|high");
    AddSender(line, options);
}

void AddPrinterCommand(CLI::App& line, BuildOptions& options) {
    const PrinterChoiceOptions printer = AddPrinterChoice(line, "--printer", options.chosen);
    line.callback([printer] { printer.Require(); });
    AddPriorityAndSender(line, options);
}

void AddRequest(CLI::App& line, BuildOptions& options) {
    line.add_option("--event", options.event, "The event that the sender waits for.")
        ->option_text("NAME");
    line.add_flag("--is-reply", options.isReply, "The message is a reply.");
    AddPriorityAndSender(line, options);
}

void AddReply(CLI::App& line, BuildOptions& options) {
    AddWord(line, "REPLY", options.reply, REPLIES,
            "How the command was received: ok, ngcmd or ngqueue.")
        ->required();
    line.add_option("--param", options.param, "What else there is to say.")->option_text("TEXT");
}

void AddAnswer(CLI::App& line, BuildOptions& options) {
    AddWord(line, "RESULT", options.result, RESULTS,
            "How the job ended: success_none, success_new, failure, unexecute, failure_incomp, "
            "lock_timeout or lock_timeout_incomp.")
        ->required();
    const PrinterChoiceOptions printer = AddPrinterChoice(line, "--printer", options.chosen);
    CLI::Option* mac = AddText(line, "--mac", options.mac, "ADDRESS",
                               "The MAC address of a printer, instead of one of the list.")
                           ->excludes(printer.serial)
                           ->excludes(printer.nth);
    CLI::Option* ipChanged =
        line.add_flag("--ip-changed", options.ipChanged, "The printer's IP address has changed.");
    line.add_flag("--last", options.isLast, "It is the last result.");
    const CLI::Option* detch =
        line.add_flag("--detch", options.isDetch,
                      "The result is the other background tool's, which names no printer.")
            ->excludes(printer.serial)
            ->excludes(printer.nth)
            ->excludes(mac)
            ->excludes(ipChanged);
    line.callback([=] {
        if (mac->count() == 0 && detch->count() == 0 && !printer.IsGiven()) {
            throw CLI::RequiredError("--printer, --mac or --detch");
        }
    });
}

BNTCOMMAND_PRIORITY PriorityOf(const BuildOptions& options) {
    return ValueOf<BNTCOMMAND_PRIORITY>(options.priority, PRIORITIES);
}

unsigned int BuildGet(XmlLayer& xml, BuildOptions& options, std::string* message) {
    return xml.CreateBNTGetCommand(message, PriorityOf(options), options.printer,
                                   options.processId);
}

unsigned int BuildExport(XmlLayer& xml, BuildOptions& options, std::string* message) {
    return xml.CreateBNTScheduledExportCommand(message, PriorityOf(options), options.printer,
                                               options.processId);
}

unsigned int BuildEnd(XmlLayer& xml, BuildOptions& options, std::string* message) {
    return xml.CreateBNTEndCommand(message, options.processId);
}

template <BNTCOMMAND_TYPE TYPE>
unsigned int BuildRequest(XmlLayer& xml, BuildOptions& options, std::string* message) {
    return xml.CreateBNTRequestCommand(message, TYPE, PriorityOf(options), options.isReply,
                                       options.processId, options.event.c_str());
}

unsigned int BuildReply(XmlLayer& xml, BuildOptions& options, std::string* message) {
    return xml.CreateBNTRetCommand(message, ValueOf<BNTCMDRET_TYPE>(options.reply, REPLIES),
                                   options.param);
}

unsigned int BuildAnswer(XmlLayer& xml, BuildOptions& options, std::string* message) {
    return xml.CreateResultCommand(message, options.printer,
                                   ValueOf<BNTRESULT_TYPE>(options.result, RESULTS),
                                   !options.isDetch, options.ipChanged, options.isLast);
}

struct Kind {
    const char* name;
    bool isToApplication;  // else to the background tool
    const char* meaning;
    void (*addOptions)(CLI::App& line, BuildOptions& options);
    // The message's size as CCommonXmlPxd gives it.
    unsigned int (*build)(XmlLayer& xml, BuildOptions& options, std::string* message);
};

constexpr auto KINDS = std::to_array<Kind>({
    {"get", false, "The command to fetch a printer's data.", AddPrinterCommand, BuildGet},
    {"export", false, "The command to fetch a printer's data for the scheduled export.",
     AddPrinterCommand, BuildExport},
    {"end", false, "The command to end.", AddSender, BuildEnd},
    {"start", false, "The request to start.", AddRequest, BuildRequest<BNTCOMMAND_REQUEST_START>},
    {"stop", false, "The request to end.", AddRequest, BuildRequest<BNTCOMMAND_REQUEST_END>},
    {"result", false, "The request for the result.", AddRequest,
     BuildRequest<BNTCOMMAND_REQUEST_RESULT>},
    {"reply", true, "The reply to a command.", AddReply, BuildReply},
    {"answer", true, "The result of a job.", AddAnswer, BuildAnswer},
});

void AddDelivery(CLI::App& line, BuildOptions& options) {
    CLI::Option* send = line.add_flag("--send", options.send,
                                      "Send the message through the receiver's named pipe.");
    CLI::Option* service =
        line.add_flag("--service", options.isService,
                      "The pipe is that of the service's side, not the application's.")
            ->needs(send);
    AddText(line, "--pipe", options.pipe, "PATH", "Another pipe.")->needs(send)->excludes(service);
    if (CLI::Option* detch = line.get_option_no_throw("--detch")) {
        service->excludes(detch);  // that tool has one pipe
    }
    line.add_flag("--show-secrets", options.showSecrets, "Print the printer's password too.")
        ->excludes(send);
    line.footer("Exit codes: 0 done, 1 failed, no such printer or not sent, 2 wrong usage.");
}

// Answers hold nothing of a printer but its MAC address.
void SetPrinter(const Kind& kind, BuildOptions& options) {
    if (!options.chosen.serial.empty() || options.chosen.nth != 0) {
        PrinterListFile file;
        Printers printers = file.Read().value_or(Printers());
        const CCommonPrinterInfo& found = *FindPrinter(file, printers, options.chosen);
        if (!kind.isToApplication) {
            options.printer = found;
            return;
        }
        found.GetMacAddress(&options.mac);
        if (options.mac.empty()) {
            throw CommandError("the printer has no MAC address, by which an answer names it");
        }
    }
    SetMacAddress(options.printer, {"--mac", options.mac});
}

// Whether there was one.
bool HidePassword(CCommonPrinterInfo& printer) {
    std::string password;
    printer.GetAuthInfo(&password);
    if (!password.empty()) {
        printer.SetAuthInfo(HIDDEN_PASSWORD);
    }
    return !password.empty();
}

// Sets the pipe too, unless the line names one.
std::string BuildMessage(const Kind& kind, BuildOptions& options) {
    const LibraryOutput quiet;
    XmlLayer xml;
    xml.Bind();
    std::string message;
    if (kind.build(xml, options, &message) == FAILED) {
        throw CommandError(std::string("cannot build the message ")
                               .append(kind.name)
                               .append(" from the system settings and the templates in ")
                               .append(Visible(GetPluginResourcesPath()))
                               .append("/xmls"));
    }
    std::string in;
    std::string out;
    if (options.send && options.pipe.empty()) {
        if (!(options.isDetch ? xml.GetDetchPipeName(&in)
                              : xml.GetBNTPipeName(&in, &out, !options.isService))) {
            throw CommandError("the system settings do not tell the names of the pipes");
        }
        options.pipe = kind.isToApplication ? in : out;
    }
    return message;
}

void Build(const Kind& kind, BuildOptions& options) {
    CheckHeldByXml({"--event", options.event});
    CheckHeldByXml({"--param", options.param});
    SetPrinter(kind, options);
    const bool isHidden = !options.send && !options.showSecrets && HidePassword(options.printer);
    const std::string message = BuildMessage(kind, options);
    if (options.send) {
        SendMessage(options.pipe, message, PATIENCE);
        // Not a result: nothing that is wrong with standard output makes a sent message fail.
        std::fprintf(stderr, "tallyquist: %s: %s sent, %zu bytes\n", Visible(options.pipe).c_str(),
                     kind.name, message.size());
        return;
    }
    WriteStandardOutput(message.ends_with('\n') ? message : message + "\n");
    if (isHidden) {
        std::fprintf(stderr, "tallyquist: the password is shown as %s without --show-secrets\n",
                     HIDDEN_PASSWORD);
    }
}

Command AddBuildCommand(CLI::App& parent) {
    const auto options = std::make_shared<BuildOptions>();
    CLI::App* line = AddCommandLine(parent, "build", "Build a message, and print or send it.");
    line->require_subcommand(1);
    std::vector<Command> commands;
    for (const Kind& kind : KINDS) {
        CLI::App* command = AddCommandLine(*line, kind.name, kind.meaning);
        kind.addOptions(*command, *options);
        AddDelivery(*command, *options);
        commands.push_back({command, [options, &kind] { Build(kind, *options); }});
    }
    return {line, RunOneOf(std::move(commands))};
}

Command AddParseCommand(CLI::App& parent) {
    const auto options = std::make_shared<ShowMessagesOptions>();
    CLI::App* line = AddCommandLine(parent, "parse", "Show what messages say.");
    line->add_option("FILE", options->path,
                     "The messages, one after the other; a named pipe is read until nobody writes "
                     "to it any more, unless told otherwise. None, or -, reads standard input.")
        ->type_name("")
        ->check(NotEmpty());
    line->add_option("--count", options->count, "End after so many messages.")
        ->option_text("NUMBER")
        ->check(CLI::Range(size_t{1}, std::numeric_limits<size_t>::max()));
    line->add_flag("--follow", options->follow,
                   "Go on when nobody writes to the named pipe any more, and wait for the next.");
    line->add_flag(
        "--json", options->json,
        "Print an array of objects for programs, at the end; with --follow an object per "
        "line, at once.");
    line->add_flag("--show-secrets", options->showSecrets, "Show passwords too.");
    line->footer(
        "What is no message, or cannot be read, is told on standard error, and the rest is read.\n"
        "Between two runs on one pipe messages can get lost: --follow and --count hold it open, so\n"
        "that several senders can write one after the other.\n"
        "Exit codes: 0 done, 1 failed, not all was read or there was no message, 2 wrong usage.");
    return {line, [options] { ShowMessages(*options); }};
}

}  // namespace

Command AddMessageCommand(CLI::App& program) {
    CLI::App* line = AddCommandLine(
        program, "message", "Build, send or show messages to and from the background tools.");
    line->require_subcommand(1);
    return {line, RunOneOf({AddBuildCommand(*line), AddParseCommand(*line)})};
}

}  // namespace tallyquist
