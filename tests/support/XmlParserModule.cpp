#include "tests/support/XmlParserModule.h"

#include <cstring>
#include <stdexcept>
#include <string>

#include "compatible/osFree.h"

XMLPXD_FUNCLIST LoadXmlParser(const char* path) {
    XMLPXD_FUNCLIST table{};
    void* module = LoadLibrary(path);
    for (const XmlPxdEntry& entry : XMLPXD_LOAD_ORDER) {
        void* const function = reinterpret_cast<void*>(GetProcAddress(module, entry.name));
        if (function == nullptr) {
            throw std::runtime_error(std::string(path).append(" lacks ").append(entry.name));
        }
        std::memcpy(reinterpret_cast<char*>(&table) + entry.offset, &function, sizeof(function));
    }
    FreeLibrary(module);
    return table;
}
