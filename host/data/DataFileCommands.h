// The commands that all kinds of data files with entries share.
#pragma once

#include "host/common/Command.h"
#include "host/data/FileKind.h"

namespace tallyquist {

// Each adds a command below `parent`.
Command AddListCommand(CLI::App& parent, const FileKind& kind);
Command AddShowCommand(CLI::App& parent, const FileKind& kind);
// `show`, which lists the files when it gets no name.
Command AddListOrShowCommand(CLI::App& parent, const FileKind& kind);
// `columns` tells which columns a table has, for the help.
Command AddImportCommand(CLI::App& parent, const FileKind& kind, const char* columns);
Command AddExportCommand(CLI::App& parent, const FileKind& kind);

}  // namespace tallyquist
