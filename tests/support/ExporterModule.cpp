#include "tests/support/ExporterModule.h"

#include <stdexcept>

#include "compatible/osFree.h"

namespace {

template <typename Function>
void Find(void* module, const char* name, Function* function) {
    *function = reinterpret_cast<Function>(GetProcAddress(module, name));
    if (*function == nullptr) {
        throw std::runtime_error(std::string("the exporter plug-in lacks ") + name);
    }
}

}  // namespace

ExporterModule::ExporterModule() {
    void* module = LoadLibrary(EXPORTER_PLUGIN);
    Find(module, "DataExporterCreate", &create);
    Find(module, "DataExporterDispose", &dispose);
    Find(module, "DataExporterOpen", &open);
    Find(module, "DataExporterClose", &close);
    Find(module, "DataExporterWriteValues", &writeValues);
    Find(module, "DataExporterWriteBOM", &writeBom);
    Find(module, "_ZN12CCMLibLogger11getInstanceEv", &getInstance);
    Find(module,
         "_ZN12CCMLibLogger13InitLibLoggerENSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES5_"
         "S5_"
         "PKc",
         &initLibLogger);
    FreeLibrary(module);
}

void ExporterModule::RecordLog() const {
    initLibLogger(getInstance(), "exporter.log", "tests", "exporter", RECORDING_LOGGER);
}
