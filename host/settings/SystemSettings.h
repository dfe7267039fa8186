// Which system settings there are, and what values make sense.
#pragma once

#include <string>
#include <vector>

#include "host/settings/XmlLayer.h"

namespace tallyquist {

// The numbers of all system settings, in the order of the catalogue.
std::vector<unsigned int> SystemSettingIds(const XmlLayer& xml);

// The number of the setting of that name. Throws UsageError, which tells the nearest one.
unsigned int SystemSettingId(const XmlLayer& xml, const std::string& name);

// Throws UsageError for a value that no program could use.
void CheckSystemSetting(const XmlLayer& xml, unsigned int tagId, const std::string& value);

}  // namespace tallyquist
