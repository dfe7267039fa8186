// The exporter plug-in as a host sees it: loaded by path, six functions by name.
#pragma once

#include <string>

#include "JobCostExporter/CJobCostExporter.h"

class CCMLibLogger;

struct ExporterModule {
    // Loads the plug-in that was built. Throws when it, or one of its functions, is missing.
    ExporterModule();

    // Sends the plug-in's own log lines to the recording logger.
    void RecordLog() const;

    decltype(&DataExporterCreate) create;
    decltype(&DataExporterDispose) dispose;
    decltype(&DataExporterOpen) open;
    decltype(&DataExporterClose) close;
    decltype(&DataExporterWriteValues) writeValues;
    decltype(&DataExporterWriteBOM) writeBom;

    CCMLibLogger* (*getInstance)();
    void (*initLibLogger)(CCMLibLogger*, std::string, std::string, std::string, const char*);
};
