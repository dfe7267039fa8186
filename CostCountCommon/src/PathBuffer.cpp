#include "CostCountCommon/src/PathBuffer.h"

#include <cstring>

#include "compatible/osFree.h"

int PathBuffer::Assign(const std::string& path) {
    return strcpy_s(m_text, SIZE, path.c_str());
}

bool PathBuffer::Append(const std::string& component) {
    const size_t length = std::strlen(m_text);
    const bool isSeparated = length > 0 && m_text[length - 1] == '/';
    const std::string added = isSeparated ? component : std::string("/").append(component);
    // What does not fit leaves the terminator where it was.
    return strcpy_s(m_text + length, SIZE - length, added.c_str()) == 0;
}
