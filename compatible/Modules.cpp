#include <exception>

#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/Utf8.h"
#include "compatible/osFree.h"

void* LoadLibrary(const char* path) try {
    return path != nullptr && IsUtf8(path) ? platform::LoadModule(path, nullptr) : nullptr;
} catch (const std::exception&) {
    return nullptr;  // out of memory
}

void* GetProcAddress(void* module, const char* name) {
    return module != nullptr && name != nullptr ? platform::FindFunction(module, name) : nullptr;
}

void FreeLibrary(void* module) {
    if (module != nullptr) {
        platform::ReleaseModule(module);
    }
}
