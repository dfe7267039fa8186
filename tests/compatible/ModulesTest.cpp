#include <gtest/gtest.h>

#include <filesystem>

#include "compatible/osFree.h"
#include "tests/support/ExporterModule.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

TEST(Modules, LoadFromABundleFolderAndFromASharedObject) {
    const std::string code = EXPORTER_PLUGIN;
    const std::string bundle = fs::path(code).parent_path().parent_path().parent_path();
    for (const std::string& path : {code, bundle, bundle + "/"}) {
        void* module = LoadLibrary(path.c_str());
        ASSERT_NE(nullptr, module) << path;
        const auto dispose = reinterpret_cast<decltype(&DataExporterDispose)>(
            GetProcAddress(module, "DataExporterDispose"));
        ASSERT_NE(nullptr, dispose);
        EXPECT_EQ(nullptr, GetProcAddress(module, nullptr));
        EXPECT_EQ(nullptr, GetProcAddress(module, "fopen")) << "of a library it is linked to";
        FreeLibrary(module);
        dispose(nullptr);  // functions outlive the handle
    }
    FreeLibrary(nullptr);
    EXPECT_EQ(nullptr, GetProcAddress(nullptr, "main"));
}

TEST(Modules, RefuseWhatIsNoModule) {
    const TempFolder folder;
    WriteFile(folder.Path("text.so"), "no shared object");
    fs::create_directories(folder.Path("empty.plugin/Contents/Linux"));
    fs::copy_file(EXPORTER_PLUGIN, folder.Path("\xFF.so"));  // not UTF-8
    for (const std::string& path :
         {folder.Path("text.so"), folder.Path("empty.plugin"), folder.Path("none"),
          folder.Path("\xFF.so"), std::string(),
          std::string("libm.so.6")}) {  // a bare name is not looked up among the system's libraries
        EXPECT_EQ(nullptr, LoadLibrary(path.c_str())) << path;
    }
    EXPECT_EQ(nullptr, LoadLibrary(nullptr));
}

}  // namespace
