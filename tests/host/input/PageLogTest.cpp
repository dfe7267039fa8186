// Records made from page logs: broken, forged, cut and hostile lines, formats, pages.
#include <algorithm>

#include "host/input/JobSummer.h"
#include "host/input/PageLogFormat.h"
#include "host/input/RecentNumbers.h"
#include "tests/host/input/InputTestSupport.h"

namespace tallyquist {
namespace {

using Texts = std::vector<std::string>;

const std::string EARLIER = "[21/Nov/2026:07:59:30 +0000]";
const std::string TIME = "[21/Nov/2026:08:00:00 +0000]";
const std::string NO_TIME = "[32/Nov/2026:08:00:00 +0000]";
const std::string LATER = "[21/Nov/2026:08:02:00 +0000]";

// A record of the usual format that nothing is wrong with, and its row.
std::string Good(const std::string& job, const std::string& time = TIME) {
    return "Q ann " + job + " " + time + " total 1 - localhost doc A4 -\n";
}
std::string GoodRow(const std::string& job) {
    return "Q|ann|" + job + "|1|-|localhost|doc|A4|-";
}

// Rows without the time and the size of the media, which other tests look at.
Texts ShortRows(const Outcome& outcome) {
    Texts rows;
    for (const std::string& row : outcome.rows) {
        Texts cells(1);
        for (const char c : row) {
            if (c == '|') {
                cells.emplace_back();
            } else {
                cells.back() += c;
            }
        }
        cells.erase(cells.begin() + 3);
        cells.resize(9);
        rows.push_back(JoinTexts(cells));
    }
    return rows;
}

struct LogCase {
    const char* what;
    std::string log;
    Texts rows;
    Texts findings;
};

void Check(const std::vector<LogCase>& cases) {
    const Folder folder;
    for (const LogCase& test : cases) {
        SCOPED_TRACE(test.what);
        const Outcome outcome = ReadFile(folder.Write("page_log", test.log));
        EXPECT_EQ(outcome.error, "");
        EXPECT_EQ(ShortRows(outcome), test.rows);
        EXPECT_EQ(outcome.findings, test.findings);
        for (const Finding& finding : outcome.fullFindings) {
            EXPECT_LT(finding.text.size(), 400U);
            EXPECT_TRUE(std::ranges::none_of(finding.text, [](char c) {
                return static_cast<unsigned char>(c) < 0x20;
            })) << finding.text;
        }
    }
}

TEST(PageLog, BillingAndHost) {
    const std::string head = "Q ann 1 " + TIME + " total 1 ";
    Check({
        {"a billing code with blanks before a local host",
         head + "Dept 4, Room 2 localhost my doc A4 -\n",
         {"Q|ann|1|1|Dept 4, Room 2|localhost|my doc|A4|-"},
         {}},
        {"addresses",
         head + "a b 192.168.1.17 my doc A4 -\nQ ann 2 " + TIME +
             " total 1 a b fe80::1%eth0 my doc A4 -\nQ ann 3 " + TIME +
             " total 1 a b [2001:db8::5] my doc A4 -\n",
         {"Q|ann|1|1|a b|192.168.1.17|my doc|A4|-", "Q|ann|2|1|a b|fe80::1%eth0|my doc|A4|-",
          "Q|ann|3|1|a b|[2001:db8::5]|my doc|A4|-"},
         {}},
        {"no billing code and a named host",
         head + "- pc7.example.com my own doc A4 -\n",
         {"Q|ann|1|1|-|pc7.example.com|my own doc|A4|-"},
         {}},
        {"a billing code and a named host",
         head + "p-7 pc7.example.com my doc A4 -\n",
         {"Q|ann|1|1|p-7|pc7.example.com|my doc|A4|-"},
         {"AMBIGUOUS 1"}},
        {"two hosts that the name may begin behind",
         head + "p-7 localhost my localhost doc A4 -\n",
         {"Q|ann|1|1|p-7|localhost|my localhost doc|A4|-"},
         {"AMBIGUOUS 1"}},
        {"an address behind a host name",
         head + "3 proj-77 pc1.lan print to localhost now A4 -\n",
         {"Q|ann|1|1|3 proj-77 pc1.lan print to|localhost|now|A4|-"},
         {"AMBIGUOUS 1"}},
        {"an address behind words that are no host names, or come first",
         head + "pc1.lan e.g. 1.2 .x y, a_b.c localhost doc A4 -\n",
         {"Q|ann|1|1|pc1.lan e.g. 1.2 .x y, a_b.c|localhost|doc|A4|-"},
         {}},
        {"one word each is not ambiguous",
         head + "p-7 pc7 doc A4 -\n",
         {"Q|ann|1|1|p-7|pc7|doc|A4|-"},
         {}},
        {"empty texts",
         "Q  1 " + TIME + " total 1  localhost   -\n",
         {"Q||1|1||localhost|||-"},
         {}},
    });
}

TEST(PageLog, LineBreaksAndForgeries) {
    const std::string head = "Q ann 1 " + TIME + " total 1 - localhost ";
    Check({
        {"a name with a line break",
         head + "a\nb A4 -\n" + Good("2"),
         {"Q|ann|1|1|-|localhost|a\nb|A4|-", GoodRow("2")},
         {}},
        {"a name with an empty line",
         head + "a\r\n\r\nb A4 -\r\n" + Good("2"),
         {"Q|ann|1|1|-|localhost|a\n\nb|A4|-", GoodRow("2")},
         {}},
        {"a billing code with a line break",
         "Q ann 1 " + TIME + " total 1 x\ny localhost doc A4 -\n" + Good("2"),
         {"Q|ann|1|1|x\ny|localhost|doc|A4|-", GoodRow("2")},
         {}},
        {"two forged lines in one name",
         head + "a\nQ eve 7 " + EARLIER + " total 5 - localhost b\nQ eve 8 " + NO_TIME +
             " total 6 - localhost c A4 - A4 -\n" + Good("2"),
         {"Q|ann|1|1|-|localhost|a\nQ eve 7 " + EARLIER + " total 5 - localhost b\nQ eve 8 " +
              NO_TIME + " total 6 - localhost c A4 -|A4|-",
          GoodRow("2")},
         {"FORGED 2", "FORGED 3"}},
        {"a job that is logged twice",
         Good("1") + Good("2") + Good("1"),
         {GoodRow("1"), GoodRow("2"), GoodRow("1")},
         {"FORGED 3"}},
        {"a record inside a name",
         head + "x Q eve 7 " + TIME + " total 5 - localhost b A4 -\n",
         {"Q|ann|1|1|-|localhost|x Q eve 7 " + TIME + " total 5 - localhost b|A4|-"},
         {"FORGED 1"}},
        {"a record inside the second line of a name",
         head + "a\nb 7 " + TIME + " A4 -\n",
         {"Q|ann|1|1|-|localhost|a\nb 7 " + TIME + "|A4|-"},
         {"FORGED 2"}},
        {"an older record below a newer one",
         Good("3", LATER) + Good("2") + Good("4", LATER),
         {GoodRow("3"), GoodRow("2"), GoodRow("4")},
         {"FORGED 2"}},
        {"a minute back is not old",
         Good("3", "[21/Nov/2026:08:01:00 +0000]") + Good("2") +
             Good("4", "[21/Nov/2026:09:00:00 +0100]"),
         {GoodRow("3"), GoodRow("2"), GoodRow("4")},
         {}},
        {"quotes that come and go",
         Good("1") + "\"Q ann 2 " + TIME + " total 1 - localhost a\nb A4 -\"\n" + Good("3"),
         {GoodRow("1"), "Q|ann|2|1|-|localhost|a\nb|A4|-", GoodRow("3")},
         {}},
        {"a stray line below a complete record",
         Good("1") + "stray A4 -\n\n  \n" + Good("2"),
         {GoodRow("1"), GoodRow("2")},
         {"UNREADABLE 2"}},
    });
}

TEST(PageLog, LinesThatMayBeGenuineAreKept) {
    const std::string head = "Q ann 1 " + TIME + " total 1 - localhost ";
    Check({
        {"a line in a name that may be genuine, and the rest of the name",
         head + "a\nQ eve 7 " + TIME + " total 5 - localhost b A4 -\nc A4 -\n" + Good("2"),
         {"Q|ann|1|1|-|localhost|a||", "Q|eve|7|5|-|localhost|b|A4|-", GoodRow("2")},
         {"CUT 1", "FORGED 2", "UNREADABLE 3"}},
        {"an older line between two",
         head + "a\nQ eve 7 " + EARLIER + " total 5 - localhost b\n" + Good("2") + Good("3"),
         {"Q|ann|1|1|-|localhost|a||", "Q|eve|7|5|-|localhost|b||", GoodRow("2"), GoodRow("3")},
         {"CUT 1", "CUT 2", "FORGED 2", "FORGED 3"}},
        {"a genuine record below one with an impossible time",
         "Q ann 1 " + NO_TIME + " total 1 - localhost a\n" + Good("2"),
         {GoodRow("2")},
         {"UNREADABLE 1", "FORGED 2"}},
        {"every other record ends in an unknown word",
         Good("1") + head.substr(0, 6) + "2 " + TIME + " total 4 - localhost b A4 tumble\n" +
             Good("3", LATER) + "Q ann 4 " + LATER + " total 5 - localhost d A4 tumble\n" +
             Good("5", LATER),
         {GoodRow("1"), "Q|ann|2|4|-|localhost|b A4 tumble||", GoodRow("3"),
          "Q|ann|4|5|-|localhost|d A4 tumble||", GoodRow("5")},
         {"CUT 2", "FORGED 3", "CUT 4", "FORGED 5"}},
    });
}

TEST(PageLog, CutAndUnreadableLines) {
    const std::string head = "Q ann 1 " + TIME + " total 1 - localhost ";
    const std::string fill(2047 - head.size() - 3, 'x');
    const std::string joined(2047 - head.size() - 6, 'x');
    Check({
        {"cut in the middle of a character",
         head + fill + "y\xE6\x97\n" + Good("2"),
         {"Q|ann|1|1|-|localhost|" + fill + "y||", GoodRow("2")},
         {"CUT 1"}},
        {"a name with a line break, cut",
         head + joined + "\nb A4 \n" + Good("2"),
         {"Q|ann|1|1|-|localhost|" + joined + "\nb A4 ||", GoodRow("2")},
         {"CUT 1"}},
        {"a billing code that fills the line",
         Good("2") + ("Q ann 1 " + TIME + " total 1 b " + std::string(2000, 'x')).substr(0, 2047) +
             "\n",
         {GoodRow("2"),
          "Q|ann|1|1|" + ("b " + std::string(2000, 'x')).substr(0, 2047 - 45) + "||||"},
         {"CUT 2"}},
        {"a user who fills the line",
         Good("2") + "Q " + std::string(2045, 'u') + "\n",
         {GoodRow("2")},
         {"UNREADABLE 2"}},
        {"the log ends within a record",
         Good("2") + head + "some na",
         {GoodRow("2"), "Q|ann|1|1|-|localhost|some na||"},
         {"CUT 2"}},
        {"the log ends within the pages",
         Good("2") + "Q ann 1 " + TIME + " total 1",
         {GoodRow("2")},
         {"UNREADABLE 2"}},
        {"the log ends without a line feed",
         Good("1") + Good("2").substr(0, Good("2").size() - 1),
         {GoodRow("1"), GoodRow("2")},
         {}},
        {"an incomplete record that nothing completes",
         head + "a\n" + std::string(2100, 'z') + "\n" + Good("2"),
         {"Q|ann|1|1|-|localhost|a||", GoodRow("2")},
         {"CUT 1", "UNREADABLE 2"}},
        {"impossible values",
         Good("1", NO_TIME) + Good("1", "[31/Dec/0000:23:59:59 +0000]") +
             Good("99999999999999999999") + "Q ann 1 " + TIME +
             " total 99999999999999999999 - localhost doc A4 -\n" + Good("2"),
         {GoodRow("2")},
         {"UNREADABLE 1", "UNREADABLE 2", "UNREADABLE 3", "UNREADABLE 4"}},
        {"nothing but a cut record",
         head + fill + "yyy\n",
         {"Q|ann|1|1|-|localhost|" + fill + "yyy||"},
         {"CUT 1"}},
        {"control characters and NUL",
         Good("1") + "\x1B[31m\x01 junk\xFF\n" + std::string("a\0b\n", 4) + Good("2"),
         {GoodRow("1"), GoodRow("2")},
         {"UNREADABLE 2", "UNREADABLE 3"}},
    });
}

TEST(PageLog, HostileLinesTakeLinearTime) {
    std::string heads;
    std::string stamps = "Q ann 1 ";
    for (int i = 0; i < 20000; ++i) {
        heads += "Q ann 1 " + TIME + " total 1 p\n";
        stamps += "1 " + TIME + " total 1 - localhost ";
    }
    const Folder folder;
    Check({
        {"a line of two megabytes, blanks, brackets",
         Good("1") + std::string(2U << 20U, 'x') + "\n" + std::string(4000, ' ') + "\nQ " +
             std::string(500000, ' ') + "x\n" + "Q " + std::string(500000, '[') + "\n" + Good("2"),
         {GoodRow("1"), GoodRow("2")},
         {"UNREADABLE 2", "UNREADABLE 4", "UNREADABLE 5"}},
    });
    const Outcome many = ReadFile(folder.Write("page_log", Good("1") + heads));
    EXPECT_EQ(many.rows.size(), 20001U);
    const Outcome stamped = ReadFile(folder.Write("page_log", Good("1") + stamps + "\n"));
    EXPECT_EQ(stamped.findings, (Texts{"CUT 2", "FORGED 2", "FORGED 2"}));
}

TEST(RecentNumbers, TheOldestIsForgotten) {
    RecentNumbers numbers;
    for (uint64_t i = 0; i < 2 * RecentNumbers::LIMIT; ++i) {
        EXPECT_TRUE(numbers.Add(i));
    }
    EXPECT_FALSE(numbers.Add(RecentNumbers::LIMIT));
    EXPECT_TRUE(numbers.Add(RecentNumbers::LIMIT - 1));
    EXPECT_TRUE(numbers.Add(RecentNumbers::LIMIT));
    EXPECT_FALSE(numbers.Add(RecentNumbers::LIMIT - 1));
}

TEST(PageLog, Formats) {
    const Folder folder;
    const struct {
        const char* what;
        const char* format;
        bool perPage;
        std::string log;
        const char* columns;
        Texts rows;
    } CASES[] = {
        {"the oldest format is recognised",
         "",
         false,
         "Q root 2 [20/May/1999:19:21:05 +0000] total 3 acme-1 localhost\n",
         "printer|user|job|completed*|pages|billing|host",
         {"Q|root|2|927228065|3|acme-1|localhost"}},
        {"quotes around the oldest one too",
         "",
         false,
         "\"Q root 2 [20/May/1999:19:21:05 +0000] total 3 acme-1 localhost\"\n",
         "printer|user|job|completed*|pages|billing|host",
         {"Q|root|2|927228065|3|acme-1|localhost"}},
        {"a given format, also in quotes",
         "100%% %j;%u;%{job-name}",
         false,
         "\"100% 7;ann;my; doc\"\n",
         "job|user|name",
         {"7|ann|my; doc"}},
        {"stray lines belong to a name at the end",
         "%j %C %{job-name}",
         false,
         "1 2 a\nb\n2 3 c\n",
         "job|pages|name",
         {"1|2|a\nb", "2|3|c"}},
        {"attributes, twice the same one",
         " PageLogFormat \t%j %T %{my-attr} %{my-attr} %{time-at-completed}",
         false,
         "1 " + TIME + " x y 17\n2 " + TIME + " x y -\n3 " + TIME + " x y 253402300800\n4 " + TIME +
             " x y 99999999999999999999\n",
         "job|completed*|my-attr|my-attr2|time-at-completed*",
         {"1|1795248000|x|y|17", "2|1795248000|x|y|", "3|1795248000|x|y|", "4|1795248000|x|y|"}},
        {"pages without copies", "%j %P", false, "1 1\n1 2\n2 1\n", "job|pages", {"1|2", "2|1"}},
        {"one row per page",
         "%j %P %C %{copies}",
         true,
         "1 1 3 3\n1 2 3 3\n2 total 9 1\n",
         "job|page|copies|copies2",
         {"1|1|3|3", "1|2|3|3", "2|total|9|1"}},
    };
    for (const auto& test : CASES) {
        SCOPED_TRACE(test.what);
        InputOptions options;
        options.paths = {folder.Write("log", test.log)};
        options.logFormat = test.format;
        options.perPage = test.perPage;
        const Outcome outcome = ReadAll(options);
        EXPECT_EQ(outcome.error, "");
        EXPECT_EQ(outcome.columns, test.columns);
        EXPECT_EQ(outcome.rows, test.rows);
    }
    InputOptions options;
    options.paths = {folder.Write("log", Good("1"))};
    options.logFormat = "%j|%u";
    ExpectError(ReadAll(options), folder.Path("log"), "no line fits the log format");
}

TEST(PageLog, FormatsThatCannotBeUsed) {
    const struct {
        const char* format;
        const char* reason;
    } CASES[] = {
        {"%p %{job-name", "without its }"},
        {"%j %{}", "without an attribute name"},
        {"%p %u", "no job number"},
        {"%j%u", "no text between"},
        {"%j %x", "unknown field %x"},
        {"%j %", "ends with a single %"},
        {"%j %C %C", "twice"},
        {"%j\n%C", "line break"},
        {"%j %{a\nb}", "line break"},
        {"plain", "no job number"},
    };
    for (const auto& test : CASES) {
        try {
            ParsePageLogFormat(test.format);
            ADD_FAILURE() << test.format;
        } catch (const OptionError& error) {
            EXPECT_NE(std::string(error.what()).find(test.reason), std::string::npos)
                << error.what();
        }
    }
}

std::string PageLine(const std::string& printer, const std::string& job, const std::string& page,
                     const std::string& copies, const std::string& media = "A4") {
    return printer + " ann " + job + " " + TIME + " " + page + " " + copies + " - localhost doc " +
           media + " -\n";
}

TEST(PageLog, PagesAreSummedPerJob) {
    Check({
        {"two printers at the same time, the last line's values",
         PageLine("P", "1", "1", "2") + PageLine("Q", "2", "1", "1") +
             PageLine("P", "1", "2", "2") + PageLine("Q", "2", "2", "1") +
             PageLine("Q", "1", "1", "7") + PageLine("P", "1", "3", "2", "A3"),
         {"Q|ann|2|2|-|localhost|doc|A4|-", "Q|ann|1|7|-|localhost|doc|A4|-",
          "P|ann|1|6|-|localhost|doc|A3|-"},
         {}},
        {"open jobs come before a whole one",
         PageLine("P", "1", "1", "1") + PageLine("P", "2", "total", "9") +
             PageLine("P", "1", "2", "1"),
         {"P|ann|1|1|-|localhost|doc|A4|-", "P|ann|2|9|-|localhost|doc|A4|-",
          "P|ann|1|1|-|localhost|doc|A4|-"},
         {}},
        {"a job number that began again",
         PageLine("P", "1", "1", "2") + "P ann 1 " + TIME + " 1 3 - localhost new A4 -\n",
         {"P|ann|1|2|-|localhost|doc|A4|-", "P|ann|1|3|-|localhost|new|A4|-"},
         {}},
        {"a sum beyond 64 bits",
         PageLine("P", "1", "1", "9223372036854775807") + PageLine("P", "1", "2", "1"),
         {"P|ann|1|9223372036854775807|-|localhost|doc|A4|-"},
         {"UNREADABLE 2"}},
    });
}

TEST(JobSummer, TheLeastRecentlySeenJobGivesWay) {
    JobSummer summer(2);
    std::deque<Row> finished;
    for (const char* key : {"a", "b", "a", "c"}) {
        EXPECT_TRUE(summer.Add(key, {key, ""}, 1, 1, finished));
    }
    ASSERT_EQ(finished.size(), 1U);
    EXPECT_EQ(finished[0], (Row{"b", "1"}));
    summer.Flush(finished);
    ASSERT_EQ(finished.size(), 3U);
    EXPECT_EQ(finished[1], (Row{"a", "2"}));
    EXPECT_EQ(finished[2], (Row{"c", "1"}));
}

}  // namespace
}  // namespace tallyquist
