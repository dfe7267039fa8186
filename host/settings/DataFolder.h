// The folders of the user's data.
#pragma once

#include <string>

#include "cm_common/TypedefList.h"

namespace tallyquist {

// Where data of a kind lies. Throws CommandError.
std::string DataFolder(MANAGEMENT_DATA_TYPE kind);

}  // namespace tallyquist
