// Takes lines of a page log apart with regular expressions made from the format.
// External interface: PageLogMatcher, MatcherPair, MakeMatchers.
#include "host/input/PageLogMatcher.h"

#include <re2/re2.h>

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <utility>

namespace tallyquist {
namespace {

using Parts = std::span<const FormatPart>;

constexpr std::string_view TIME_STAMP =
    R"(\[[0-9]{2}/[A-Z][a-z]{2}/[0-9]{4}:[0-9]{2}:[0-9]{2}:[0-9]{2} [+-][0-9]{4}\])";
constexpr std::string_view LOCAL_HOST =
    R"((?:localhost|[0-9]{1,3}(?:\.[0-9]{1,3}){3}|\[?(?:[0-9A-Fa-f:]*::[0-9A-Fa-f:.]*)"
    R"(|(?:[0-9A-Fa-f]{1,4}:){7}[0-9A-Fa-f]{1,4})(?:%[0-9A-Za-z._-]+)?\]?))";

// What is taken for the billing code and the host name, which stand side by side without quotes.
// Servers mostly log "-" for the one and an address for the other, so these are looked for first.
enum class Trust { NO_BILLING, ADDRESS_AS_HOST, ANY_HOST };

enum class Length { SHORTEST, LONGEST };

// The expression of one field. `variable`: where the field ends does not follow from where it
// begins, because its own characters may look like the text behind it.
struct FieldPattern {
    std::string expression;
    bool variable = false;
};

FieldPattern FreeText(Length length) {
    return {.expression = length == Length::SHORTEST ? ".*?" : ".*", .variable = true};
}

// Words end at the separator of the format, or else at a blank.
FieldPattern Word(char stop, char quantifier, Length length) {
    if (std::string_view(" |\t;\"").find(stop) != std::string_view::npos) {
        return {.expression = std::string("[^\\n\\x{") + "0123456789abcdef"[stop >> 4] +
                              "0123456789abcdef"[stop & 15] + "}]" + quantifier};
    }
    return {
        .expression = std::string("[^ \\n]") + quantifier + (length == Length::SHORTEST ? "?" : ""),
        .variable = true};
}

// `stop` is the first character behind the field; a blank stands for the end of the line.
FieldPattern PatternOf(FieldKind kind, char stop, Trust trust, Length length) {
    const bool digitStops = stop >= '0' && stop <= '9';
    switch (kind) {
        case FieldKind::PRINTER:
            return Word(stop, '+', length);
        case FieldKind::HOST:
            if (trust == Trust::ADDRESS_AS_HOST) {
                return {.expression = std::string(LOCAL_HOST), .variable = stop != ' '};
            }
            return Word(stop, '+', length);
        case FieldKind::MEDIA:
        case FieldKind::WORD:
            return Word(stop, '*', length);
        case FieldKind::JOB:
        case FieldKind::COUNT:
            return {.expression = "[0-9]+", .variable = digitStops};
        case FieldKind::PAGE:
            return {.expression = "total|[0-9]+", .variable = digitStops};
        case FieldKind::TIME:
            return {.expression = std::string(TIME_STAMP)};
        case FieldKind::SIDES:
            return {.expression = "-|one-sided|two-sided-long-edge|two-sided-short-edge"};
        case FieldKind::EPOCH:
            return {.expression = "[0-9]+|-|no-value|", .variable = stop != ' ' && stop != '|'};
        case FieldKind::BILLING:
            if (trust == Trust::NO_BILLING) {
                return {.expression = "-"};
            }
            return FreeText(length);
        case FieldKind::USER:
        case FieldKind::NAME:
        case FieldKind::TEXT:
            return FreeText(length);
    }
    return FreeText(length);
}

FieldPattern PatternAt(Parts parts, size_t at, Trust trust, Length length) {
    const char stop = at + 1 < parts.size() ? parts[at + 1].literal.front() : ' ';
    return PatternOf(parts[at].kind, stop, trust, length);
}

// The expression of parts [begin, end), with a group around each field when `groups`.
std::string Join(Parts parts, size_t begin, size_t end, Trust trust, Length length, bool groups) {
    std::string expression;
    for (size_t i = begin; i < end; ++i) {
        if (parts[i].IsField()) {
            expression += groups ? "(" : "(?:";
            expression += PatternAt(parts, i, trust, length).expression + ")";
        } else {
            expression += RE2::QuoteMeta(parts[i].literal);
        }
    }
    return expression;
}

// An expression that is compiled when it is first needed, as most never are.
class Expression {
public:
    explicit Expression(std::string source) : m_source(std::move(source)) {}

