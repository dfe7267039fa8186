// The entries that make, end and write documents.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "CostCountCommon/src/ReplacingFile.h"
#include "plugins/zopmekxmlpxd/Entry.h"
#include "plugins/zopmekxmlpxd/Handles.h"
#include "plugins/zopmekxmlpxd/Loading.h"
#include "plugins/zopmekxmlpxd/Serializer.h"
#include "plugins/zopmekxmlpxd/TextChecks.h"

namespace {

// Gives the file, which is for its owner alone, the owner and the permissions of the one it is to
// replace. Another owner takes a privilege; so does a group that this user is not in.
bool TakeOver(int descriptor, const struct stat& existing) {
    struct stat own {};
    if (fstat(descriptor, &own) != 0) {
        return false;
    }
    mode_t mode = existing.st_mode & 0777;
    if ((own.st_uid != existing.st_uid || own.st_gid != existing.st_gid) &&
        fchown(descriptor, existing.st_uid, existing.st_gid) != 0 &&
        fchown(descriptor, static_cast<uid_t>(-1), existing.st_gid) != 0) {
        mode &= ~static_cast<mode_t>(0070);  // what was the old group's is not this one's
    }
    return fchmod(descriptor, mode) == 0;
}

void WriteFile(const std::string& path, const Document& document) {
    ReplacingFile file;
    struct stat existing {};
    const bool exists = stat(path.c_str(), &existing) == 0;
    Require(!exists || (S_ISREG(existing.st_mode) && access(path.c_str(), W_OK) == 0),
            XMLPXD_FILE_NOT_WRITTEN);
    Require(file.Create(path, ReplacingFile::Placement::REPLACE) &&
                (!exists || TakeOver(file.Descriptor(), existing)),
            XMLPXD_FILE_NOT_WRITTEN);
    Serialize(document, Layout::INDENTED, XMLPXD_FILE_NOT_WRITTEN, [&file](std::string_view piece) {
        Require(file.Write(piece.data(), piece.size()), XMLPXD_FILE_NOT_WRITTEN);
    });
    Require(file.Commit(), XMLPXD_FILE_NOT_WRITTEN);
}

}  // namespace

PDOC CreateDocByBin(const unsigned char* data, unsigned long size, unsigned int flags,
                    unsigned int* err) {
    return Answer(err, PDOC{}, [=]() -> PDOC {
        Require(data != nullptr && flags == 0, XMLPXD_INVALID_ARGUMENT);
        Require(size <= MAX_DOCUMENT_SIZE, XMLPXD_NOT_WELL_FORMED);
        return ParseDocument(std::string(reinterpret_cast<const char*>(data), size)).release();
    });
}

PDOC CreateDocByFile(const char* path, unsigned int* err) {
    return Answer(err, PDOC{},
                  [=]() -> PDOC { return ParseDocument(ReadDocumentFile(path)).release(); });
}

PDOC CreateNewDoc(const char* rootName, unsigned int* err) {
    return Answer(err, PDOC{}, [=]() -> PDOC {
        CheckedName(rootName);
        auto document = std::make_unique<Document>();
        pugi::xml_node root = document->m_tree.append_child(pugi::node_element);
        Require(root.set_name(rootName), XMLPXD_OUT_OF_MEMORY);
        return document.release();
    });
}

void DeleteDoc(PDOC document) {
    delete static_cast<Document*>(document);
}

int GetXMLandAppDataBin(PDOC document, unsigned char* buffer, unsigned long size,
                        unsigned int* err) {
    return Answer(err, -1, [=] {
        const std::string text =
            Serialized(DocumentOf(document), Layout::AS_IT_IS, XMLPXD_OUT_OF_MEMORY);
        if (IsFilling(buffer, size, text.size())) {
            std::copy(text.begin(), text.end(), buffer);
        }
        return static_cast<int>(text.size());
    });
}

unsigned int Save(PDOC document, const char* path) {
    return Outcome([=] {
        Require(path != nullptr, XMLPXD_INVALID_ARGUMENT);
        WriteFile(path, DocumentOf(document));
    });
}
