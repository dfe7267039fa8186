#include "JobCostExporter/CellBuffer.h"

char* CellBuffer::Grow(size_t size) {
    // Twice what is asked for, so that slowly growing cells do not each cost an allocation; exactly
    // what is asked for when that is too much.
    constexpr size_t LEAST = 1024;
    m_bytes.reset();
    m_capacity = 0;
    for (const size_t capacity : {size < LEAST ? LEAST : size * 2, size}) {
        if (capacity >= size) {
            m_bytes.reset(new (std::nothrow) char[capacity]);
        }
        if (m_bytes != nullptr) {
            m_capacity = capacity;
            break;
        }
    }
    return m_bytes.get();
}
