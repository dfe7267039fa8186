// Usage: location_probe APPLICATION_TYPE KEY ... Prints a line per key: the result and the output,
// which is "unchanged" when the library leaves it alone.
#include <cstdio>
#include <cstdlib>

#include "CostCountCommon/include/PluginLocations.h"

int main(int argc, char** argv) {
    SetAppType(static_cast<ApplicationType>(std::atoi(argv[1])));
    for (int i = 2; i < argc; ++i) {
        std::string path = "unchanged";
        const bool found = GetPluginFilePath(argv[i], &path);
        std::printf("%d %s\n", found ? 1 : 0, path.c_str());
    }
    return 0;
}
