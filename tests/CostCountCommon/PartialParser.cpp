// The code of a parser plug-in that lacks an entry: one is built per entry that is renamed by a
// compile definition. The functions are only there to be found.
#include "CostCountCommon/include/XmlPxdFunctions.h"

#define DEFINE_ENTRY(slot, name, missing) \
    extern "C" __attribute__((visibility("default"))) void name() {}
XMLPXD_ENTRIES(DEFINE_ENTRY)
