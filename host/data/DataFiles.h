// The files of a kind, by name, in the folder where programs keep them.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/data/Entries.h"
#include "host/data/FileKind.h"
#include "host/settings/XmlLayer.h"

namespace tallyquist {

// What is to become of a file that cannot be read when it is changed.
enum class Damaged { REFUSE, REPLACE };

// Failures are CommandErrors that name the file.
class DataFiles {
public:
    explicit DataFiles(const FileKind& kind);

    const FileKind& Kind() const { return m_kind; }
    const std::string& Folder() const { return m_folder; }
    // Throws UsageError for what is no plain file name.
    std::string PathOf(const std::string& name) const;
    // How files spell the element.
    const std::string& ElementName(unsigned int tag) const { return m_xml.Names().at(tag); }

    // Sorted; none when there is no folder. Hidden files are left out.
    std::vector<std::string> Names() const;

    // Nothing when there is no such file. A file that programs would misread, or read in part, is a
    // failure.
    std::optional<Entries> Read(const std::string& name);

    // Reads, has the entries changed and writes them, all of it before anybody else's turn. A
    // missing file is made, with its folder. When `change` throws, or writing fails, the file stays
    // as it was. What was written is read again; a failure of that says so.
    void Change(const std::string& name, Damaged damaged,
                const std::function<void(Entries&)>& change);

private:
    void CheckWritten(const std::string& name, const Entries& entries);
    std::optional<Entries> ReadForChange(const std::string& name, Damaged damaged);
    std::string FindFault(const std::string& path, std::vector<unsigned int>* counts);
    std::string FindFaultInItem(void* item, const EntryKind& kind, unsigned int number);
    // Writes to `target` what becomes the file at `path`, or is compared with it.
    void Write(const Entries& entries, const std::string& path, const std::string& target);

    const FileKind& m_kind;
    XmlLayer m_xml;
    std::string m_folder;
};

}  // namespace tallyquist
