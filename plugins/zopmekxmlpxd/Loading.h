// From bytes, or a file, to a document.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "plugins/zopmekxmlpxd/Handles.h"

// A list of 100,000 printers with many names each fits, and a tree of it, up to some twenty times
// as large, into the memory of a usual machine. What is written is held to it too, so that it can
// be read again.
constexpr size_t MAX_DOCUMENT_SIZE = 128UL * 1024 * 1024;

// Both throw Refusal.
std::unique_ptr<Document> ParseDocument(std::string bytes);
std::string ReadDocumentFile(const char* path);
