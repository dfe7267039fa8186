// The exporter's own logging entry, a deliberate no-op: everything the exporter has to say goes
// through CCMLibLogger, and this entry is kept for callers that still name it.
#pragma once

// Accepts and discards its arguments, which are those of CCMLibLogger::WriteLog. Any thread.
void writeLog(const char* file, unsigned int line, char level, unsigned int code,
              const char* format, ...) __attribute__((format(printf, 5, 6)));
