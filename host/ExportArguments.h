// The command line of `tallyquist export`.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "host/export/ExportCommand.h"

namespace tallyquist {

// What CLI11 fills; Options turns it into what the command takes.
class ExportArguments {
public:
    // Adds the command to the program's command line. The object must outlive its parsing.
    explicit ExportArguments(CLI::App& program);

    bool IsChosen() const { return m_command->parsed(); }

    // Throws UsageError.
    ExportOptions Options() const;

private:
    void AddInputOptions();
    void AddSelectionOptions();
    void AddOutputOptions();
    template <typename Value>
    CLI::Option* AddText(const char* names, Value& value, const char* shape, const char* meaning);

    CLI::App* m_command;
    ExportOptions m_options;
    std::string m_kind;
    std::string m_values;
    std::vector<std::string> m_types;
};

}  // namespace tallyquist
