// The code of the counting parser.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "CostCountCommon/include/XmlPxdFunctions.h"
#include "tests/support/XmlParserModule.h"

namespace {

// What it counts does not take part when a test makes allocations fail.
template <typename T>
struct OwnMemory {
    using value_type = T;

    OwnMemory() = default;
    template <typename Other>
    explicit OwnMemory(const OwnMemory<Other>& /*other*/) {}

    T* allocate(size_t count) { return static_cast<T*>(std::malloc(count * sizeof(T))); }
    void deallocate(T* memory, size_t /*count*/) { std::free(memory); }
    bool operator==(const OwnMemory& /*other*/) const { return true; }
};

template <typename Key>
using Counts = std::map<Key, int, std::less<>, OwnMemory<std::pair<const Key, int>>>;

struct Ledger {
    Counts<void*> nodes;
    Counts<void*> documents;
    Counts<std::string_view> calls;
    int strayReleases = 0;
    std::string plannedEntry;
    int callsUntilFailure = 0;  // 0 when no failure is planned
    unsigned int plannedError = 0;
    bool hasFailed = false;
};

Ledger& TheLedger() {
    static Ledger ledger;
    return ledger;
}

const XMLPXD_FUNCLIST& Real() {
    static const XMLPXD_FUNCLIST table = LoadXmlParser(XML_PARSER);
    return table;
}

// Counts the call; the error it is to end with, if any.
std::optional<unsigned int> Planned(const char* entry, bool canFailQuietly) {
    Ledger& ledger = TheLedger();
    ++ledger.calls[entry];
    const bool isMeant = (ledger.plannedEntry.empty() || ledger.plannedEntry == entry) &&
                         (canFailQuietly || ledger.plannedError != XMLPXD_OK);
    if (!isMeant || ledger.callsUntilFailure == 0 || --ledger.callsUntilFailure > 0) {
        return std::nullopt;
    }
    ledger.hasFailed = true;
    return ledger.plannedError;
}

template <typename Result, typename... Parameters, typename... Arguments>
Result Call(const char* entry, Result failure, unsigned int* err, Result (*real)(Parameters...),
            Arguments... arguments) {
    if (const auto error = Planned(entry, true)) {
        *err = *error;
        return failure;
    }
    return real(arguments..., err);
}

template <typename... Parameters, typename... Arguments>
unsigned int CallForError(const char* entry, unsigned int (*real)(Parameters...),
                          Arguments... arguments) {
    const auto error = Planned(entry, false);
    return error ? *error : real(arguments...);
}

void* Given(Counts<void*>& live, void* handle) {
    if (handle != nullptr) {
        ++live[handle];
    }
    return handle;
}

PNODE GivenNode(PNODE node) {
    return Given(TheLedger().nodes, node);
}

PDOC GivenDocument(PDOC document) {
    return Given(TheLedger().documents, document);
}

unsigned int GivenNodes(unsigned int count, PNODE* nodes, unsigned int capacity) {
    std::for_each(nodes, nodes + std::min(count, capacity), GivenNode);
    return count;
}

void Release(Counts<void*>& live, void* handle) {
    const auto entry = live.find(handle);
    if (entry == live.end()) {
        ++TheLedger().strayReleases;
    } else if (--entry->second == 0) {
        live.erase(entry);
    }
}

int Sum(const Counts<void*>& live) {
    int sum = 0;
    for (const auto& [handle, count] : live) {
        sum += count;
    }
    return sum;
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

#define XMLPXD_DECLARE(slot, name, missing) XmlPxd##name name;
XMLPXD_ENTRIES(XMLPXD_DECLARE)
#undef XMLPXD_DECLARE

PDOC CreateDocByBin(const unsigned char* data, unsigned long size, unsigned int flags,
                    unsigned int* err) {
    return GivenDocument(
        Call("CreateDocByBin", PDOC{}, err, Real().CreateDocByBin, data, size, flags));
}

PDOC CreateDocByFile(const char* path, unsigned int* err) {
    return GivenDocument(Call("CreateDocByFile", PDOC{}, err, Real().CreateDocByFile, path));
}

PDOC CreateNewDoc(const char* rootName, unsigned int* err) {
    return GivenDocument(Call("CreateNewDoc", PDOC{}, err, Real().CreateNewDoc, rootName));
}

void DeleteDoc(PDOC document) {
    ++TheLedger().calls["DeleteDoc"];
    if (document != nullptr) {
        Release(TheLedger().documents, document);
        Real().DeleteDoc(document);
    }
}

int GetXMLandAppDataBin(PDOC document, unsigned char* buffer, unsigned long size,
                        unsigned int* err) {
    return Call("GetXMLandAppDataBin", -1, err, Real().GetXMLandAppDataBin, document, buffer, size);
}

unsigned int Save(PDOC document, const char* path) {
    return CallForError("Save", Real().Save, document, path);
}

void DeleteNode(PNODE node) {
    ++TheLedger().calls["DeleteNode"];
    if (node != nullptr) {
        Release(TheLedger().nodes, node);
        Real().DeleteNode(node);
    }
}

PNODE CreateElement(PNODE parent, const char* name, unsigned int* err) {
    return GivenNode(Call("CreateElement", PNODE{}, err, Real().CreateElement, parent, name));
}

PNODE CreateElementWithValue(PNODE parent, const char* name, const char* value, PNODE before,
                             unsigned int valueKind, unsigned int* err) {
    return GivenNode(Call("CreateElementWithValue", PNODE{}, err, Real().CreateElementWithValue,
                          parent, name, value, before, valueKind));
}

unsigned int RemoveElement(PNODE element) {
    return CallForError("RemoveElement", Real().RemoveElement, element);
}

unsigned int SetElementValue(PNODE element, const char* value, unsigned int valueKind) {
    return CallForError("SetElementValue", Real().SetElementValue, element, value, valueKind);
}

unsigned int SetAttribute(PNODE element, const char* name, const char* value) {
    return CallForError("SetAttribute", Real().SetAttribute, element, name, value);
}

// Entries that differ in their names only.
#define FORWARD_STEP(name)                                              \
    PNODE name(void* from, unsigned int* err) {                         \
        return GivenNode(Call(#name, PNODE{}, err, Real().name, from)); \
    }
FORWARD_STEP(GetDocumentElement)
FORWARD_STEP(GetFirstChild)
FORWARD_STEP(GetNextSibling)
FORWARD_STEP(GetParentNode)
#undef FORWARD_STEP

#define FORWARD_TEXT(name)                                                                \
    unsigned long name(PNODE node, char* buffer, unsigned long size, unsigned int* err) { \
        return Call(#name, XMLPXD_NO_LENGTH, err, Real().name, node, buffer, size);       \
    }
FORWARD_TEXT(GetElementName)
FORWARD_TEXT(GetElementText)
FORWARD_TEXT(GetAttributeName)
FORWARD_TEXT(GetAttributeValue)
#undef FORWARD_TEXT

#define FORWARD_LIST(name)                                                                    \
    unsigned int name(PNODE element, PNODE* nodes, unsigned int capacity, unsigned int* work, \
                      unsigned int* err) {                                                    \
        return GivenNodes(Call(#name, 0U, err, Real().name, element, nodes, capacity, work),  \
                          nodes, capacity);                                                   \
    }
FORWARD_LIST(GetAllChildElements)
FORWARD_LIST(GetAttributes)
#undef FORWARD_LIST

#define FORWARD_SEARCH(name)                                                                  \
    unsigned int name(PNODE element, const char* wanted, PNODE* nodes, unsigned int capacity, \
                      unsigned int* work, unsigned int* err) {                                \
        return GivenNodes(                                                                    \
            Call(#name, 0U, err, Real().name, element, wanted, nodes, capacity, work), nodes, \
            capacity);                                                                        \
    }
FORWARD_SEARCH(GetElementsByElementName)
FORWARD_SEARCH(SelectNodesInElement)
#undef FORWARD_SEARCH

// --- What CountingParser.h calls ---

void CountingParserReset() {
    Ledger& ledger = TheLedger();
    ledger.calls.clear();
    ledger.strayReleases = 0;
    ledger.callsUntilFailure = 0;
    ledger.hasFailed = false;
}

void CountingParserFail(const char* entry, int nth, unsigned int error) {
    Ledger& ledger = TheLedger();
    ledger.plannedEntry = entry;
    ledger.callsUntilFailure = nth;
    ledger.plannedError = error;
    ledger.hasFailed = false;
}

int CountingParserHasFailed() {
    return TheLedger().hasFailed ? 1 : 0;
}

int CountingParserCallCount(const char* entry) {
    const Ledger& ledger = TheLedger();
    const auto calls = ledger.calls.find(std::string_view(entry));
    return calls == ledger.calls.end() ? 0 : calls->second;
}

int CountingParserLiveNodes() {
    return Sum(TheLedger().nodes);
}

int CountingParserLiveDocuments() {
    return Sum(TheLedger().documents);
}

int CountingParserStrayReleases() {
    return TheLedger().strayReleases;
}

}  // extern "C"
#pragma GCC visibility pop
