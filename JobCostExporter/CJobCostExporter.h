/* The exporter plug-in's interface: six C functions that write a file of comma-separated values,
 * found by name in the plug-in's code after loading it. Valid C11 and C++20, self-contained.
 *
 *     DataExporterCreate, DataExporterOpen, [DataExporterWriteBOM,] DataExporterWriteValues per
 * row, DataExporterClose, DataExporterDispose
 *
 * Results are 0 for success, an errno value for a failed call, or -1 when the handle refuses
 * because an earlier call on it failed. Once a call failed, a handle refuses every later write,
 * even after another Open: use one handle per file.
 *
 * Threads: a handle serves one thread at a time; no function takes a lock. Different handles may be
 * used on different threads at once.
 *
 * Every function but DataExporterCreate and DataExporterDispose takes a handle that must not be
 * null.
 */
#ifndef JOBCOSTEXPORTER_CJOBCOSTEXPORTER_H
#define JOBCOSTEXPORTER_CJOBCOSTEXPORTER_H

#ifdef __cplusplus
extern "C" {
#endif

/* Makes an exporter and stores it in *handle, or null there when memory is exhausted: test the
 * handle, not the result. Owner: the caller, until DataExporterDispose. Precondition: `handle` is
 * not null. Result: always 0. Thread: any. */
__attribute__((visibility("default"))) int DataExporterCreate(void** handle);

/* Closes the file if it is still open (as DataExporterClose does, without telling the result) and
 * frees the exporter. Owner: takes the handle back; it is invalid afterwards. Precondition: a
 * handle of DataExporterCreate not yet disposed of, or null, which is ignored. Thread: the one that
 * uses the handle. */
__attribute__((visibility("default"))) void DataExporterDispose(void* handle);

/* Creates the file at `path`, or empties the one that is there, and starts with the first row. The
 * file is written in place: until DataExporterClose has given 0 it is not complete, also after the
 * process was killed. A host that must never leave a part of a file opens a temporary name and
 * renames it. Owner: `path` stays the caller's and is copied. Precondition: no file is open on the
 * handle; one that is open is abandoned, not closed. Result: 0; an errno value when the file cannot
 * be opened (EINVAL for a null path). The handle has then failed. Thread: the one that uses the
 * handle. */
__attribute__((visibility("default"))) int DataExporterOpen(void* handle, const char* path);

/* Writes the three bytes of the UTF-8 byte order mark.
 * Precondition: called before the first row.
 * Result: 0; an errno value when writing failed; -1 when the handle has failed or has no open file.
 * Thread: the one that uses the handle. */
__attribute__((visibility("default"))) int DataExporterWriteBOM(void* handle);

/* Writes one row of `count` cells. Every cell is put in double quotes. types[i] says what values[i]
 * is:
 * - "datetime": decimal seconds since 1970-01-01 00:00:00 UTC, written as local time, in the time
 *   zone of the process, YYYY/MM/DD hh:mm:ss
 * - "timespan": decimal seconds, written hh:mm:ss; hours may exceed 24
 * - anything else, or null: text
 *
 * A text that holds a double quote has it doubled; one that holds a double quote, comma, carriage
 * return or line feed is put in double quotes of its own, inside those of the cell. Rows are
 * separated by a line feed; the file does not end with one. A count below 1 writes an empty row.
 * Owner: the arrays and texts stay the caller's and are not kept.
 * Precondition: `values` holds `count` entries; an entry may be null and counts as "". `types` is
 * null or holds as many. `unusedColumn` is never read. Result: 0; an errno value when writing
 * failed; -1 when the handle has failed or has no open file. Thread: the one that uses the handle.
 */
__attribute__((visibility("default"))) int DataExporterWriteValues(void* handle, int count,
                                                                   const char** values,
                                                                   const char** unusedColumn,
                                                                   const char** types);

/* Flushes and closes the file; removes it when this or an earlier call on the handle failed.
 * Result: 0 when the file was closed, or none was open; an errno value when flushing or closing
 * failed. After a failed write the result may be 0 although the file is gone: the failed write has
 * told. Thread: the one that uses the handle. */
__attribute__((visibility("default"))) int DataExporterClose(void* handle);

#ifdef __cplusplus
}
#endif

#endif
