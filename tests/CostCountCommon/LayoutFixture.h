// Applications and tools in a folder of their own, and what a process that runs in them finds.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

class LayoutFixture : public testing::Test {
protected:
    // Bundle services know a bundle by this file.
    static constexpr const char* INFO_PLIST = R"(<plist version="1.0"><dict>
<key>CFBundleDevelopmentRegion</key><string>en</string>
<key>CFBundleExecutable</key><string>probe</string>
<key>CFBundlePackageType</key><string>APPL</string>
<key>CFBundleVersion</key>
  <string>1.2 &lt;&amp;amp;&gt;</string>
</dict></plist>
)";
    // Of interest wherever a process runs.
    static constexpr const char* KEYS =
        " bnt_path applogger_path install_path sconp_path GetPluginResourcesPath"
        " CreatePluginFolderURLRef CreatePluginURLRef";

    void CreateBundle(const std::string& bundle) {
        std::filesystem::create_directories(m_root.Path(bundle + "/Contents/Resources"));
        WriteFile(m_root.Path(bundle + "/Contents/Info.plist"), INFO_PLIST);
    }

    // What a process whose executable lies in `folder` of the layout finds; "ROOT" stands for the
    // folder R.
    std::string Probe(const std::string& folder, int type, const std::string& keys) {
        std::filesystem::create_directories(m_root.Path(folder));
        std::filesystem::copy_file(LOCATION_PROBE, m_root.Path(folder + "/probe"),
                                   std::filesystem::copy_options::overwrite_existing);
        return Run(folder + "/probe " + std::to_string(type) + " " + keys);
    }

    std::string Run(const std::string& command) {
        const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(m_root.Path(command).c_str(), "r"),
                                                           pclose);
        std::string text;
        for (int c = 0; (c = std::fgetc(output.get())) != EOF;) {
            text += static_cast<char>(c);
        }
        const std::string root = m_root.Path("R");
        for (size_t at = 0; (at = text.find(root, at)) != std::string::npos;) {
            text.replace(at, root.size(), "ROOT");
        }
        return text;
    }

    TempFolder m_root;
    ScopedVariable m_contents{"TALLYQUIST_CONTENTS", nullptr};
};
