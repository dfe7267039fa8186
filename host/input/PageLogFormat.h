// The format of a page log: what a PageLogFormat string of the print server says its lines hold.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/input/RowSource.h"

namespace tallyquist {

enum class FieldKind {
    PRINTER,
    USER,
    JOB,
    TIME,   // the end of the job, as a bracketed time stamp
    PAGE,   // a page number, or "total"
    COUNT,  // copies of the page; with "total", all impressions
    BILLING,
    HOST,
    NAME,
    MEDIA,
    SIDES,
    EPOCH,  // a time in seconds since 1970
    WORD,   // an attribute whose values never hold a blank
    TEXT,   // any other attribute
};

// Whether people type the values, so that they may hold anything.
constexpr bool IsFreeText(FieldKind kind) {
    return kind == FieldKind::USER || kind == FieldKind::BILLING || kind == FieldKind::NAME ||
           kind == FieldKind::TEXT;
}

// A fixed text of the format, or one of its fields.
struct FormatPart {
    std::string literal;  // empty: the part is a field
    FieldKind kind = FieldKind::TEXT;
    std::string column;

    bool IsField() const { return literal.empty(); }
};

// Between two fields there is always a literal.
struct PageLogFormat {
    std::vector<FormatPart> parts;

    // The place of the only or first field of this kind among the parts, or among the fields.
    std::optional<size_t> PartOf(FieldKind kind) const;
    std::optional<size_t> FieldOf(FieldKind kind) const;
    size_t FieldCount() const;
};

// The formats that are recognised without being named, the likeliest first.
extern const std::string_view USUAL_LOG_FORMAT;
extern const std::string_view SEPARATED_LOG_FORMAT;
extern const std::string_view OLDEST_LOG_FORMAT;

// The keyword that the format stands behind in the configuration of a print server may be there
// too. Throws OptionError with the reason when the text is not a usable format.
PageLogFormat ParsePageLogFormat(std::string_view text);

// The same format with a double quote before and after each line.
PageLogFormat Quoted(PageLogFormat format);

// Where the values of the fields go.
struct RecordLayout {
    std::vector<Column> columns;
    std::vector<size_t> columnOf;       // by field
    std::optional<size_t> pagesColumn;  // of the count of pages, when that is one column
};

// With one row per page the page number and the copies are two columns, else both are the one
// column "pages".
RecordLayout LayOut(const PageLogFormat& format, bool perPage);

}  // namespace tallyquist
