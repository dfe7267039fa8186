// The program `tallyquist`: the library's services on a command line.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <string>

#include "host/ExportArguments.h"
#include "host/Version.h"
#include "host/export/Errors.h"
#include "host/input/RowSource.h"

namespace {

enum ExitCode { DONE = 0, FAILED = 1, WRONG_USAGE = 2 };

int Complain(ExitCode code, const char* text) {
    std::fprintf(stderr, "tallyquist: %s\n", text);
    return code;
}

// A parent may have closed them; then a file opened later would take the place of standard error
// and get its messages.
void KeepStandardDescriptors() {
    for (int descriptor = open("/dev/null", O_RDWR);
         descriptor >= 0 && descriptor <= STDERR_FILENO;) {
        descriptor = open("/dev/null", O_RDWR);
    }
}

int Run(int argc, char** argv) {
    CLI::App program("Printer job-cost accounting.", "tallyquist");
    program.set_version_flag("--version", "tallyquist " TALLYQUIST_VERSION);
    program.require_subcommand(1);
    program.failure_message([](const CLI::App*, const CLI::Error& error) {
        return std::string("tallyquist: ") + error.what() +
               "\nRun 'tallyquist export --help' for more information.\n";
    });
    const tallyquist::ExportArguments exportArguments(program);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? DONE : WRONG_USAGE;
    }
    if (exportArguments.IsChosen()) {
        tallyquist::RunExport(exportArguments.Options());
    }
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
