#include "JobCostExporter/CJobCostExporter.h"

#include <memory>
#include <new>

#include "JobCostExporter/CCsvWriter.h"

int DataExporterCreate(void** handle) {
    *handle = new (std::nothrow) CCsvWriter;
    return 0;
}

void DataExporterDispose(void* handle) {
    const std::unique_ptr<CCsvWriter> writer(static_cast<CCsvWriter*>(handle));
    if (writer != nullptr) {
        // Here, and not only in the destructor, which a cancelled thread could not leave.
        writer->Close();
    }
}

int DataExporterOpen(void* handle, const char* path) {
    return static_cast<CCsvWriter*>(handle)->Open(path);
}

int DataExporterClose(void* handle) {
    return static_cast<CCsvWriter*>(handle)->Close();
}

int DataExporterWriteValues(void* handle, int count, const char** values, const char** unusedColumn,
                            const char** types) {
    return static_cast<CCsvWriter*>(handle)->WriteValues(count, values, unusedColumn, types);
}

int DataExporterWriteBOM(void* handle) {
    return static_cast<CCsvWriter*>(handle)->WriteBOM();
}
