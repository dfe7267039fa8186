// The folder walk that the plug-in locations, the resources and the plug-in URLs share. Nothing
// here logs, so that the logger can find its own plug-in.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace bundle {

std::string_view LastComponent(std::string_view path);
std::string WithoutLastComponents(std::string_view path, int count);
std::string Joined(std::string_view folder, std::string_view name);

// Whether this process is a tool in the application's Helpers folder.
bool IsHelper();

// Both are for login items, whose bundle is MAIN.app/Contents/Library/LoginItems/ITEM.app; they
// give nothing for a path outside any LoginItems folder.
//
// From the login item's Contents, or from a folder in it, up to the main application's Contents.
std::optional<std::string> MainContentsFromContents(std::string_view contents);
std::optional<std::string> MainContentsFromFolder(std::string_view folder);

// Where the sibling plug-ins lie; empty when that cannot be told.
std::string PluginFolder();

}  // namespace bundle
