#include "host/info/PapersCommand.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "cm_common/PaperNameIdList.h"
#include "compatible/Ascii.h"
#include "host/common/Errors.h"
#include "host/common/Json.h"
#include "host/common/Printable.h"
#include "host/common/StandardOutput.h"
#include "host/common/TextTable.h"
#include "host/common/Thousandths.h"

namespace tallyquist {
namespace {

struct PapersOptions {
    std::string text;  // empty: all
    bool json = false;
};

struct Kind {
    PaperKind kind;
    const char* words;
    const char* jsonWord;
    bool hasWidth;
    bool hasHeight;
};

constexpr auto KINDS = std::to_array<Kind>({
    {PAPER_KIND_CUT_SHEET, "cut sheet", "cut_sheet", true, true},
    {PAPER_KIND_ROLL, "roll", "roll", true, false},
    {PAPER_KIND_GENERAL_PURPOSE, "general purpose", "general_purpose", false, false},
    {PAPER_KIND_USER_DEFINED, "user-defined", "user_defined", false, false},
});

const Kind& KindOf(const PaperNameId& paper) {
    const auto* found = std::find_if(KINDS.begin(), KINDS.end(),
                                     [&](const Kind& kind) { return kind.kind == paper.m_Kind; });
    if (found == KINDS.end()) {
        throw CommandError(paper.m_MediaName + " is of an unknown kind");
    }
    return *found;
}

std::vector<const PaperNameId*> PapersWith(const std::string& text) {
    std::vector<const PaperNameId*> papers;
    for (const PaperNameId& paper : PaperNameIdList) {
        if (ContainsAsciiNoCase(paper.m_MediaName, text) ||
            ContainsAsciiNoCase(paper.m_DisplayId, text)) {
            papers.push_back(&paper);
        }
    }
    return papers;
}

// In the unit whose thousandths are given.
std::string SizeText(const Kind& kind, uint32_t width, uint32_t height) {
    if (!kind.hasWidth) {
        return "-";
    }
    if (width == 0 || (kind.hasHeight && height == 0)) {
        return "unknown";
    }
    return kind.hasHeight ? FormatThousandths(width) + " x " + FormatThousandths(height)
                          : FormatThousandths(width);
}

std::string TableOf(const std::vector<const PaperNameId*>& papers) {
    TextTable table({"name", "kind", "millimetres", "inches", "display id"});
    for (const PaperNameId* paper : papers) {
        const Kind& kind = KindOf(*paper);
        table.Add({paper->m_MediaName, kind.words,
                   SizeText(kind, paper->m_WidthMicrometre, paper->m_HeightMicrometre),
                   SizeText(kind, paper->m_WidthMilliInch, paper->m_HeightMilliInch),
                   paper->m_DisplayId});
    }
    return table.Text();
}

// Null for what is not known; a dimension that the kind does not have stays 0.
Json JsonSize(bool hasDimension, uint32_t size) {
    return hasDimension && size == 0 ? Json(nullptr) : Json(size);
}

Json JsonOf(const std::vector<const PaperNameId*>& papers) {
    Json list = Json::array();
    for (const PaperNameId* paper : papers) {
        const Kind& kind = KindOf(*paper);
        list.push_back({
            {"media_name", paper->m_MediaName},
            {"display_id", paper->m_DisplayId},
            {"kind", kind.jsonWord},
            {"width_micrometre", JsonSize(kind.hasWidth, paper->m_WidthMicrometre)},
            {"height_micrometre", JsonSize(kind.hasHeight, paper->m_HeightMicrometre)},
            {"width_milli_inch", JsonSize(kind.hasWidth, paper->m_WidthMilliInch)},
            {"height_milli_inch", JsonSize(kind.hasHeight, paper->m_HeightMilliInch)},
        });
    }
    return list;
}

void RunPapers(const PapersOptions& options) {
    const std::vector<const PaperNameId*> papers = PapersWith(options.text);
    if (options.json) {
        WriteJson(JsonOf(papers));
    }
    if (papers.empty()) {
        throw CommandError("no paper size has " + Printable(options.text) +
                           " in its name or display id");
    }
    if (!options.json) {
        WriteStandardOutput(TableOf(papers));
    }
}

}  // namespace

Command AddPapersCommand(CLI::App& program) {
    const auto options = std::make_shared<PapersOptions>();
    CLI::App* line =
        AddCommandLine(program, "papers", "List the paper sizes and roll widths of printers.");
    line->add_option("TEXT", options->text,
                     "Only those with this text in the name or display id, whatever the case, "
                     "such as hagaki or 210x297.")
        ->type_name("")
        ->check(NotEmpty());
    line->add_flag("--json", options->json, "Print an array of objects for programs.");
    line->footer("Exit codes: 0 done, 1 nothing found or failed, 2 wrong usage.");
    return {line, [options] { RunPapers(*options); }};
}

}  // namespace tallyquist
