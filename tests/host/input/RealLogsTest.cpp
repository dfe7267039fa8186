// Logs that a print server really wrote, read field by field.
#include "tests/host/input/InputTestSupport.h"

namespace tallyquist {
namespace {

constexpr const char* USUAL_COLUMNS =
    "printer|user|job|completed*|pages|billing|host|name|media|sides|width_mm|height_mm";

using Texts = std::vector<std::string>;

// All rows as one text, which begins with a line feed as the raw texts below do.
std::string Lines(const Outcome& outcome) {
    std::string lines = "\n";
    for (const std::string& row : outcome.rows) {
        lines += row + "\n";
    }
    return lines;
}

TEST(RealLogs, UsualFormat) {
    const Outcome log = ReadFile(EXAMPLES "/page_log");
    EXPECT_EQ(log.error, "");
    EXPECT_EQ(log.columns, USUAL_COLUMNS);
    EXPECT_EQ(Lines(log), R"(
Office_PDF|alice|23|1795250814|3|-|localhost|Quarterly report, Q1 2026|iso_a4_210x297mm|two-sided-long-edge|210|297
Office_PS|j. o'neil|24|1795250815|1|Dept 4, Room 2|localhost|say "hi" 100% ; =1+1|-|-||
Color_PCL|carol|25|1795250817|0|-|localhost|Größe – 日本語 テスト|iso_a3_297x420mm|-|297|420
Pool|erin|26|1795250819|3|-|localhost|libtasn1.pdf|na_letter_8.5x11in|-|215.9|279.4
Raw_Label|labels|27|1795250821|0|-|localhost|label.zpl|na_index-4x6_4x6in|-|101.6|152.4
Office_PS|heidi|28|1795250823|1|-|localhost|Office_PS bob 99 [21/Nov/2026:00:00:00 +0000] total 1 - localhost fake
Photo_IPP mallory 1 [21/Nov/2026:00:00:00 +0000] total 9999 - localhost forged A4 -|-|-||
Office_PS|heidi|29|1795250826|1|-|localhost|)" +
                              std::string(1979, 'x') + R"(||||
Office_PDF|judy|30|1795250829|1|-|localhost|default-testpage.pdf|jis_b4_257x364mm|-|257|364
Photo_IPP|frank|31|1795250849|36|-|localhost|shared-mime-info-spec.pdf|iso_a4_210x297mm|two-sided-long-edge|210|297
Office_PS|heidi|33|1795250852|0|-|localhost|broken.pdf|iso_a4_210x297mm|-|210|297
Office_PS|liam|34|1795250855|1|-|localhost|media col only||one-sided||
Office_PDF|liam|36|1795250868|1|-|localhost|media col only||one-sided||
Photo_IPP|liam|35|1795250881|1|-|localhost|media col only||one-sided||
)");
    EXPECT_EQ(log.findings, (Texts{"FORGED 7", "CUT 8"}));
}

TEST(RealLogs, SeparatedFormat) {
    const Outcome log = ReadFile(EXAMPLES "/page_log.extended-format");
    EXPECT_EQ(log.error, "");
    EXPECT_EQ(log.columns,
              "job|completed*|printer|user|pages|copies|job-impressions-completed|"
              "job-media-sheets-completed|job-k-octets|print-color-mode|media-type|created*|"
              "processing*|document-format|job-state|job-uuid|page-ranges|number-up|media|sides|"
              "billing|host|name|width_mm|height_mm");
    EXPECT_EQ(Lines(log), R"(
37|1795250920|Office_PDF|alice|3|3|3|1|108|color|-|1795250919|1795250919|application/pdf|5|urn:uuid:1e42cc1a-c347-359a-6725-1fc95076b1ed|-|1|iso_a4_210x297mm|two-sided-long-edge|-|localhost|Quarterly report, Q1 2026|210|297
38|1795250922|Office_PS|bob|3|1|3|3|35|color|-|1795250921|1795250921|text/plain|5|urn:uuid:54fc93df-4a24-3b0d-78c1-83d3e6987053|???,???|2|na_legal_8.5x14in|-|proj-77|localhost|gpl3.txt|215.9|355.6
39|1795250935|Photo_IPP|frank|1|1|1|1|24|color|photographic-glossy|1795250923|1795250923|image/jpeg|5|urn:uuid:a1e3ab55-72ec-3551-5937-fae741fc619b|-|1|na_index-4x6_4x6in|-|-|localhost|photo.jpg|101.6|152.4
40|1795250949|Photo_IPP|kim|51|3|51|51|138|color|-|1795250941|1795250941|application/pdf|5|urn:uuid:d2bf7886-79e5-3984-7761-66a104ce256b|-|1|iso_a4_210x297mm|-|-|localhost|cancelled while printing|210|297
)");
    EXPECT_EQ(log.findings, Texts{});
}

TEST(RealLogs, QuotedFormat) {
    const Outcome log = ReadFile(EXAMPLES "/page_log.quoted-format");
    EXPECT_EQ(log.error, "");
    EXPECT_EQ(log.columns, USUAL_COLUMNS);
    EXPECT_EQ(Lines(log), R"(
Office_PDF|alice|1|1795249547|36|-|localhost|libtasn1.pdf|-|-||
Office_PDF|alice|2|1795249549|3|-|localhost|Quarterly report, Q1 2026|A4|two-sided-long-edge|210|297
Office_PS|bob|3|1795249551|10|-|localhost|gpl3.txt|iso_a4_210x297mm|-|210|297
Office_PS|bob|4|1795249553|2|proj-77|localhost|bsd.txt|na_legal_8.5x14in|two-sided-short-edge|215.9|355.6
Office_PS|j. o'neil|5|1795249555|1|Dept|localhost|say "hi" 100% ; =1+1|-|-||
Color_PCL|carol|6|1795249557|0|-|localhost|Größe – 日本語 テスト|A3|-|297|420
Color_PCL|carol|7|1795249559|5|acct-9|localhost|default-testpage.pdf|na_letter_8.5x11in|-|215.9|279.4
Office_PDF|dave|8|1795249561|1|-|localhost|photo.jpg|Custom.300x900mm|-|300|900
Office_PDF|dave|9|1795249563|17|-|localhost|shared-mime-info-spec.pdf|Custom.24x36in|-|609.6|914.4
Raw_Label|labels|10|1795249565|0|-|localhost|label.zpl|Custom.4x6in|-|101.6|152.4
Pool|erin|11|1795249567|3|-|localhost|libtasn1.pdf|-|-||
Pool|erin|12|1795249569|9|-|localhost|shared-mime-info-spec.pdf|-|two-sided-long-edge||
Photo_IPP|frank|13|1795249583|2|-|localhost|photo.jpg|na_index-4x6_4x6in|-|101.6|152.4
Office_PS|bob|16|1795249585|12|-|localhost|gpl3.txt|-|-||
Office_PS|heidi|17|1795249587|1|-|localhost|line1
line2	tab|-|-||
Office_PS|heidi|18|1795249589|1|-|localhost||-|-||
Office_PS|heidi|19|1795249591|3|-|localhost|banner|-|-||
Office_PS|ivan|20|1795249593|1|-|localhost|(stdin)|-|-||
Photo_IPP|frank|14|1795249595|36|-|localhost|shared-mime-info-spec.pdf|iso_a4_210x297mm|two-sided-long-edge|210|297
Office_PS|root|21|1795249595|1|-|localhost|bsd.txt|-|-||
Photo_IPP|grace|15|1795249607|1|-|localhost|default-testpage.pdf|A4,photographic-glossy,main|-|210|297
)");
    EXPECT_EQ(log.findings, Texts{});
}

TEST(RealLogs, OtherQueues) {
    const Outcome log = ReadFile(EXAMPLES "/page_log.socket-backends");
    EXPECT_EQ(log.error, "");
    EXPECT_EQ(log.columns, USUAL_COLUMNS);
    EXPECT_EQ(Lines(log), R"(
Raw_Socket|labels|41|1795251751|4|-|localhost|label.zpl|na_index-4x6_4x6in|-|101.6|152.4
Raw_Socket|labels|42|1795251754|1|-|localhost|bsd.txt|-|-||
Color_PCL|carol|44|1795251760|0|-|localhost|photo.jpg|iso_a4_210x297mm|-|210|297
PS_Socket|bob|43|1795251761|2|-|localhost|default-testpage.pdf|iso_a4_210x297mm|-|210|297
PS_Slow|kim|45|1795251767|17|-|localhost|cancelled while printing|iso_a4_210x297mm|-|210|297
PS_Down|lee|46|1795251846|0|-|localhost|printer down|iso_a4_210x297mm|-|210|297
PS_Slow|kim|47|1795251910|235|-|localhost|cancelled mid print|iso_a4_210x297mm|-|210|297
)");
    EXPECT_EQ(log.findings, Texts{});
}

}  // namespace
}  // namespace tallyquist
