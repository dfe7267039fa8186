#include "JobCostExporter/RowBuffer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

bool RowBuffer::Grow(size_t size) {
    constexpr size_t LEAST = 8192;
    const size_t needed = m_size + size;
    if (needed < size) {
        return false;
    }
    // Twice what was there, so that slowly growing rows do not each cost an allocation; when there
    // is no memory for that, just enough.
    size_t capacity = std::max({LEAST, needed, m_capacity * 2});
    std::unique_ptr<char[]> bytes(new (std::nothrow) char[capacity]);
    if (bytes == nullptr) {
        if (m_size == 0) {
            m_bytes.reset();
            m_capacity = 0;
        }
        capacity = needed;
        bytes.reset(new (std::nothrow) char[capacity]);
    }
    if (bytes == nullptr) {
        return false;
    }
    if (m_size != 0) {
        std::memcpy(bytes.get(), m_bytes.get(), m_size);
    }
    m_bytes = std::move(bytes);
    m_capacity = capacity;
    return true;
}
