#include "host/messages/MessageTexts.h"

#include <sys/stat.h>
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
// Of faults; a peer that sends nothing else must not fill a log.
constexpr size_t MAX_TOLD = 20;

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
    *elements = {{"result", result}, {"last", xmlpxd::NumberOf(last) != 0}};
    return isRead;
}

struct KindReader {
    const char* root;
    bool (*read)(Message& message, Json* elements);
};

constexpr auto READERS = std::to_array<KindReader>({
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
        std::find_if(READERS.begin(), READERS.end(),
                     [&](const KindReader& reader) { return reader.root == name; });
    if (kind == READERS.end()) {
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

void BindQuietly(XmlLayer& xml) {
    const LibraryOutput quiet;
    xml.Bind();
}

FileDescriptor OpenInput(const ShowMessagesOptions& options) {
    if (options.path == "-") {
        return FileDescriptor(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0));
    }
    struct stat status {};
    const bool isPipe = stat(options.path.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
    // A pipe that has a writer, this program, is never at its end. One without waits for one.
    const bool isHeldOpen = isPipe && (options.follow || options.count != 0);
    return FileDescriptor::Open(options.path.c_str(), isHeldOpen ? O_RDWR : O_RDONLY);
}

class MessagePrinter {
public:
    explicit MessagePrinter(const ShowMessagesOptions& options)
        : m_options(options),
          m_shown(options.path == "-" ? "standard input" : Visible(options.path)) {
        BindQuietly(m_xml);
    }

    void PrintAll() {
        const FileDescriptor input = OpenInput(m_options);
        const bool isRead = input.IsOpen() && Read(input);
        const int reason = errno;
        if (m_options.json && !m_options.follow && (isRead || m_messages != 0)) {
            WriteJson(m_list);
        }
        if (!isRead) {
            throw CommandError("cannot read " + m_shown + ": " + std::strerror(reason));
        }
        if (m_faults != 0 || m_messages == 0) {
            throw CommandError(m_shown + Conclusion());
        }
    }

private:
    // False, with errno set, when reading failed.
    bool Read(const FileDescriptor& input) {
        CBntMessageReader reader;
        std::string bytes;
        while (m_options.count == 0 || m_messages < m_options.count) {
            switch (reader.Read(input.Number(), CBntMessageReader::FOREVER, &bytes)) {
                case BntRead::MESSAGE:
                    ++m_messages;
                    Print(bytes);
                    break;
                case BntRead::BROKEN:
                    // Without being asked to, nothing is shown that may be a piece of a password.
                    TellFault(m_messages == 0 ? std::string("before message 1")
                                              : "after message " + std::to_string(m_messages),
                              m_options.showSecrets
                                  ? "no message: " + Printable(bytes)
                                  : "no message; not shown without --show-secrets");
                    break;
                case BntRead::END:
                    return true;
                case BntRead::FAILED:
                case BntRead::TIMED_OUT:
                    return false;
            }
        }
        return true;
    }

    void Print(const std::string& bytes) {
        const Json message = Parse(m_xml, bytes);
        if (!message.is_object()) {
            TellFault("message " + std::to_string(m_messages), message);
        } else if (!m_options.json) {
            WriteStandardOutput(m_separator + TableOf(message, m_options.showSecrets));
            m_separator = "\n";
        } else if (m_options.follow) {
            WriteJsonLine(ForPrograms(message, m_options.showSecrets));
        } else {
            m_list.push_back(ForPrograms(message, m_options.showSecrets));
        }
    }

    void TellFault(const std::string& where, const std::string& fault) {
        if (++m_faults <= MAX_TOLD) {
            std::fprintf(stderr, "tallyquist: %s: %s: %s\n", m_shown.c_str(), where.c_str(),
                         fault.c_str());
        }
    }

    std::string Conclusion() const {
        if (m_faults == 0) {
            return ": holds no message";
        }
        return m_faults <= MAX_TOLD
                   ? ": not all of it could be read"
                   : ": not all of it could be read, in " + std::to_string(m_faults) + " places";
    }

    const ShowMessagesOptions& m_options;
    std::string m_shown;
    XmlLayer m_xml;
    Json m_list = Json::array();
    std::string m_separator;
    size_t m_messages = 0;
    size_t m_faults = 0;
};

}  // namespace

void ShowMessages(const ShowMessagesOptions& options) {
    MessagePrinter(options).PrintAll();
}

}  // namespace tallyquist
