// What the XML layer says of its failures.
#pragma once

namespace xmlpxd {

// Prints a message as one whole line on standard output; a line feed is added when it has none.
void Print(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace xmlpxd
