// Events and waits. These stand above the rest of this folder: on the library's events.
#include <fcntl.h>

#include <exception>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "CostCountCommon/include/CEventHandle.h"
#include "CostCountCommon/include/CHandleSupport.h"
#include "compatible/osFree.h"

namespace {

CEventHandle* EventOf(void* handle) {
    return dynamic_cast<CEventHandle*>(static_cast<CHandle*>(handle));
}

// Handles are pointers to the common base, whatever they are.
void* HandleOf(std::unique_ptr<CEventHandle> event) {
    CHandle* handle = event.release();
    return handle;
}

}  // namespace

void* CreateEvent(void*, bool, bool, const char* name) {
    const bool isAnonymous = name == nullptr || *name == '\0';
    std::unique_ptr<CEventHandle> event(new (std::nothrow) CEventHandle);
    if (event == nullptr ||
        !event->Open(isAnonymous ? "core" : name, O_CREAT | O_EXCL, 0666, 0, isAnonymous)) {
        return nullptr;
    }
    return HandleOf(std::move(event));
}

void* OpenEvent(unsigned, bool, const char* name) try {
    std::unique_ptr<CEventHandle> event(new (std::nothrow) CEventHandle);
    if (event == nullptr || name == nullptr || *name == '\0') {
        return nullptr;
    }
    // The short name first: a semaphore that is called so without the prefix is no event.
    if (!event->Open(CEventHandle::FullNameOf(name).c_str(), 0) && !event->Open(name, 0)) {
        return nullptr;
    }
    return HandleOf(std::move(event));
} catch (const std::exception&) {
    return nullptr;  // out of memory
}

bool SetEvent(void* event) {
    CEventHandle* handle = EventOf(event);
    return handle != nullptr && handle->Post() == 0;
}

void ResetEvent(void*) {}

int WaitForSingleObject(void* handle, unsigned ms) {
    return static_cast<int>(CHandleSupport::WaitForSingleObject(handle, ms));
}

int WaitForMultipleObjects(unsigned long count, void* const* handles, bool waitAll, unsigned ms) {
    return static_cast<int>(CHandleSupport::WaitForMultipleObjects(count, handles, waitAll, ms));
}
