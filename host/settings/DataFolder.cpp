#include "host/settings/DataFolder.h"

#include "CostCountCommon/CommonUtility.h"
#include "host/common/Errors.h"

namespace tallyquist {

std::string DataFolder(MANAGEMENT_DATA_TYPE kind) {
    std::string folder;
    if (!CCommonUtility::GetDataFolderBase(kind, &folder)) {
        throw CommandError("the user's data folder cannot be told");
    }
    return folder;
}

}  // namespace tallyquist
