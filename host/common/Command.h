// How the commands of the program come onto its command line.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace tallyquist {

// A command whose options have been added to the program's command line.
struct Command {
    CLI::App* line;             // lives as long as the program's
    std::function<void()> run;  // called after parsing; throws what Errors.h says
};

// A new command without options but --help and --version.
CLI::App* AddCommandLine(CLI::App& program, const std::string& name, const std::string& meaning);

// Runs the one of the commands that was parsed.
std::function<void()> RunOneOf(std::vector<Command> commands);

// An empty value, such as an unset variable of a script gives, is a mistake.
CLI::Validator NotEmpty();

// An option with a value; `shape` is how the help shows the value.
template <typename Value>
CLI::Option* AddText(CLI::App& line, const char* names, Value& value, const char* shape,
                     const char* meaning) {
    return line.add_option(names, value, meaning)->option_text(shape)->check(NotEmpty());
}

}  // namespace tallyquist
