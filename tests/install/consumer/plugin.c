#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include "JobCostExporter/CJobCostExporter.h"

int main(int argc, char** argv) {
    int (*create)(void**);
    int (*open)(void*, const char*);
    int (*writeValues)(void*, int, const char**, const char**, const char**);
    int (*close)(void*);
    void (*dispose)(void*);
    const char* names[] = {"DataExporterCreate", "DataExporterOpen", "DataExporterWriteValues",
                           "DataExporterClose", "DataExporterDispose"};
    void* functions[] = {&create, &open, &writeValues, &close, &dispose};
    const char* row[] = {"alice", "61"};
    const char* types[] = {NULL, "timespan"};
    void* plugin = argc == 3 ? dlopen(argv[1], RTLD_NOW) : NULL;
    void* handle = NULL;
    size_t i;
    if (plugin == NULL) {
        puts("the plug-in cannot be loaded");
        return 1;
    }
    for (i = 0; i < sizeof names / sizeof *names; ++i) {
        void* address = dlsym(plugin, names[i]);
        memcpy(functions[i], &address, sizeof address);
    }
    create(&handle);
    if (handle == NULL || open(handle, argv[2]) != 0 ||
        writeValues(handle, 2, row, NULL, types) != 0 || close(handle) != 0) {
        puts("the export failed");
        return 1;
    }
    dispose(handle);
    return 0;
}
