// Lists the files of a folder that match a pattern.
#include <exception>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/TrailingSlashes.h"
#include "compatible/Utf8.h"
#include "compatible/osFree.h"

void MacGetFileList(const std::string& pattern, std::vector<std::string>& names) try {
    const std::string_view path = platform::WithoutTrailingSlashes(pattern);
    const size_t slash = path.rfind('/');
    // Without a slash the folder would be the empty text, which is none: the current folder is the
    // caller's to name. The root folder has no last component.
    if (slash == std::string_view::npos || path == "/" || !IsUtf8(path) ||
        path.find('\0') != std::string_view::npos) {
        return;
    }
    const std::string folder(platform::WithoutTrailingSlashes(path.substr(0, slash + 1)));
    std::string expression(path.substr(slash + 1));
    // Nothing else is escaped, so a dot stands for any character; callers rely on that.
    strReplace(expression, "*", ".*");

    std::vector<std::string> found;
    if (platform::ListFolder(folder, &found) && platform::KeepMatching(expression, &found)) {
        names.insert(names.end(), std::make_move_iterator(found.begin()),
                     std::make_move_iterator(found.end()));
    }
} catch (const std::exception&) {
    // Out of memory: nothing is listed.
}
