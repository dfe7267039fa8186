// A file that appears under its name only when it is whole.
#pragma once

#include <memory>
#include <string>

#include "host/export/RemoveOnSignal.h"

namespace tallyquist {

// The bytes are written to a temporary file, whose name begins with a dot and ends with ".part",
// beside the target, and renamed by Commit. A target that is a symbolic link is followed, not
// replaced. The target "-" is standard output: the temporary file then lies in the folder for such
// files and is copied. Failures are CommandErrors that name the file and the reason.
//
// Unlike the library's ReplacingFile it names the temporary file for others to write, and removes
// it when the program is interrupted.
class OutputFile {
public:
    // Refuses a target that exists unless `replace`, and one that is no regular file.
    OutputFile(const std::string& target, bool replace);
    // Removes the temporary file unless it was committed.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // How the target is called in messages.
    const std::string& ShownAs() const { return m_shownAs; }

    // Where the file that is to be replaced or made lies; empty for standard output.
    const std::string& Target() const { return m_target; }

    // Makes the temporary file and returns its path.
    const std::string& CreateTemporary();

    // Flushes the temporary file to the disk and gives it the target's name.
    void Commit();

private:
    [[noreturn]] void Fail(int error) const;
    [[noreturn]] void FailAsExisting() const;
    void FollowLinks();
    void CheckTarget();
    void Rename();
    void CopyToStandardOutput();

    std::string m_shownAs;
    std::string m_target;
    bool m_replace;
    std::string m_temporary;  // empty: there is none
    std::unique_ptr<RemoveOnSignal> m_removal;
};

}  // namespace tallyquist
