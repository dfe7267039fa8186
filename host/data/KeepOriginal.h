// Keeps a data file that somebody else wrote before it is written anew.
#pragma once

#include <functional>
#include <string>

namespace tallyquist {

// Data files are written anew from records, which loses comments, unknown elements and whatever
// else records do not carry. `writeUnchanged` writes the records as they were read, to the path
// that it is given. When that gives other bytes than those of the file at `path`, the file is
// copied to the first free of .NAME.orig, .NAME.orig.2 and so on beside it, unless one of those
// tried holds the same bytes already, and standard error tells so. Without a file at `path` there
// is nothing to keep.
//
// To be called under the FolderLock of the file's folder, right before the changed records are
// written. Throws CommandError, and what `writeUnchanged` throws; then nothing should be written.
void KeepOriginal(const std::string& path,
                  const std::function<void(const std::string& path)>& writeUnchanged);

// Keeps a file that cannot be read and is to be replaced in the same way. What is no regular file
// is not kept.
void KeepDamaged(const std::string& path);

}  // namespace tallyquist
