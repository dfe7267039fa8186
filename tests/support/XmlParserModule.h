// The XML parser plug-in as the library sees it: loaded by path, its entries in a table.
#pragma once

#include "CostCountCommon/include/XmlPxdFunctions.h"

// Throws when the plug-in, or one of its entries, is missing. XML_PARSER is the path of the one
// that was built, a compile definition of every test.
XMLPXD_FUNCLIST LoadXmlParser(const char* path);
