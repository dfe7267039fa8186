// Any bytes: read them, walk all of it, write and read again, change and do so again. What was read
// from what was written must be the same, and writing it again must give the same bytes.
#include <memory>
#include <string>
#include <vector>

#include "fuzz/Fuzz.h"
#include "plugins/zopmekxmlpxd/Entry.h"
#include "plugins/zopmekxmlpxd/Loading.h"
#include "plugins/zopmekxmlpxd/Serializer.h"

namespace {

using DocumentPointer = std::unique_ptr<void, void (*)(PDOC)>;

DocumentPointer Read(const std::string& bytes) {
    unsigned int err = 4711;
    DocumentPointer document(
        CreateDocByBin(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), 0, &err),
        DeleteDoc);
    Check((document == nullptr) == (err != 0) && (err == 0 || err == 5));
    return document;
}

std::string Text(unsigned long (*entry)(PNODE, char*, unsigned long, unsigned int*), PNODE node) {
    unsigned int err = 4711;
    const unsigned long length = entry(node, nullptr, 0, &err);
    Check(err == 0);
    std::string text(length + 1, '?');
    Check(entry(node, text.data(), text.size(), &err) == length && err == 0);
    text.pop_back();
    Check(text.find('\0') == std::string::npos);
    return text;
}

PNODE Root(const DocumentPointer& document) {
    unsigned int err = 4711;
    PNODE root = GetDocumentElement(document.get(), &err);
    Check(root != nullptr && err == 0);
    return root;
}

// The element's name, attributes and text. Without layout, white space between elements is left
// out.
std::string Described(PNODE element, bool withLayout) {
    unsigned int err = 0;
    std::string description = Text(GetElementName, element).append("\n");
    std::vector<PNODE> attributes(GetAttributes(element, nullptr, 0, nullptr, &err));
    if (!attributes.empty()) {
        GetAttributes(element, attributes.data(), static_cast<unsigned int>(attributes.size()),
                      nullptr, &err);
    }
    for (PNODE attribute : attributes) {
        description.append(Text(GetAttributeName, attribute)).append("=");
        description.append(Text(GetAttributeValue, attribute)).append("\n");
    }
    const std::string text = Text(GetElementText, element);
    PNODE child = GetFirstChild(element, &err);
    const bool isLayout = child != nullptr && text.find_first_not_of(" \t\n") == std::string::npos;
    DeleteNode(child);
    return description.append(isLayout && !withLayout ? "" : text).append("\n");
}

std::string Walked(const DocumentPointer& document, bool withLayout) {
    std::string all;
    unsigned int err = 0;
    for (PNODE node = Root(document); node != nullptr;) {
        all += Described(node, withLayout);
        PNODE next = GetFirstChild(node, &err);
        all += next == nullptr ? ")" : "(";
        while (next == nullptr && node != nullptr) {
            next = GetNextSibling(node, &err);
            node = next == nullptr ? GetParentNode(node, &err) : node;
            all += next == nullptr ? ")" : "";
        }
        node = next;
    }
    return all;
}

void CheckSurvivesWriting(const DocumentPointer& document) {
    for (const Layout layout : {Layout::AS_IT_IS, Layout::INDENTED}) {
        const auto write = [layout](const DocumentPointer& written) {
            return Serialized(*static_cast<Document*>(written.get()), layout,
                              XMLPXD_FILE_NOT_WRITTEN);
        };
        const bool withLayout = layout == Layout::AS_IT_IS;
        const std::string text = write(document);
        const DocumentPointer again = Read(text);
        Check(again != nullptr);
        Check(Walked(document, withLayout) == Walked(again, withLayout));
        Check(write(again) == text);
    }
}

// Takes its names and values from the input.
void Change(const DocumentPointer& document, const std::string& bytes) {
    unsigned int err = 0;
    const std::string name = bytes.substr(bytes.size() / 3, 5);
    const std::string tail = bytes.substr(bytes.size() / 2);
    const std::string value = tail.substr(0, tail.find('\0'));
    PNODE root = Root(document);
    PNODE first = GetFirstChild(root, &err);
    PNODE added = CreateElementWithValue(root, name.c_str(), value.c_str(), first, 1, &err);
    Check((added == nullptr) == (err == 7));
    if (added == nullptr) {
        added = CreateElement(root, "added", &err);
    }
    const std::string before = Text(GetElementText, added);
    err = SetElementValue(added, value.c_str(), 0);
    Check(Text(GetElementText, added) == (err == 0 ? value : before));
    err = SetAttribute(added, name.c_str(), value.c_str());
    Check(err == 0 || err == 7);
    err = SetElementValue(root, value.c_str(), 1);
    Check(err == 0 || err == 7);
    SelectNodesInElement(root, value.substr(0, 20).c_str(), nullptr, 0, nullptr, &err);
    if (first != nullptr && value.size() % 2 == 0) {
        const unsigned int count = GetAllChildElements(root, nullptr, 0, nullptr, &err);
        Check(RemoveElement(first) == 0);
        Check(GetAllChildElements(root, nullptr, 0, nullptr, &err) == count - 1);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string bytes = TextOf(data, size);
    const DocumentPointer document = Read(bytes);
    if (document != nullptr) {
        CheckSurvivesWriting(document);
        Change(document, bytes);
        CheckSurvivesWriting(document);
    }
    return 0;
}
