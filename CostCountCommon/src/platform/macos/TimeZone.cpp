#include <CoreFoundation/CoreFoundation.h>

#include "CostCountCommon/src/CancellationOff.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/macos/CoreFoundationOwner.h"

int platform::SecondsFromGmt() {
    const CancellationOff whole;
    const Owned<CFTimeZoneRef> zone(CFTimeZoneCopyDefault());
    return zone == nullptr ? 0
                           : static_cast<int>(CFTimeZoneGetSecondsFromGMT(
                                 zone.get(), CFAbsoluteTimeGetCurrent()));
}
