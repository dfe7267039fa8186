#include "CostCountCommon/src/platform/Platform.h"

namespace platform {

size_t WriteUnlocked(const void* data, size_t size, FILE* stream) {
    return fwrite_unlocked(data, 1, size, stream);
}

}  // namespace platform
