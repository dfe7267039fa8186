#include "host/export/ExporterPlugin.h"

#include <cstring>
#include <memory>
#include <utility>

#include "CostCountCommon/src/platform/Platform.h"
#include "host/common/Errors.h"
#include "host/common/Printable.h"

namespace tallyquist {
namespace {

template <typename Function>
void Find(void* module, const std::string& path, const char* name, Function* function) {
    *function = reinterpret_cast<Function>(platform::FindFunction(module, name));
    if (*function == nullptr) {
        throw CommandError("the exporter plug-in " + Visible(path) + " has no function " + name);
    }
}

}  // namespace

ExporterPlugin::ExporterPlugin(const std::string& path) {
    std::string reason;
    const std::unique_ptr<void, void (*)(void*)> module(
        platform::LoadModule(path.c_str(), &reason),
        [](void* loaded) { platform::ReleaseModule(loaded); });
    if (module == nullptr) {
        throw CommandError("cannot load the exporter plug-in " + Visible(path) + ": " +
                           Visible(reason));
    }
    Find(module.get(), path, "DataExporterCreate", &m_create);
    Find(module.get(), path, "DataExporterDispose", &m_dispose);
    Find(module.get(), path, "DataExporterOpen", &m_open);
    Find(module.get(), path, "DataExporterClose", &m_close);
    Find(module.get(), path, "DataExporterWriteValues", &m_writeValues);
    Find(module.get(), path, "DataExporterWriteBOM", &m_writeBom);
}

ExportFile::ExportFile(const ExporterPlugin& plugin, const std::string& path, std::string shownAs)
    : m_plugin(plugin), m_shownAs(std::move(shownAs)) {
    m_plugin.m_create(&m_handle);
    if (m_handle == nullptr) {
        throw CommandError("not enough memory to export");
    }
    const int result = m_plugin.m_open(m_handle, path.c_str());
    if (result != 0) {
        m_plugin.m_dispose(m_handle);
        Check(result);
    }
}

ExportFile::~ExportFile() {
    m_plugin.m_dispose(m_handle);
}

void ExportFile::Check(int result) const {
    if (result != 0) {
        throw CommandError("cannot write " + m_shownAs + ": " +
                           (result > 0 ? std::strerror(result) : "an earlier write failed"));
    }
}

void ExportFile::WriteByteOrderMark() {
    Check(m_plugin.m_writeBom(m_handle));
}

void ExportFile::WriteRow(const std::vector<std::string>& values, std::vector<const char*>& types) {
    m_values.clear();
    for (const std::string& value : values) {
        m_values.push_back(value.c_str());
    }
    Check(m_plugin.m_writeValues(m_handle, static_cast<int>(m_values.size()), m_values.data(),
                                 nullptr, types.data()));
}

void ExportFile::Close() {
    Check(m_plugin.m_close(m_handle));
}

}  // namespace tallyquist
