#include "tests/host/common/ProgramRun.h"

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "tests/support/TempFolder.h"

ProgramRun RunTallyquist(const std::string& arguments, const std::string& folder) {
    const TempFolder streams;
    WriteFile(streams.Path("script"), "cd '" + folder + "' && exec >" + streams.Path("out") +
                                          " 2>" + streams.Path("err") + "\n" TALLYQUIST " " +
                                          arguments);
    const int status = std::system(("sh " + streams.Path("script")).c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status),
            ReadFile(streams.Path("out")), ReadFile(streams.Path("err"))};
}

std::vector<std::string> NamesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}