    const RE2& Get() const {
        if (!m_compiled) {
            RE2::Options options(RE2::Latin1);  // the log holds bytes, in whatever encoding
            options.set_dot_nl(true);
            options.set_log_errors(false);
            m_compiled = std::make_unique<RE2>(m_source, options);
            if (!m_compiled->ok()) {
                throw OptionError("the log format cannot be used: " + m_compiled->error());
            }
        }
        return *m_compiled;
    }

    bool Search(std::string_view text, RE2::Anchor anchor) const {
        return Get().Match(text, 0, text.size(), anchor, nullptr, 0);
    }

    bool Capture(std::string_view text, RE2::Anchor anchor, std::vector<std::string_view>& fields,
                 size_t count) const {
        // The group 0 is the whole match. Kept between calls, for this runs once per line.
        thread_local std::vector<re2::StringPiece> groups;
        groups.resize(count + 1);
        if (!Get().Match(text, 0, text.size(), anchor, groups.data(),
                         static_cast<int>(groups.size()))) {
            return false;
        }
        fields.resize(count);
        for (size_t i = 0; i < count; ++i) {
            fields[i] = {groups[i + 1].data(), groups[i + 1].size()};
        }
        return true;
    }

private:
    std::string m_source;
    mutable std::unique_ptr<RE2> m_compiled;
};

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Names with a dot only; other words look like a host name too often.
bool LooksLikeHostName(std::string_view word) {
    bool letter = false;  // in the last label
    bool dot = false;
    for (size_t begin = 0; begin <= word.size();) {
        const size_t end = std::min(word.find('.', begin), word.size());
        const std::string_view label = word.substr(begin, end - begin);
        if (label.empty() || !std::ranges::all_of(label, [](char c) {
                return IsLetter(c) || (c >= '0' && c <= '9') || c == '-';
            })) {
            return false;
        }
        letter = std::ranges::any_of(label, IsLetter);
        dot = dot || end < word.size();
        begin = end + 1;
    }
    return dot && letter;
}

bool HasHostNameBehindFirstWord(std::string_view text) {
    size_t blank = text.find(' ');
    while (blank != std::string_view::npos) {
        const size_t next = text.find(' ', blank + 1);
        if (LooksLikeHostName(text.substr(blank + 1, next - blank - 1))) {
            return true;
        }
        blank = next;
    }
    return false;
}

// Whether both readings take the same text apart at the same places.
bool SameFields(const std::vector<std::string_view>& fields,
                const std::vector<std::string_view>& others) {
    return std::ranges::equal(fields, others, [](std::string_view a, std::string_view b) {
        return a.data() == b.data() && a.size() == b.size();
    });
}

bool HasBillingAndHost(Parts parts) {
    const auto has = [&](FieldKind kind) {
        return std::ranges::any_of(
            parts, [&](const FormatPart& part) { return part.IsField() && part.kind == kind; });
    };
    return has(FieldKind::BILLING) && has(FieldKind::HOST);
}

std::vector<Trust> TrustsFor(Parts parts) {
    if (HasBillingAndHost(parts)) {
        return {Trust::NO_BILLING, Trust::ADDRESS_AS_HOST, Trust::ANY_HOST};
    }
    return {Trust::ANY_HOST};
}

// The same for a record that ends within the field at `end`.
std::vector<Trust> TrustsForCut(Parts parts, size_t end) {
    if (parts[end].kind == FieldKind::HOST && HasBillingAndHost(parts)) {
        // Without a whole host name nothing shows where any other billing code ends.
        return {Trust::NO_BILLING};
    }
    return TrustsFor(parts.first(end));
}

size_t CountFields(Parts parts) {
    return static_cast<size_t>(std::ranges::count_if(parts, &FormatPart::IsField));
}

// What follows from a part of these kinds on is known to be whole when the literal behind the last
// of them is there. Empty when a line can only be whole or unreadable.
std::optional<size_t> EndOfHead(Parts parts) {
    constexpr std::array HEAD = {FieldKind::PRINTER, FieldKind::USER, FieldKind::JOB,
                                 FieldKind::TIME,    FieldKind::PAGE, FieldKind::COUNT};
    size_t end = 0;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (parts[i].IsField() && std::ranges::find(HEAD, parts[i].kind) != HEAD.end()) {
            end = i + 2;
        }
    }
    if (end > parts.size()) {
        return std::nullopt;
    }
    return end;
}

// A free text whose end only blanks and words behind it show. In a line that was cut these words
// may as well belong to the text.
bool EndsUnclearly(Parts parts, size_t at) {
    if (!parts[at].IsField() || !IsFreeText(parts[at].kind) || at + 2 >= parts.size() ||
        parts[at + 1].literal != " ") {
        return false;
    }
    const FieldKind next = parts[at + 2].kind;
    return next != FieldKind::JOB && next != FieldKind::TIME && next != FieldKind::HOST;
}

}  // namespace

