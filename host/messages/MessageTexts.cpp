#include "host/messages/MessageTexts.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "CostCountCommon/include/CBntMessageReader.h"
#include "CostCountCommon/src/FileDescriptor.h"
#include "CostCountCommon/xmlpxd/NumberOf.h"
#include "CostCountCommon/xmlpxd/XmlNode.h"
#include "host/common/Errors.h"
#include "host/common/Json.h"
#include "host/common/LibraryOutput.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"
#include "host/common/TextTable.h"
#include "host/settings/XmlLayer.h"

namespace tallyquist {
namespace {

constexpr const char* PASSWORD = "password";
constexpr unsigned int FOREVER = 0xFFFFFFFF;

// A message on its way through the library.
struct Message {
    Message(XmlLayer& layer, const std::string& bytes)
        : xml(layer),
          data(reinterpret_cast<const unsigned char*>(bytes.data())),
          size(bytes.size()) {}

    // None for what is not well-formed.
    XmlNode Root() { return {xml.Parser(), xml.ConvertFromXmlAndAppDataBin(data, size, &err)}; }

    XmlLayer& xml;
    const unsigned char* data;
    unsigned long size;
    unsigned int err = XMLPXD_OK;
};

// The readers give the elements, called and in the order as a message has them. After a failure
// their names alone count.

bool ReadCommand(Message& message, Json* elements) {
    CBntCommandValue value;
    const bool isRead =
        message.xml.ParseBNTCommand(value, message.data, message.size, &message.err);
    *elements = {{"massagetype", value.m_MessageType},
                 {"massagepriority", value.m_MessagePriority},
                 {"isreply", value.m_IsReply},
                 {"processid", value.m_ProcessId},
                 {"printerid", value.m_PrinterId},
                 {"iftype", value.m_IfType},
                 {"address", value.m_Address},
                 {PASSWORD, value.m_Password},
                 {"location_id", static_cast<unsigned int>(value.m_LocationId)},
                 {"nic_index", value.m_NicIndex},
                 {"usbretry_count", value.m_UsbRetryCount},
                 {"usbretry_interval", value.m_UsbRetryInterval},
                 {"commuretry_count", value.m_CommuRetryCount},
                 {"commuretry_interval", value.m_CommuRetryInterval},
                 {"event_name", value.m_EventName}};
    return isRead;
}

bool ReadReply(Message& message, Json* elements) {
    std::string ret;
    std::string param;
    const bool isRead =
        message.xml.ParseBNTCmdRet(ret, param, message.data, message.size, &message.err);
    *elements = {{"ret", ret}, {"param", param}};
    return isRead;
}

bool ReadResult(Message& message, Json* elements) {
    std::string printer;
    std::string result;
    bool isLast = false;
    bool ipChanged = false;
    const bool isRead = message.xml.ParseBNTResult(printer, result, isLast, message.data,
                                                   message.size, &message.err, &ipChanged);
    *elements = {
        {"printerid", printer}, {"result", result}, {"last", isLast}, {"ip_changed", ipChanged}};
    return isRead;
}

// The library has no parser of these.
bool ReadDetchResult(Message& message, Json* elements) {
    std::string result;
    std::string last;
    const XmlNode root = message.Root();
    const auto read = [&](int tagId, std::string* text) {
        return message.xml.GetElementValueWithSearch(root.Get(), tagId, true, text, &message.err);
    };
    const bool isRead = read(XMLTAG_DETCHRESULT_RESULT, &result) && read(XMLTAG_RESULT_LAST, &last);
    *elements = {{"result", result}, {"last", NumberOf(last) != 0}};
    return isRead;
}

struct Kind {
    const char* root;
    bool (*read)(Message& message, Json* elements);
};

constexpr auto KINDS = std::to_array<Kind>({
    {"bntcmd", ReadCommand},
    {"bntcmdret", ReadReply},
    {"bntresult", ReadResult},
    {"detchresult", ReadDetchResult},
});

std::string FirstMissing(Message& message, const Json& elements) {
    const XmlNode root = message.Root();
    for (const auto& [name, value] : elements.items()) {
        const unsigned int id = message.xml.GetElementID(name, false);
        if (!XmlNode(message.xml.Parser(),
                     message.xml.SearchParentElement(root.Get(), id, &message.err))) {
            return "the element " + name + " is missing";
        }
    }
    return "cannot be read";
}

// Gives "message", the kind, and the elements; or, not an object, what is wrong.
Json Parse(XmlLayer& xml, const std::string& bytes) {
    const LibraryOutput quiet;
    Message message(xml, bytes);
    std::string name;
    if (const XmlNode root = message.Root()) {
        xmlpxd::ReadText(xml.Parser(), &XMLPXD_FUNCLIST::GetElementName, root.Get(), &name,
                         &message.err);
    }
    if (message.err != XMLPXD_OK) {
        return message.err == XMLPXD_OUT_OF_MEMORY ? "not enough memory" : "not well-formed XML";
    }
    const auto* const kind =
        std::find_if(KINDS.begin(), KINDS.end(), [&](const Kind& one) { return one.root == name; });
    if (kind == KINDS.end()) {
        return "the root element " + Printable(name) + " is that of no message";
    }
    Json elements;
    if (!kind->read(message, &elements)) {
        return FirstMissing(message, elements);
    }
    Json parsed{{"message", kind->root}};
    parsed.update(elements);
    return parsed;
}

std::string TableOf(const Json& message, bool showSecrets) {
    TextTable table({"key", "value"});
    for (const auto& [name, value] : message.items()) {
        const std::string text = value.is_boolean()  ? value.get<bool>() ? "yes" : "no"
                                 : value.is_string() ? value.get<std::string>()
                                                     : value.dump();
        const bool isHidden = name == PASSWORD && !text.empty() && !showSecrets;
        table.Add({name, isHidden ? HIDDEN_PASSWORD : text});
    }
    return table.Text();
}

Json ForPrograms(Json message, bool showSecrets) {
    if (message.contains(PASSWORD) && !showSecrets) {
        message[PASSWORD] = nullptr;
    }
    return message;
}

// Bytes that may hold a password, or the rest of one, are not shown.
std::string DescribeBroken(const std::string& bytes, bool showSecrets) {
    const bool isShown = showSecrets || bytes.find(PASSWORD) == std::string::npos;
    return isShown ? "no message: " + Printable(bytes)
                   : "no message; not shown without --show-secrets";
}

void BindQuietly(XmlLayer& xml) {
    const LibraryOutput quiet;
    xml.Bind();
}

FileDescriptor OpenInput(const std::string& path, const std::string& shown) {
    // A pipe without a writer waits for one.
    FileDescriptor input = path == "-" ? FileDescriptor(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0))
                                       : FileDescriptor::Open(path.c_str(), O_RDONLY);
    if (!input.IsOpen()) {
        throw CommandError("cannot read " + shown + ": " + std::strerror(errno));
    }
    return input;
}

}  // namespace

