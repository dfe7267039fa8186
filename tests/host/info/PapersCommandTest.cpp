#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/host/common/ProgramRun.h"

namespace {

using nlohmann::json;

ProgramRun Papers(const std::string& arguments) {
    return RunTallyquist("papers " + arguments, "/");
}

TEST(PapersCommand, ListsAllOrWhatIsAskedFor) {
    const std::string all = Papers("").out;
    EXPECT_EQ(1 + 135, std::count(all.begin(), all.end(), '\n'));

    EXPECT_EQ(
        "name                        kind       millimetres  inches           display id\n"
        "iso_a3_297x420mm            cut sheet  297 x 420    11.693 x 16.535  ID_ISO_A3_297X420MM\n"
        "custom_norvane_iso_a3_a4    roll       297          11.693           "
        "ID_CUSTOM_NORVANE_ISO_A3_A4\n"
        "custom_norvane_iso_a3_plus  roll       329          12.953           "
        "ID_CUSTOM_NORVANE_ISO_A3_PLUS\n",
        Papers("ISO_a3").out);
    EXPECT_NE(std::string::npos,
              Papers("ids_cm026").out.find("general-purpose  general purpose  -            -   "));
    EXPECT_NE(std::string::npos, Papers("size_04").out.find("228.6 x 337.8  9 x 13.3  ID_"));
    EXPECT_NE(std::string::npos, Papers("size_044").out.find("unknown      unknown  ID_"));
}

TEST(PapersCommand, PrintsJsonInTheUnitsStored) {
    EXPECT_EQ(135U, json::parse(Papers("--json").out).size());
    const char* expected = R"([
        {"media_name": "na_letter_8.5x11in", "display_id": "ID_NA_LETTER_8_5X11IN",
         "kind": "cut_sheet", "width_micrometre": 215900, "height_micrometre": 279400,
         "width_milli_inch": 8500, "height_milli_inch": 11000},
        {"media_name": "papersize_044", "display_id": "ID_PAPERSIZE_044",
         "kind": "cut_sheet", "width_micrometre": null, "height_micrometre": null,
         "width_milli_inch": null, "height_milli_inch": null},
        {"media_name": "custom_norvane_1000mm", "display_id": "ID_CUSTOM_NORVANE_1000MM",
         "kind": "roll", "width_micrometre": 1000000, "height_micrometre": 0,
         "width_milli_inch": 39370, "height_milli_inch": 0},
        {"media_name": "UserDefinitionSize", "display_id": "ID_USERDEFINITIONSIZE",
         "kind": "user_defined", "width_micrometre": 0, "height_micrometre": 0,
         "width_milli_inch": 0, "height_milli_inch": 0}])";
    for (const json& paper : json::parse(expected)) {
        const std::string name = paper["media_name"];
        EXPECT_EQ(json::array({paper}), json::parse(Papers("--json " + name).out));
    }
}

TEST(PapersCommand, TellsWhyThereIsNoResult) {
    const struct {
        const char* arguments;
        int exitCode;
        const char* out;
        const char* reason;
    } cases[] = {
        {"papyrus", 1, "", "tallyquist: no paper size has 'papyrus' in its name or display id\n"},
        {"papyrus --json", 1, "[]\n", "no paper size has 'papyrus'"},
        {">/dev/full", 1, "", "cannot write standard output: No space left on device"},
        {"--json >/dev/full", 1, "", "cannot write standard output: No space left on device"},
        {"--help >/dev/full", 1, "", "cannot write standard output: No space left on device"},
        {">&-", 1, "", "cannot write standard output: Bad file descriptor"},
        {"''", 2, "", "must not be empty\nRun 'tallyquist papers --help'"},
        {"a4 a5", 2, "", "a5\nRun 'tallyquist papers --help'"},
    };
    for (const auto& each : cases) {
        const ProgramRun run = Papers(each.arguments);
        EXPECT_EQ(each.exitCode, run.exitCode) << each.arguments;
        EXPECT_EQ(each.out, run.out) << each.arguments;
        EXPECT_NE(std::string::npos, run.err.find(each.reason)) << each.arguments << "\n"
                                                                << run.err;
    }
    EXPECT_EQ(
        "tallyquist: 'papres' is not a command\n"
        "Run 'tallyquist --help' for more information.\n",
        RunTallyquist("papres", "/").err);
}

}  // namespace