// All parts of a format under one assumption about billing code and host.
class PageLogMatcher::Pattern {
public:
    Pattern(Parts parts, Trust trust)
        : m_shortest(Join(parts, 0, parts.size(), trust, Length::SHORTEST, true)),
          m_longest(Join(parts, 0, parts.size(), trust, Length::LONGEST, true)),
          m_fieldCount(CountFields(parts)) {
        std::vector<size_t> variable;
        std::vector<size_t> fieldOf(parts.size());
        for (size_t i = 0, field = 0; i < parts.size(); ++i) {
            fieldOf[i] = field;
            if (parts[i].IsField()) {
                ++field;
                if (PatternAt(parts, i, trust, Length::SHORTEST).variable) {
                    variable.push_back(i);
                }
            }
        }
        for (size_t v = 0; v < variable.size(); ++v) {
            const bool last = v + 1 == variable.size();
            const size_t begin = variable[v] + 1;
            const size_t end = last ? parts.size() : variable[v + 1];
            if (begin < end) {
                m_boundaries.push_back(
                    {.field = fieldOf[variable[v]],
                     .behind = Expression(Join(parts, begin, end, trust, Length::SHORTEST, false) +
                                          (last ? "\\z" : ""))});
            }
        }
    }

    // For the two helpers that only search.
    explicit Pattern(std::string expression)
        : m_shortest(expression), m_longest(std::move(expression)) {}

    bool Completes(std::string_view text) const {
        return m_shortest.Search(text, RE2::ANCHOR_BOTH);
    }
    bool Begins(std::string_view text) const { return m_shortest.Search(text, RE2::ANCHOR_START); }
    size_t Find(std::string_view text) const {
        re2::StringPiece found;
        if (!m_shortest.Get().Match(text, 0, text.size(), RE2::UNANCHORED, &found, 1)) {
            return std::string_view::npos;
        }
        return static_cast<size_t>(found.data() - text.data());
    }

    bool Match(std::string_view text, Reading& reading) const {
        if (!m_shortest.Capture(text, RE2::ANCHOR_BOTH, reading.fields, m_fieldCount)) {
            return false;
        }
        reading.ambiguous = false;
        if (MayDiffer(text, reading.fields)) {
            m_longest.Capture(text, RE2::ANCHOR_BOTH, reading.otherFields, m_fieldCount);
            reading.ambiguous = !SameFields(reading.fields, reading.otherFields);
        }
        return true;
    }

    // Makes the shortest reading the other one.
    void MatchOther(std::string_view text, Reading& reading) const {
        reading.ambiguous =
            m_shortest.Capture(text, RE2::ANCHOR_BOTH, reading.otherFields, m_fieldCount) &&
            !SameFields(reading.fields, reading.otherFields);
    }

private:
    // Where a field with variable length ends, and what has to follow it up to the next such field.
    struct Boundary {
        size_t field;
        Expression behind;
    };

    // The longest reading costs more than all the rest and is nearly always the same. In the first
    // field that it makes longer, what follows that field must occur once more further on.
    bool MayDiffer(std::string_view text, const std::vector<std::string_view>& fields) const {
        return std::ranges::any_of(m_boundaries, [&](const Boundary& boundary) {
            const std::string_view field = fields[boundary.field];
            const auto end = static_cast<size_t>(field.data() + field.size() - text.data());
            return end < text.size() &&
                   boundary.behind.Search(text.substr(end + 1), RE2::UNANCHORED);
        });
    }

    Expression m_shortest;
    Expression m_longest;
    size_t m_fieldCount = 0;
    std::vector<Boundary> m_boundaries;
};

// The parts [0, end) of a format and then any rest, the beginning of the field at `end`. Only the
// beginning of a free text is worth having.
class PageLogMatcher::CutPattern {
public:
    CutPattern(Parts parts, size_t end, Trust trust)
        : m_expression(Join(parts, 0, end, trust, Length::SHORTEST, true) +
                       (IsFreeText(parts[end].kind) ? "(.*)" : ".*")),
          m_captured(CountFields(parts.first(end)) + (IsFreeText(parts[end].kind) ? 1 : 0)) {}

