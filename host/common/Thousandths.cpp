#include "host/common/Thousandths.h"

namespace tallyquist {

std::string FormatThousandths(int64_t thousandths) {
    std::string text = std::to_string(thousandths / 1000);
    const int64_t rest = thousandths % 1000;
    if (rest != 0) {
        text += '.' + std::to_string(1000 + rest).substr(1);
        text.erase(text.find_last_not_of('0') + 1);
    }
    return text;
}

}  // namespace tallyquist
