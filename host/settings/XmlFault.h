// What is wrong with an XML file that the parser plug-in refused.
#pragma once

#include <string>

namespace tallyquist {

// PATH:LINE: REASON, or PATH: REASON when the place cannot be told. The plug-in gives only a
// number, so the file is read once more.
std::string DescribeXmlFault(const std::string& path);

}  // namespace tallyquist
