/* A host in C, which shows that the header serves one. 0 when every call succeeded. */
#include <stddef.h>

#include "JobCostExporter/CJobCostExporter.h"

int WriteFromC(const char* path) {
    const char* header[] = {"user", "time"};
    const char* row[] = {"alice", "90061"};
    const char* types[] = {NULL, "timespan"};
    void* handle = NULL;
    int failures = DataExporterCreate(&handle) != 0 || handle == NULL;
    failures += DataExporterOpen(handle, path) != 0;
    failures += DataExporterWriteBOM(handle) != 0;
    failures += DataExporterWriteValues(handle, 2, header, NULL, NULL) != 0;
    failures += DataExporterWriteValues(handle, 2, row, NULL, types) != 0;
    failures += DataExporterClose(handle) != 0;
    DataExporterDispose(handle);
    DataExporterDispose(NULL);
    return failures;
}
