// Sending a message through a named pipe.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace tallyquist {

// Writes the whole message, in one piece when it has up to PIPE_BUF bytes, so that messages of
// several senders do not mix. Waits so long for a reader that does not read. Throws CommandError,
// which says whether a part was sent. SIGPIPE is ignored.
void SendMessage(const std::string& path, std::string_view message, std::chrono::seconds patience);

}  // namespace tallyquist
