// Loads the code of bundle folders (NAME.plugin/Contents/Linux/NAME.so) and of shared objects.
#include <dlfcn.h>

#include <filesystem>
#include <system_error>

#include "CostCountCommon/src/platform/Platform.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

fs::path CodeOf(const fs::path& path) {
    std::error_code error;
    if (!fs::is_directory(path, error)) {
        return path;
    }
    const fs::path name = (path.has_filename() ? path : path.parent_path()).stem();
    return path / "Contents" / "Linux" / (name.string() + ".so");
}

void Explain(std::string* reason, const std::string& text) {
    if (reason != nullptr) {
        *reason = text;
    }
}

}  // namespace

void* LoadModule(const char* path, std::string* reason) {
    // Absolute, because dlopen searches the system's library folders for a name without a slash.
    std::error_code error;
    const fs::path code = fs::canonical(CodeOf(path), error);
    if (error) {
        Explain(reason, CodeOf(path).string() + ": " + error.message());
        return nullptr;
    }
    // NODELETE: releasing the handle must not take away code that others still point into.
    void* module = dlopen(code.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (module == nullptr) {
        const char* message = dlerror();
        Explain(reason, message != nullptr ? message : code.string() + ": cannot be loaded");
    }
    return module;
}

// dlsym also searches the libraries that the module is linked to. An entry that the module lacks
// must not be answered with a function of the same name that means something else.
void* FindFunction(void* module, const char* name) {
    void* function = dlsym(module, name);
    Dl_info info{};
    void* owner = nullptr;
    return function != nullptr && dladdr1(function, &info, &owner, RTLD_DL_LINKMAP) != 0 &&
                   owner == module
               ? function
               : nullptr;
}

void ReleaseModule(void* module) {
    dlclose(module);
}

}  // namespace platform
