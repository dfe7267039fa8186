// What messages say, for people and for programs.
#pragma once

#include <string>

namespace tallyquist {

constexpr const char* HIDDEN_PASSWORD = "********";

struct ShowMessagesOptions {
    std::string path = "-";  // standard input
    size_t count = 0;        // messages after which to end; 0: all
    bool follow = false;     // a named pipe without writers is not at its end
    bool json = false;
    bool showSecrets = false;
};

// Prints the messages of a file or pipe, each as soon as it is read, or as JSON all of them at the
// end, unless it follows a pipe. What is no message, or cannot be read, is told on standard error,
// and the rest read. Throws CommandError at the end when there was such, or no message.
void ShowMessages(const ShowMessagesOptions& options);

}  // namespace tallyquist
