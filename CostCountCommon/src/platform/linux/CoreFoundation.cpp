// Core Foundation values. A reference of the interface is the address of an Object.
#include <atomic>
#include <cstring>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "CostCountCommon/src/platform/Platform.h"
#include "compatible/Utf8.h"

namespace {

// A string or a URL: the text of the one, the path of the other. Never changed, so that threads
// share it; only the count is.
struct Object {
    explicit Object(std::string content) : text(std::move(content)) {}

    const std::string text;
    mutable std::atomic<size_t> references{1};
};

const Object* ObjectOf(CFTypeRef reference) {
    return static_cast<const Object*>(reference);
}

template <typename Reference>
Reference NewObject(std::string text) {
    const CFTypeRef object = std::make_unique<Object>(std::move(text)).release();
    return static_cast<Reference>(object);
}

}  // namespace

CFTypeRef CFRetain(CFTypeRef object) {
    ObjectOf(object)->references.fetch_add(1, std::memory_order_relaxed);
    return object;
}

void CFRelease(CFTypeRef object) {
    // Whoever takes the last reference has to see all that other threads did with the object.
    if (ObjectOf(object)->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete ObjectOf(object);
    }
}

unsigned char CFURLGetFileSystemRepresentation(CFURLRef url, unsigned char /*resolveAgainstBase*/,
                                               unsigned char* buffer, long size) {
    const std::string& path = ObjectOf(url)->text;
    if (size < 0 || path.size() >= static_cast<size_t>(size)) {
        return 0;
    }
    std::memcpy(buffer, path.c_str(), path.size() + 1);
    return 1;
}

namespace platform {

CFStringRef CreateString(const char* text) try {
    return IsUtf8(text) ? NewObject<CFStringRef>(text) : nullptr;
} catch (const std::exception&) {
    return nullptr;  // out of memory
}

// A path of this system is the same with and without knowing that it is a folder's.
CFURLRef CreateFileUrl(const std::string& path, bool /*isFolder*/) try {
    const bool isPath = !path.empty() && path.find('\0') == std::string::npos && IsUtf8(path);
    return isPath ? NewObject<CFURLRef>(path) : nullptr;
} catch (const std::exception&) {
    return nullptr;  // out of memory
}

std::string TextOf(CFStringRef string) {
    return ObjectOf(string)->text;
}

}  // namespace platform
