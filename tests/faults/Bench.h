// What operations work on: an application, and a user's data in a folder of their own, which is the
// current folder. Arguments are made before, so that only the library's own allocations fail; texts
// in operations are too short to be allocated.
#pragma once

#include <list>
#include <optional>
#include <string>

#include "CostCountCommon/CommonXMLPxd.h"
#include "CostCountCommon/include/CEventHandle.h"
#include "tests/support/Environment.h"
#include "tests/support/ExporterModule.h"
#include "tests/support/Processes.h"
#include "tests/support/TempFolder.h"

// Below the bench's folder.
#define GROUP_FOLDER "data/K7Q3MZP2WD.RX.qvtrel/Library/Application Support/Norvane/Tallyquist"
#define LOCAL_FOLDER "data/Norvane/Tallyquist"

// One of two states of everything that is written.
struct Records {
    std::string text, number;
    std::list<CCommonPrinterInfo> printers;
    CCommonXmlPxdDataUnitCost costs;
    CCommonXmlPxdDataPrinterCaps caps;
};

// Final: the class has no virtual destructor.
class OwnedXml final : public CCommonXmlPxd {};

struct Bench {
    // With `parser` as the parser plug-in of the application. Files hold so many `items` of a kind.
    Bench(const char* parser, int items);

    // Before and after each run of an operation.
    void Begin();
    void End();
    // What the run gave, until it is forgotten, with its memory.
    std::string Value() const;
    void Forget();
    const Records& Written() const { return records[variant]; }
    CCommonPrinterInfo& Printer() { return records[0].printers.front(); }

    const TempFolder folder;
    const int items;
    const std::string contents = folder.Path("App.app/Contents");
    const ScopedVariable contentsVariable{"TALLYQUIST_CONTENTS", contents.c_str()};
    const ScopedVariable data{"XDG_DATA_HOME", folder.Path("data").c_str()};
    const ScopedVariable config{"XDG_CONFIG_HOME", folder.Path("config").c_str()};
    const ExporterModule exporter;
    Records records[2];
    std::string command, reply, result;  // messages
    // Of semaphores.
    const std::string eventName = UniqueShortName();
    const std::string lockName = CEventHandle::FullNameOf(UniqueShortName(1));
    int variant = 0;

    // For one run: an object with a document of its own, and what operations give.
    std::optional<OwnedXml> xml;
    void* document = nullptr;
    void* root = nullptr;
    unsigned int err = 0;
    std::string name, out, second;
    CBntCommandValue parsed;
    CCommonPrinterInfo* printers = nullptr;
    CCommonXmlPxdDataUnitCost costs;
    CCommonXmlPxdDataPrinterCaps caps;
    CCommonXmlPxdDataUserSettings settings;
};
