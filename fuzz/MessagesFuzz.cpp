// Any bytes as a message and as what comes out of a pipe. They end where their memory ends, so that
// reading on is found out.
#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/include/CBntMessageReader.h"
#include "fuzz/Fuzz.h"

namespace {

// Outputs are as they were after a failure.
void Parse(CCommonXmlPxd& xml, const unsigned char* data, size_t size) {
    unsigned int err = 4711;  // which stays without a message
    CBntCommandValue command;
    command.m_MessageType = "-";
    command.m_NicIndex = 4711;
    Check(xml.ParseBNTCommand(command, data, size, &err) == (err == 0));
    Check(err == 0 || (command.m_MessageType == "-" && command.m_NicIndex == 4711));
    std::string first = "-";
    std::string second = "-";
    err = 4711;
    Check(xml.ParseBNTCmdRet(first, second, data, size, &err) == (err == 0));
    Check(err == 0 || (first == "-" && second == "-"));
    first = second = "-";
    bool last = true;
    bool ipChanged = true;
    err = 4711;
    Check(xml.ParseBNTResult(first, second, last, data, size, &err, &ipChanged) == (err == 0));
    Check(err == 0 || (first == "-" && second == "-" && last && ipChanged));
}

// What the reader gives of bytes that come in pieces of a length: the messages. Nothing is made up,
// and none comes too early.
std::vector<std::string> Messages(std::string_view bytes, size_t length) {
    CBntMessageReader reader;
    std::vector<std::string> messages;
    std::string piece;
    size_t found = 0;
    for (size_t at = 0; at <= bytes.size(); at += length) {
        const std::string_view part = bytes.substr(at, length);
        Check(reader.Append(part.data(), part.size()));
        const bool isLast = at + length > bytes.size();
        for (BntRead read;
             (read = isLast ? reader.Finish(&piece) : reader.Next(&piece)) != BntRead::END;) {
            found = bytes.find(piece, found) + piece.size();
            Check(!piece.empty() && found >= piece.size() && found <= at + part.size());
            if (read == BntRead::MESSAGE) {
                Check(piece.size() <= CBntMessageReader::MAX_SIZE);
                messages.push_back(piece);
            }
        }
    }
    return messages;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static CCommonXmlPxd xml;
    static const bool isBound = xml.InitializeXmlPxd("settings", ApplicationContents(),
                                                     "/PlugIns/zopmekxmlpxd.plugin", true);
    Check(isBound);
    const std::unique_ptr<unsigned char[]> block(new unsigned char[size]);
    std::copy(data, data + size, block.get());
    Parse(xml, block.get(), size);

    const std::string_view bytes(reinterpret_cast<const char*>(block.get()), size);
    Check(Messages(bytes, size + 1) == Messages(bytes, size == 0 ? 1 : data[0] % 64 + 1));
    return 0;
}
