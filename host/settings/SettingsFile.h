// An XML file that holds one element per setting.
#pragma once

#include <optional>
#include <string>

#include "host/settings/XmlFile.h"
#include "host/settings/XmlLayer.h"

namespace tallyquist {

// The numbers in the catalogue that belong to a kind of file.
struct SettingsKind {
    unsigned int root;
    unsigned int first;
    unsigned int last;
};

constexpr SettingsKind SYSTEM_SETTINGS = {XMLTAG_SYS_CMSYSTEM, XMLTAG_SYS_CMSERVICENAME,
                                          XMLTAG_SYS_SCHEDULEDEXPORTLOGPATH};
constexpr SettingsKind DB_SETTINGS = {XMLTAG_DB_JOBLOGDBSETTING, XMLTAG_DB_JOBLOGDB_PATH,
                                      XMLTAG_DB_JOBLOGDB_VOLUME};

class SettingsFile {
public:
    // Nothing when there is no such file. Throws CommandError, which says where and what, for one
    // that cannot be read as a file of that kind. `xml` is bound and outlives the object.
    static std::optional<SettingsFile> Open(XmlLayer& xml, const SettingsKind& kind,
                                            const std::string& path);

    // What programs read as the setting's value; nothing when they find none.
    std::optional<std::string> Value(unsigned int tagId) const;
    // Whether the setting is there but programs do not find it: they stop looking at the first
    // element that they do not know.
    bool IsHidden(unsigned int tagId) const;

    // Changes the setting, or adds it where programs find it. Throws UsageError for a value that
    // XML cannot hold, else CommandError; then the object is of no more use.
    void Set(unsigned int tagId, const std::string& value);
    // Replaces the file at `path`, or makes a new one. Throws CommandError, with the file as it
    // was.
    void Save(const std::string& path) const;

private:
    SettingsFile(XmlLayer& xml, const SettingsKind& kind, XmlFile file);
    XmlNode FirstStranger() const;
    void Add(unsigned int tagId, const std::string& value);

    XmlLayer* m_xml;
    SettingsKind m_kind;
    XmlFile m_file;
};

}  // namespace tallyquist
