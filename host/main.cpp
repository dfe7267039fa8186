// The program `tallyquist`: the library's services on a command line.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/Version.h"
#include "host/common/Errors.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"
#include "host/data/CapsCommand.h"
#include "host/data/CostsCommand.h"
#include "host/data/PrintersCommand.h"
#include "host/data/UserCommand.h"
#include "host/export/ExportArguments.h"
#include "host/info/CompletionCommand.h"
#include "host/info/PapersCommand.h"
#include "host/info/PathsCommand.h"
#include "host/input/RowSource.h"
#include "host/messages/MessageCommand.h"
#include "host/settings/DbCommand.h"
#include "host/settings/SettingsCommand.h"

namespace {

enum ExitCode { DONE = 0, FAILED = 1, WRONG_USAGE = 2 };

int Complain(ExitCode code, const char* text) {
    std::fprintf(stderr, "tallyquist: %s\n", text);
    return code;
}

// A parent may have closed them; then a file opened later would take the place of standard error
// and get its messages. What is written to a closed one fails as it would without this.
void KeepStandardDescriptors() {
    for (int descriptor = open("/dev/null", O_RDONLY);
         descriptor >= 0 && descriptor <= STDERR_FILENO;) {
        descriptor = open("/dev/null", O_RDONLY);
    }
}

constexpr auto ADD_COMMANDS = std::to_array<tallyquist::Command (*)(CLI::App&)>({
    tallyquist::AddExportCommand,
    tallyquist::AddPapersCommand,
    tallyquist::AddPathsCommand,
    tallyquist::AddSettingsCommand,
    tallyquist::AddDbCommand,
    tallyquist::AddPrintersCommand,
    tallyquist::AddCostsCommand,
    tallyquist::AddCapsCommand,
    tallyquist::AddUserCommand,
    tallyquist::AddMessageCommand,
    tallyquist::AddCompletionCommand,
});

// Sends the user to the help of the command at hand, or of the program when there is none.
std::string UsageMessage(const CLI::App* program, const CLI::Error& error) {
    std::string reason = tallyquist::Visible(error.what());
    std::string line = program->get_name();
    const CLI::App* command = program;
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
        line.append(" ").append(command->get_name());
    }
    if (command->get_require_subcommand_min() != 0 && command->remaining_size() != 0) {
        reason = tallyquist::Printable(command->remaining().front()).append(" is not a command");
    }
    return std::string("tallyquist: ")
        .append(reason)
        .append("\nRun '")
        .append(line)
        .append(" --help' for more information.\n");
}

// Prints the help or the version that was asked for, or what is wrong.
int Answer(const CLI::App& program, const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream complaint;
    const int code = program.exit(error, out, complaint);
    tallyquist::WriteStandardOutput(out.str());
    std::fputs(complaint.str().c_str(), stderr);
    return code == 0 ? DONE : WRONG_USAGE;
}

// The arguments from the last to the first, as the command line library takes them. It would take
// the argument after "--option=" for the option's value, which is the empty text.
std::vector<std::string> ReversedArguments(int argc, char** argv) {
    std::vector<std::string> arguments;
    bool areOptions = true;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        areOptions = areOptions && argument != "--";
        const bool isEmptyValue =
            areOptions && argument.starts_with("--") && argument.find('=') == argument.size() - 1;
        arguments.emplace_back(argument.substr(0, argument.size() - (isEmptyValue ? 1 : 0)));
        if (isEmptyValue) {
            arguments.emplace_back();
        }
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

int Run(int argc, char** argv) {
    CLI::App program("Printer job-cost accounting.", "tallyquist");
    program.set_version_flag("--version", "tallyquist " TALLYQUIST_VERSION);
    program.require_subcommand(1);
    program.failure_message(UsageMessage);
    std::vector<tallyquist::Command> commands;
    commands.reserve(ADD_COMMANDS.size());
    for (const auto add : ADD_COMMANDS) {
        commands.push_back(add(program));
    }
    try {
        program.parse(ReversedArguments(argc, argv));
    } catch (const CLI::ParseError& error) {
        return Answer(program, error);
    }
    tallyquist::RunOneOf(std::move(commands))();
    return DONE;
}

}  // namespace

int main(int argc, char** argv) {
    KeepStandardDescriptors();
    // A file-size limit and a reader that went away are failed writes, told like any other.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return Run(argc, argv);
    } catch (const tallyquist::UsageError& error) {
        return Complain(WRONG_USAGE, error.what());
    } catch (const tallyquist::OptionError& error) {
        return Complain(WRONG_USAGE, error.what());
    } catch (const std::bad_alloc&) {
        return Complain(FAILED, "not enough memory");
    } catch (const std::exception& error) {
        return Complain(FAILED, error.what());
    }
}