void ShowMessages(const ShowMessagesOptions& options) {
    const std::string shown = options.path == "-" ? "standard input" : Visible(options.path);
    XmlLayer xml;
    BindQuietly(xml);
    const FileDescriptor input = OpenInput(options.path, shown);
    CBntMessageReader reader;
    std::string bytes;
    Json list = Json::array();
    std::string separator;
    size_t messages = 0;
    size_t faults = 0;
    const auto tell = [&](const std::string& where, const std::string& fault) {
        ++faults;
        std::fprintf(stderr, "tallyquist: %s: %s: %s\n", shown.c_str(), where.c_str(),
                     fault.c_str());
    };
    BntRead read = reader.Read(input.Number(), FOREVER, &bytes);
    for (; read == BntRead::MESSAGE || read == BntRead::BROKEN;
         read = reader.Read(input.Number(), FOREVER, &bytes)) {
        if (read == BntRead::BROKEN) {
            tell(messages == 0 ? "before message 1" : "after message " + std::to_string(messages),
                 DescribeBroken(bytes, options.showSecrets));
            continue;
        }
        ++messages;
        Json message = Parse(xml, bytes);
        if (!message.is_object()) {
            tell("message " + std::to_string(messages), message);
        } else if (options.json) {
            list.push_back(ForPrograms(std::move(message), options.showSecrets));
        } else {
            WriteStandardOutput(separator + TableOf(message, options.showSecrets));
            separator = "\n";
        }
    }
    const int reason = errno;
    if (options.json) {
        WriteJson(list);
    }
    if (read != BntRead::END) {
        throw CommandError("cannot read " + shown + ": " + std::strerror(reason));
    }
    if (faults != 0 || messages == 0) {
        throw CommandError(shown +
                           (faults != 0 ? ": not all of it could be read" : ": holds no message"));
    }
}

}  // namespace tallyquist
