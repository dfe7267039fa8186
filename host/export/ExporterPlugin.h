// The exporter plug-in, loaded as any host loads it: by path, six functions by name.
#pragma once

#include <string>
#include <vector>

#include "JobCostExporter/CJobCostExporter.h"

namespace tallyquist {

class ExporterPlugin {
public:
    // Throws CommandError that names the path, and the function that is missing or why loading
    // failed.
    explicit ExporterPlugin(const std::string& path);

private:
    friend class ExportFile;

    decltype(&DataExporterCreate) m_create;
    decltype(&DataExporterDispose) m_dispose;
    decltype(&DataExporterOpen) m_open;
    decltype(&DataExporterClose) m_close;
    decltype(&DataExporterWriteValues) m_writeValues;
    decltype(&DataExporterWriteBOM) m_writeBom;
};

// One file that the plug-in writes. Every function throws CommandError with the reason of a
// failure; `shownAs` is how the file is called in it.
class ExportFile {
public:
    ExportFile(const ExporterPlugin& plugin, const std::string& path, std::string shownAs);
    ~ExportFile();
    ExportFile(const ExportFile&) = delete;
    ExportFile& operator=(const ExportFile&) = delete;

    void WriteByteOrderMark();
    // `types` holds as many entries as `values`. It is not changed; the plug-in's interface takes
    // it as if it might be.
    void WriteRow(const std::vector<std::string>& values, std::vector<const char*>& types);
    void Close();

private:
    void Check(int result) const;

    const ExporterPlugin& m_plugin;
    std::string m_shownAs;
    void* m_handle = nullptr;
    std::vector<const char*> m_values;
};

}  // namespace tallyquist
