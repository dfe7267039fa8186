#include "host/common/Command.h"

#include <utility>

#include "host/Version.h"

namespace tallyquist {

CLI::App* AddCommandLine(CLI::App& program, const std::string& name, const std::string& meaning) {
    CLI::App* line = program.add_subcommand(name, meaning);
    line->set_version_flag("--version", "tallyquist " TALLYQUIST_VERSION);
    return line;
}

std::function<void()> RunOneOf(std::vector<Command> commands) {
    return [commands = std::move(commands)] {
        for (const Command& command : commands) {
            if (command.line->parsed()) {
                command.run();
            }
        }
    };
}

CLI::Validator NotEmpty() {
    return {[](const std::string& text) {
                return std::string(text.empty() ? "must not be empty" : "");
            },
            ""};
}

}  // namespace tallyquist
