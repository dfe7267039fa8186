// The program `tallyquist`: the library's services on a command line.
#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

#include "host/ExportArguments.h"
#include "host/Version.h"
#include "host/export/Errors.h"

namespace {

enum ExitCode { DONE = 0, FAILED = 1, WRONG_USAGE = 2 };

int Complain(ExitCode code, const char* text) {
    std::fprintf(stderr, "tallyquist: %s\n", text);
    return code;
}

int Run(int argc, char** argv) {
    CLI::App program("Printer job-cost accounting.", "tallyquist");
    program.set_version_flag("--version", "tallyquist " TALLYQUIST_VERSION);
    program.require_subcommand(1);
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
    // A file-size limit and a reader that went away are failed writes, told like any other.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return Run(argc, argv);
    } catch (const tallyquist::UsageError& error) {
        return Complain(WRONG_USAGE, error.what());
    } catch (const std::bad_alloc&) {
        return Complain(FAILED, "not enough memory");
    } catch (const std::exception& error) {
        return Complain(FAILED, error.what());
    }
}
