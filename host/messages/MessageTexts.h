// What messages say, for people and for programs.
#pragma once

#include <string>

namespace tallyquist {

constexpr const char* HIDDEN_PASSWORD = "********";

struct ShowMessagesOptions {
    std::string path = "-";  // standard input
    bool json = false;
    bool showSecrets = false;
};

// Prints the messages of a file or pipe, each as soon as it is read, or all of them as JSON at the
// end. What is no message, or cannot be read, is told on standard error, and the rest read. Throws
// CommandError at the end when there was such, or no message.
void ShowMessages(const ShowMessagesOptions& options);

}  // namespace tallyquist
