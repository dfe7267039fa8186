#include "host/settings/XmlFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/common/Errors.h"
#include "host/common/Printable.h"
#include "host/settings/XmlFault.h"

namespace tallyquist {
namespace {

[[noreturn]] void FailToRead(const std::string& path, unsigned int err, int reason) {
    const std::string shown = Visible(path);
    switch (err) {
        case XMLPXD_NOT_WELL_FORMED:
            throw CommandError(DescribeXmlFault(path));
        case XMLPXD_OUT_OF_MEMORY:
            throw CommandError("not enough memory for " + shown);
        default:
            throw CommandError("cannot read " + shown + ": " +
                               (reason != 0 ? std::strerror(reason) : "it is not a regular file"));
    }
}

}  // namespace

std::optional<XmlFile> OpenXmlFile(XmlLayer& xml, unsigned int rootTag, const std::string& path) {
    std::error_code error;
    if (!std::filesystem::exists(path, error) && !error) {
        return std::nullopt;
    }
    const XMLPXD_FUNCLIST& parser = xml.Parser();
    unsigned int err = XMLPXD_OK;
    errno = 0;
    XmlDocument document(parser, parser.CreateDocByFile(path.c_str(), &err));
    if (!document) {
        FailToRead(path, err, errno);
    }
    XmlNode root =
        xmlpxd::NodeFrom(parser, &XMLPXD_FUNCLIST::GetDocumentElement, document.Get(), &err);
    RequireXml(err);
    const std::string& wanted = xml.Names().at(rootTag);
    const std::string name = xml.NameOf(root);
    if (name != wanted) {
        throw CommandError(Visible(path) + ": the root element is " + Printable(name) + ", not " +
                           Printable(wanted));
    }
    return XmlFile{std::move(document), std::move(root)};
}

}  // namespace tallyquist
