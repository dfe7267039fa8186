#include "host/data/DataFiles.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/xmlpxd/OpenedXml.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"
#include "host/common/Errors.h"
#include "host/common/LibraryOutput.h"
#include "host/common/Printable.h"
#include "host/data/EntryValues.h"
#include "host/data/KeepOriginal.h"
#include "host/settings/DataFolder.h"
#include "host/settings/FolderLock.h"
#include "host/settings/SaveFault.h"
#include "host/settings/XmlFile.h"

namespace tallyquist {
namespace {

namespace fs = std::filesystem;

}  // namespace

DataFiles::DataFiles(const FileKind& kind) : m_kind(kind) {
    const LibraryOutput quiet;
    m_xml.Bind();
    m_folder = DataFolder(kind.place).append(kind.folder);
}

std::string DataFiles::PathOf(const std::string& name) const {
    const char* fault = nullptr;
    if (name.empty()) {
        fault = " is empty";
    } else if (name.starts_with('.')) {
        fault = " begins with a dot";
    } else if (name.find('/') != std::string::npos) {
        fault = " holds a slash; a plain file name is wanted";
    } else if (name.find(':') != std::string::npos) {
        fault = " holds a colon, which programs remove from such names";
    } else if (Visible(name) != name) {
        fault = " holds a character that cannot be shown";
    }
    if (fault != nullptr) {
        throw UsageError(std::string("the name ").append(Printable(name)).append(fault));
    }
    return m_folder + name;
}

std::vector<std::string> DataFiles::Names() const {
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(m_folder, error);
    if (error && error != std::errc::no_such_file_or_directory) {
        throw CommandError("cannot read " + Visible(m_folder) + ": " + error.message());
    }
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::string name = entry->path().filename();
        std::error_code unknown;
        if (!name.starts_with('.') && !entry->is_directory(unknown)) {
            names.push_back(std::move(name));
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

// Programs take the first element of that name that they meet, in an item before or after too.
std::string DataFiles::FindFaultInItem(void* item, const EntryKind& kind, unsigned int number) {
    for (const Field& field : kind.fields) {
        const auto tag = static_cast<int>(field.tag);
        std::string own;
        std::string met;
        unsigned int err = XMLPXD_OK;
        const std::string place = ElementName(kind.item) + " " + std::to_string(number);
        if (!m_xml.GetElementValueWithSearch(item, tag, true, &own, &err)) {
            if (field.use != MAY_BE_ABSENT) {
                return place + " has no " + ElementName(field.tag);
            }
        } else if (!m_xml.GetElementValueWithSearch(item, tag, false, &met, &err) || met != own) {
            return place + ": an element in front of " + ElementName(field.tag) +
                   " hides it from programs";
        }
    }
    return {};
}

// The library takes a list without items for one that it could not read, so this tells which; and
// counts the items of each list.
std::string DataFiles::FindFault(const std::string& path, std::vector<unsigned int>* counts) {
    const XMLPXD_FUNCLIST& parser = m_xml.Parser();
    const xmlpxd::OpenedXml file(m_xml, path);
    unsigned int err = XMLPXD_OK;
    for (const EntryKind& kind : m_kind.entryKinds) {
        if (!kind.IsList()) {
            continue;
        }
        const XmlNode list(parser, m_xml.SearchParentElement(file.Root(), kind.list, &err));
        if (!list) {
            return "there is no " + ElementName(kind.list);
        }
        unsigned int& count = counts->emplace_back(0);
        XmlNode child = xmlpxd::NodeFrom(parser, &XMLPXD_FUNCLIST::GetFirstChild, list.Get(), &err);
        for (; child; child = xmlpxd::NodeFrom(parser, &XMLPXD_FUNCLIST::GetNextSibling,
                                               child.Get(), &err)) {
            if (m_xml.NameOf(child) != ElementName(kind.item)) {
                continue;
            }
            std::string fault = FindFaultInItem(child.Get(), kind, ++count);
            if (!fault.empty()) {
                return fault;
            }
        }
    }
    return {};
}

std::optional<Entries> DataFiles::Read(const std::string& name) {
    const std::string path = PathOf(name);
    if (!OpenXmlFile(m_xml, m_kind.root, path)) {
        return std::nullopt;
    }
    std::string fault;
    Entries entries;
    {
        const LibraryOutput quiet;
        std::vector<unsigned int> counts;
        fault = FindFault(path, &counts);
        entries = m_kind.read(m_xml, path);
        for (size_t i = 0; i < counts.size() && fault.empty(); ++i) {
            const EntryKind& kind = m_kind.entryKinds[i];
            const auto read = static_cast<unsigned int>(CountOf(entries, kind));
            if (read != counts[i]) {
                fault = "programs read " + std::to_string(read) + " of the elements " +
                        ElementName(kind.item) + ", but there are " + std::to_string(counts[i]);
            }
        }
    }
    if (!fault.empty()) {
        throw CommandError(Visible(path) + ": " + fault);
    }
    return entries;
}

std::optional<Entries> DataFiles::ReadForChange(const std::string& name, Damaged damaged) {
    try {
        return Read(name);
    } catch (const CommandError&) {
        if (damaged == Damaged::REFUSE) {
            throw;
        }
        return std::nullopt;
    }
}

void DataFiles::Change(const std::string& name, Damaged damaged,
                       const std::function<void(Entries&)>& change) {
    const std::string path = PathOf(name);
    const FolderLock turn(m_folder);
    const std::optional<Entries> unchanged = ReadForChange(name, damaged);
    Entries changed = unchanged.value_or(Entries());
    Complete(changed, m_kind.entryKinds);
    change(changed);
    if (unchanged) {
        KeepOriginal(path, [&](const std::string& target) { Write(*unchanged, path, target); });
    } else {
        KeepDamaged(path);
    }
    Write(changed, path, path);
    CheckWritten(name, changed);
}

// The library does not tell of every failure.
void DataFiles::CheckWritten(const std::string& name, const Entries& entries) {
    std::optional<Entries> written;
    try {
        written = Read(name);
    } catch (const CommandError& error) {
        throw CommandError(std::string("reading what was written failed: ").append(error.what()));
    }
    if (written != entries) {
        throw CommandError(Visible(PathOf(name)) + " could not be written as it should be");
    }
}

void DataFiles::Write(const Entries& entries, const std::string& path, const std::string& target) {
    const std::string base = GetPluginResourcesPath() + m_kind.base;
    if (!OpenXmlFile(m_xml, m_kind.root, base)) {
        throw CommandError(Visible(base) + " is missing");
    }
    const LibraryOutput quiet;
    errno = 0;
    if (!m_kind.write(m_xml, target, entries)) {
        throw CannotWrite(path, errno);
    }
}

}  // namespace tallyquist
