// The contract of the XML parser plug-in: 24 C functions, found by name after loading its code.
//
// Handles. A document belongs to the caller until DeleteDoc, which also makes every handle into it
// invalid. A handle of an element or an attribute belongs to the caller until DeleteNode, which
// leaves the node itself in the tree; two handles of one node are given back twice. What a removed
// element held is gone: its handles, and those of what lay below it, are good for DeleteNode only.
//
// Text is UTF-8 and ends with a NUL.
//
// Errors. `err` is never null, and every call sets it. A null or foreign-kind handle (an attribute
// for an element, the other way round), and a null text, are invalid arguments. A failed call
// changes nothing in the document. A handle that is no longer valid is not recognised.
//
// Asking for the size. A text is asked for twice: with a null buffer and size 0 for its length
// without terminator, then with a buffer of at least length + 1 bytes. A smaller buffer, or one of
// the pair null and the other not, is an invalid argument, and nothing is written.
//
// Lists. `nodes` receives at most `capacity` handles, which the caller owns; the result is how many
// nodes there are, or 0 on failure. With a null `nodes` and capacity 0 nodes are only counted. Both
// calls take time in proportion to what is searched. `work` points to a zeroed 32-bit value, or is
// null; a plug-in may use it between the two calls of one list.
//
// Threads. Any, but one document, with everything in it, serves one thread at a time. Different
// documents may be used on different threads at once. No exception leaves a function.
#pragma once

#include <cstddef>

using PNODE = void*;  // an element or an attribute
using PDOC = void*;

enum XmlPxdError : unsigned int {
    XMLPXD_OK = 0,
    XMLPXD_NO_SUCH_NODE = 1,      // the end of children or siblings, or no parent
    XMLPXD_NOT_IN_CATALOGUE = 2,  // the library's own; no plug-in gives it
    XMLPXD_INVALID_ARGUMENT = 3,
    XMLPXD_FILE_NOT_READ = 4,
    XMLPXD_NOT_WELL_FORMED = 5,  // also a document beyond a limit of the plug-in
    XMLPXD_OUT_OF_MEMORY = 6,
    XMLPXD_NOT_HELD_BY_XML = 7,  // a name or value; one that is not UTF-8, too
    XMLPXD_FILE_NOT_WRITTEN = 8,
};

// How a value is taken that holds characters XML has no place for, such as most control characters.
// A value that is not UTF-8 is refused as either kind.
enum XmlPxdValueKind : unsigned int {
    XMLPXD_MACHINE_TEXT = 0,  // refused
    // Such a character becomes U+FFFD: a person typed it and must not lose the rest.
    XMLPXD_TYPED_TEXT = 1,
};

// What entries that return a length give on failure.
constexpr unsigned long XMLPXD_NO_LENGTH = ~0UL;

