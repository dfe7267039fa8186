/* A host in C: loads the exporter plug-in by path, writes a file, and compares it with what must be
 * in it. Usage: exporter_c_host PLUGIN FILE */
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "JobCostExporter/CJobCostExporter.h"

static void Fail(const char* reason) {
    fprintf(stderr, "exporter_c_host: %s\n", reason);
    exit(1);
}

/* ISO C has no cast from an object pointer to a function pointer; POSIX makes copying it work. */
static void Find(void* module, const char* name, void* function) {
    void* address = dlsym(module, name);
    if (address == NULL) {
        Fail(dlerror());
    }
    memcpy(function, &address, sizeof address);
}

int main(int argc, char** argv) {
    int (*create)(void**);
    void (*dispose)(void*);
    int (*open)(void*, const char*);
    int (*writeBom)(void*);
    int (*writeValues)(void*, int, const char**, const char**, const char**);
    int (*close)(void*);
    const char* header[] = {"user", "time"};
    const char* row[] = {"alice", "90061"};
    const char* types[] = {NULL, "timespan"};
    const char* expected = "\xEF\xBB\xBF\"user\",\"time\"\n\"alice\",\"25:01:01\"";
    char actual[256] = {0};
    void* module = NULL;
    void* handle = NULL;
    FILE* file;

    if (argc != 3 || (module = dlopen(argv[1], RTLD_NOW)) == NULL) {
        Fail("cannot load the plug-in");
    }
    Find(module, "DataExporterCreate", &create);
    Find(module, "DataExporterDispose", &dispose);
    Find(module, "DataExporterOpen", &open);
    Find(module, "DataExporterWriteBOM", &writeBom);
    Find(module, "DataExporterWriteValues", &writeValues);
    Find(module, "DataExporterClose", &close);
    if (create(&handle) != 0 || handle == NULL || open(handle, argv[2]) != 0 ||
        writeBom(handle) != 0 || writeValues(handle, 2, header, NULL, NULL) != 0 ||
        writeValues(handle, 2, row, NULL, types) != 0 || close(handle) != 0) {
        Fail("writing failed");
    }
    dispose(handle);
    dispose(NULL);
    file = fopen(argv[2], "rb");
    if (file == NULL || fread(actual, 1, sizeof actual - 1, file) == 0 || fclose(file) != 0) {
        Fail("reading back failed");
    }
    remove(argv[2]);
    if (strcmp(actual, expected) != 0) {
        Fail(actual);
    }
    return 0;
}
