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
        EXPECT_NE(nullptr, GetProcAddress(module, "DataExporterOpen"));
        EXPECT_EQ(nullptr, GetProcAddress(module, "dataExporterOpen"));
        EXPECT_EQ(nullptr, GetProcAddress(module, nullptr));
        EXPECT_EQ(nullptr, GetProcAddress(module, "fopen")) << "of a library it is linked to";
        FreeLibrary(module);
    }
}

TEST(Modules, FunctionsOutliveTheHandle) {
    void* module = LoadLibrary(EXPORTER_PLUGIN);
    const auto dispose = reinterpret_cast<decltype(&DataExporterDispose)>(
        GetProcAddress(module, "DataExporterDispose"));
    FreeLibrary(module);
    dispose(nullptr);
    FreeLibrary(nullptr);
}

TEST(Modules, RefuseWhatIsNoModule) {
    const TempFolder folder;
    WriteFile(folder.Path("text.so"), "no shared object");
    fs::create_directories(folder.Path("empty.plugin/Contents/Linux"));
    for (const std::string& path :
         {folder.Path("text.so"), folder.Path("empty.plugin"), folder.Path("none"), std::string(),
          std::string("libm.so.6")}) {  // a bare name is not looked up among the system's libraries
        EXPECT_EQ(nullptr, LoadLibrary(path.c_str())) << path;
    }
    fs::copy_file(EXPORTER_PLUGIN, folder.Path("\xFF.so"));
    EXPECT_EQ(nullptr, LoadLibrary(folder.Path("\xFF.so").c_str())) << "not UTF-8";
    EXPECT_EQ(nullptr, LoadLibrary(nullptr));
    EXPECT_EQ(nullptr, GetProcAddress(nullptr, "main"));
}

}  // namespace