extern "C" {

// --- Documents ---

// Each gives a new document, or null. What is read is one well-formed XML 1.0 document in UTF-8 or,
// with a byte order mark, UTF-16. Nothing outside the text is looked at; entities other than the
// five predefined ones are refused. What a document type declaration declares is neither checked
// nor applied. Comments, processing instructions, CDATA sections and the document type declaration
// are kept. A literal line break of any kind becomes a line feed.

// Reads `size` bytes, which are not kept. `flags` must be 0.
using XmlPxdCreateDocByBin = PDOC(const unsigned char* data, unsigned long size, unsigned int flags,
                                  unsigned int* err);
// Reads a regular file.
using XmlPxdCreateDocByFile = PDOC(const char* path, unsigned int* err);
// A document with an empty root element.
using XmlPxdCreateNewDoc = PDOC(const char* rootName, unsigned int* err);
// Ends a document. Null is ignored.
using XmlPxdDeleteDoc = void(PDOC document);

// The XML text in UTF-8, with a declaration, no NUL inside and none at the end; white space is that
// of the document. Asked for like a text, but the buffer needs no room for a terminator. The length
// in bytes, or -1. A text that CreateDocByBin would find too large is refused with error 6.
using XmlPxdGetXMLandAppDataBin = int(PDOC document, unsigned char* buffer, unsigned long size,
                                      unsigned int* err);
// Writes the document as UTF-8, laid out for people: each element on a line of its own, indented,
// except where that would change a text. A comment stays on the line that it ends, and empty lines
// stay. Saving what was read from a saved file gives the same bytes.
//
// The file is replaced whole, and is on the disk when this returns, or it stays as it was; no other
// file is left, unless the process is killed meanwhile. An existing file keeps its mode (but for
// set-ID bits, and the rights of a group that it cannot keep) and, where the system allows it, its
// owner; it must be a regular file that the caller may write. A symbolic link is followed. A new
// file is for its owner alone. 0 or an error code: 8 also for a text that CreateDocByFile would
// find too large.
using XmlPxdSave = unsigned int(PDOC document, const char* path);

// --- Elements ---

// Gives a handle back. Null is ignored.
using XmlPxdDeleteNode = void(PNODE node);
// The root element.
using XmlPxdGetDocumentElement = PNODE(PDOC document, unsigned int* err);
// Adds an element, as the last child or before the child element `before`, without or with a text.
// The new element, or null.
using XmlPxdCreateElement = PNODE(PNODE parent, const char* name, unsigned int* err);
using XmlPxdCreateElementWithValue = PNODE(PNODE parent, const char* name, const char* value,
                                           PNODE before, unsigned int valueKind, unsigned int* err);
// Removes an element with all it holds. The root element stays: it is an invalid argument. 0 or an
// error code.
using XmlPxdRemoveElement = unsigned int(PNODE element);

// The nearest element of that kind; null with error 1 when there is none.
using XmlPxdGetFirstChild = PNODE(PNODE element, unsigned int* err);
using XmlPxdGetNextSibling = PNODE(PNODE element, unsigned int* err);
using XmlPxdGetParentNode = PNODE(PNODE element, unsigned int* err);

// The length, or XMLPXD_NO_LENGTH.
using XmlPxdGetElementName = unsigned long(PNODE element, char* buffer, unsigned long size,
                                           unsigned int* err);
// The element's own text and CDATA sections, one after the other, with all white space; not the
// text of elements below it. The length, or XMLPXD_NO_LENGTH.
using XmlPxdGetElementText = unsigned long(PNODE element, char* buffer, unsigned long size,
                                           unsigned int* err);
// Replaces the element's own text; elements and comments in it stay. 0 or an error code.
using XmlPxdSetElementValue = unsigned int(PNODE element, const char* value,
                                           unsigned int valueKind);

// --- Attributes ---

// The length, or XMLPXD_NO_LENGTH.
using XmlPxdGetAttributeName = unsigned long(PNODE attribute, char* buffer, unsigned long size,
                                             unsigned int* err);
using XmlPxdGetAttributeValue = unsigned long(PNODE attribute, char* buffer, unsigned long size,
                                              unsigned int* err);
// Adds an attribute or replaces the value of the one of that name, which is looked for among all.
// The value is machine text. 0 or an error code.
using XmlPxdSetAttribute = unsigned int(PNODE element, const char* name, const char* value);

// --- Lists, in document order ---

// All elements of that name below the element.
using XmlPxdGetElementsByElementName = unsigned int(PNODE element, const char* name, PNODE* nodes,
                                                    unsigned int capacity, unsigned int* work,
                                                    unsigned int* err);
// The child elements.
using XmlPxdGetAllChildElements = unsigned int(PNODE element, PNODE* nodes, unsigned int capacity,
                                               unsigned int* work, unsigned int* err);
using XmlPxdGetAttributes = unsigned int(PNODE element, PNODE* attributes, unsigned int capacity,
                                         unsigned int* work, unsigned int* err);
// The elements and attributes that an XPath 1.0 expression selects, seen from the element. Other
// nodes that it selects are left out. An expression that is wrong, or whose value is no set of
// nodes, is an invalid argument. It takes the time that the expression asks for, which may be that
// of the square of the document's size.
using XmlPxdSelectNodesInElement = unsigned int(PNODE element, const char* xpath, PNODE* nodes,
                                                unsigned int capacity, unsigned int* work,
                                                unsigned int* err);

}  // extern "C"

