// The text of one cell while it is built: a growing buffer that is reused from cell to cell.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>

class CellBuffer {
public:
    // Room for `size` bytes, of which the caller fills some; null when memory is exhausted. What an
    // earlier call gave is lost.
    char* Reserve(size_t size) { return size <= m_capacity ? m_bytes.get() : Grow(size); }

private:
    char* Grow(size_t size);

    std::unique_ptr<char[]> m_bytes;
    size_t m_capacity = 0;
};
