#include "host/common/Command.h"

#include "host/Version.h"

namespace tallyquist {

CLI::App* AddCommandLine(CLI::App& program, const std::string& name, const std::string& meaning) {
    CLI::App* line = program.add_subcommand(name, meaning);
    line->set_version_flag("--version", "tallyquist " TALLYQUIST_VERSION);
    return line;
}

CLI::Validator NotEmpty() {
    return {[](const std::string& text) {
                return std::string(text.empty() ? "must not be empty" : "");
            },
            ""};
}

}  // namespace tallyquist