// Every entry, in the order in which they are looked up:
//     ENTRY(slot in the table, name, what is logged when it is missing)
// The search ends at the first that is missing. That only the last three are told of is deliberate:
// those who read the log know it so.
#define XMLPXD_ENTRIES(ENTRY)                                                                      \
    ENTRY(1, CreateDocByBin, nullptr)                                                              \
    ENTRY(2, CreateDocByFile, nullptr)                                                             \
    ENTRY(4, DeleteDoc, nullptr)                                                                   \
    ENTRY(5, GetXMLandAppDataBin, nullptr)                                                         \
    ENTRY(6, Save, nullptr)                                                                        \
    ENTRY(9, DeleteNode, nullptr)                                                                  \
    ENTRY(10, GetDocumentElement, nullptr)                                                         \
    ENTRY(11, CreateElement, nullptr)                                                              \
    ENTRY(12, CreateElementWithValue, nullptr)                                                     \
    ENTRY(13, GetElementsByElementName, nullptr)                                                   \
    ENTRY(14, GetAllChildElements, nullptr)                                                        \
    ENTRY(15, GetFirstChild, nullptr)                                                              \
    ENTRY(16, GetNextSibling, nullptr)                                                             \
    ENTRY(17, GetParentNode, nullptr)                                                              \
    ENTRY(19, GetElementName, nullptr)                                                             \
    ENTRY(23, SetElementValue, nullptr)                                                            \
    ENTRY(25, GetElementText, nullptr)                                                             \
    ENTRY(26, GetAttributes, nullptr)                                                              \
    ENTRY(27, GetAttributeName, nullptr)                                                           \
    ENTRY(28, GetAttributeValue, nullptr)                                                          \
    ENTRY(31, SetAttribute, nullptr)                                                               \
    ENTRY(33, SelectNodesInElement, "CCommonXmlPxd::LoadAPIsXmlPxd() ERROR: SelectNodesInElement") \
    ENTRY(3, CreateNewDoc, "CCommonXmlPxd::LoadAPIsXmlPxd() ERROR: CreateNewDoc")                  \
    ENTRY(21, RemoveElement, "CCommonXmlPxd::LoadAPIsXmlPxd() ERROR: RemoveElement")

// The table of entries. The unused slots are never filled.
struct XMLPXD_FUNCLIST {
    XmlPxdCreateDocByBin* CreateDocByBin;
    XmlPxdCreateDocByFile* CreateDocByFile;
    XmlPxdCreateNewDoc* CreateNewDoc;
    XmlPxdDeleteDoc* DeleteDoc;
    XmlPxdGetXMLandAppDataBin* GetXMLandAppDataBin;
    XmlPxdSave* Save;
    void* unused7;
    void* unused8;
    XmlPxdDeleteNode* DeleteNode;
    XmlPxdGetDocumentElement* GetDocumentElement;
    XmlPxdCreateElement* CreateElement;
    XmlPxdCreateElementWithValue* CreateElementWithValue;
    XmlPxdGetElementsByElementName* GetElementsByElementName;
    XmlPxdGetAllChildElements* GetAllChildElements;
    XmlPxdGetFirstChild* GetFirstChild;
    XmlPxdGetNextSibling* GetNextSibling;
    XmlPxdGetParentNode* GetParentNode;
    void* unused18;
    XmlPxdGetElementName* GetElementName;
    void* unused20;
    XmlPxdRemoveElement* RemoveElement;
    void* unused22;
    XmlPxdSetElementValue* SetElementValue;
    void* unused24;
    XmlPxdGetElementText* GetElementText;
    XmlPxdGetAttributes* GetAttributes;
    XmlPxdGetAttributeName* GetAttributeName;
    XmlPxdGetAttributeValue* GetAttributeValue;
    void* unused29;
    void* unused30;
    XmlPxdSetAttribute* SetAttribute;
    void* unused32;
    XmlPxdSelectNodesInElement* SelectNodesInElement;
};

static_assert(sizeof(XMLPXD_FUNCLIST) == 33 * sizeof(void*));

// The entries as data: the name to look up, where in the table the result goes, and the line to log
// when there is none, or null to stay silent.
struct XmlPxdEntry {
    const char* name;
    size_t offset;
    const char* missing;
};

#define XMLPXD_ENTRY(slot, name, missing) {#name, offsetof(XMLPXD_FUNCLIST, name), missing},
constexpr XmlPxdEntry XMLPXD_LOAD_ORDER[] = {XMLPXD_ENTRIES(XMLPXD_ENTRY)};
#undef XMLPXD_ENTRY

static_assert(sizeof(XMLPXD_LOAD_ORDER) == 24 * sizeof(XmlPxdEntry));
#define XMLPXD_ENTRY(slot, name, missing) \
    static_assert(offsetof(XMLPXD_FUNCLIST, name) == ((slot)-1) * sizeof(void*));
XMLPXD_ENTRIES(XMLPXD_ENTRY)
#undef XMLPXD_ENTRY
