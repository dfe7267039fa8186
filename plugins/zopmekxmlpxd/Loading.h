// From bytes, or a file, to a document.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "plugins/zopmekxmlpxd/Handles.h"

// Many times the largest data file, and little enough that a tree of it, up to some twenty times as
// large, fits into memory. What is written is held to it too, so that it can be read again.
constexpr size_t MAX_DOCUMENT_SIZE = 64UL * 1024 * 1024;

// Both throw Refusal.
std::unique_ptr<Document> ParseDocument(std::string bytes);
std::string ReadDocumentFile(const char* path);
