#include "JobCostExporter/JobCostExporterLogger.h"

void writeLog(const char*, unsigned int, char, unsigned int, const char*, ...) {}
