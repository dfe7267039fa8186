// The bytes of a row on their way to the stream: a buffer that cells are appended to and that is
// used again for the next row.
#pragma once

#include <cstddef>
#include <memory>

class RowBuffer {
public:
    // Room for `size` more bytes, behind those that are there; null when memory is exhausted, and
    // then what is there stays.
    char* Reserve(size_t size) {
        return size <= m_capacity - m_size || Grow(size) ? m_bytes.get() + m_size : nullptr;
    }

    // Takes in the bytes that were written from what Reserve gave up to `end`.
    void Append(const char* end) { m_size = static_cast<size_t>(end - m_bytes.get()); }

    const char* Bytes() const { return m_bytes.get(); }
    size_t Size() const { return m_size; }
    void Clear() { m_size = 0; }

private:
    bool Grow(size_t size);

    std::unique_ptr<char[]> m_bytes;
    size_t m_size = 0;
    size_t m_capacity = 0;
};
