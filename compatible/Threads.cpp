// Threads and handles. These stand above the rest of this folder: on the library's threads.
#include <memory>
#include <new>

#include "CostCountCommon/include/CThreadHandle.h"
#include "compatible/osFree.h"

void* _beginthreadex(void*, unsigned, unsigned (*start)(void*), void* argument, unsigned,
                     unsigned*) {
    std::unique_ptr<CThreadHandle> thread(new (std::nothrow) CThreadHandle);
    if (thread == nullptr || start == nullptr || thread->Create(start, argument) != 0) {
        return nullptr;
    }
    CHandle* handle = thread.release();
    return handle;
}

unsigned long GetThreadId(void* thread) {
    const auto* handle = dynamic_cast<CThreadHandle*>(static_cast<CHandle*>(thread));
    // As in GetCurrentThreadId.
    return handle != nullptr ? reinterpret_cast<unsigned long>(handle->GetThread()) : 0;
}

int CloseHandle(void* handle) {
    if (handle == nullptr) {
        return 0;
    }
    delete static_cast<CHandle*>(handle);
    return 1;
}