    bool Match(std::string_view text, Reading& reading, size_t allFields) const {
        if (!m_expression.Capture(text, RE2::ANCHOR_BOTH, reading.fields, m_captured)) {
            return false;
        }
        reading.fields.resize(allFields);
        reading.ambiguous = false;
        return true;
    }

private:
    Expression m_expression;
    size_t m_captured;
};

PageLogMatcher::PageLogMatcher(PageLogFormat format) : m_format(std::move(format)) {
    const Parts parts(m_format.parts);
    for (const Trust trust : TrustsFor(parts)) {
        m_patterns.push_back(std::make_unique<Pattern>(parts, trust));
    }
    if (const std::optional<size_t> head = EndOfHead(parts)) {
        size_t longest = *head;
        for (size_t at = *head; at < parts.size(); ++at) {
            longest = parts[at].IsField() ? at : longest;
            if (EndsUnclearly(parts, at)) {
                break;
            }
        }
        for (size_t end = std::min(longest, parts.size() - 1) + 1; end-- > *head;) {
            if (parts[end].IsField()) {
                for (const Trust trust : TrustsForCut(parts, end)) {
                    m_cutPatterns.push_back(std::make_unique<CutPattern>(parts, end, trust));
                }
            }
        }
    }
    const size_t job = m_format.PartOf(FieldKind::JOB).value();
    const std::optional<size_t> time = m_format.PartOf(FieldKind::TIME);
    const size_t startEnd = std::min(std::max(job, time.value_or(0)) + 2, parts.size());
    m_start = std::make_unique<Pattern>(
        Join(parts, 0, startEnd, Trust::ANY_HOST, Length::SHORTEST, false));
    if (time) {
        const bool together = std::max(job, *time) - std::min(job, *time) == 2;
        m_inside = std::make_unique<Pattern>(
            together ? Join(parts, std::min(job, *time), std::max(job, *time) + 1, Trust::ANY_HOST,
                            Length::SHORTEST, false)
                     : std::string(TIME_STAMP));
    }
}

PageLogMatcher::~PageLogMatcher() = default;

bool PageLogMatcher::Match(std::string_view text, Reading& reading) const {
    const size_t last = m_patterns.size() - 1;
    for (size_t i = 0; i <= last; ++i) {
        // To find that there is no match takes a fraction of the time that taking apart takes.
        if (m_patterns[i]->Completes(text)) {
            reading.certain = last == 0 || i < last;
            if (!m_patterns[i]->Match(text, reading)) {
                return false;
            }
            // Several words in front of an address may be a code, a host name and the beginning of
            // a name that holds the address.
            if (i > 0 && i < last && !reading.ambiguous &&
                HasHostNameBehindFirstWord(
                    reading.fields[m_format.FieldOf(FieldKind::BILLING).value()])) {
                m_patterns[last]->MatchOther(text, reading);
            }
            return true;
        }
    }
    return false;
}

bool PageLogMatcher::Completes(std::string_view text) const {
    // The last pattern takes what any of the others takes.
    return m_patterns.back()->Completes(text);
}

bool PageLogMatcher::MatchCut(std::string_view text, Reading& reading) const {
    return std::ranges::any_of(m_cutPatterns, [&](const std::unique_ptr<CutPattern>& pattern) {
        return pattern->Match(text, reading, m_format.FieldCount());
    });
}

bool PageLogMatcher::StartsRecord(std::string_view text) const {
    return m_start->Begins(text);
}

size_t PageLogMatcher::FindRecordInside(std::string_view text) const {
    if (!m_inside || text.find('[') == std::string_view::npos) {
        return std::string_view::npos;
    }
    return m_inside->Find(text);
}

const PageLogMatcher& MatcherPair::For(std::string_view line) const {
    return line.starts_with('"') && quoted->StartsRecord(line) ? *quoted : *bare;
}

MatcherPair MakeMatchers(const PageLogFormat& format) {
    return {.bare = std::make_shared<PageLogMatcher>(format),
            .quoted = std::make_shared<PageLogMatcher>(Quoted(format))};
}

bool PageLogMatcher::EndsInFreeText() const {
    return m_format.parts.back().IsField() && IsFreeText(m_format.parts.back().kind);
}

}  // namespace tallyquist
