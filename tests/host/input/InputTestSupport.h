// Files to read from, and everything that comes of reading them as plain texts to compare.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "host/input/Inputs.h"
#include "tests/support/TempFolder.h"

namespace tallyquist {

class Folder : public TempFolder {
public:
    std::string Write(const std::string& name, const std::string& bytes) const {
        WriteFile(Path(name), bytes);
        return Path(name);
    }

    // Appends one gzip member.
    std::string WriteGzip(const std::string& name, const std::string& bytes) const {
        const gzFile file = gzopen(Path(name).c_str(), "ab");
        EXPECT_EQ(gzwrite(file, bytes.data(), static_cast<unsigned>(bytes.size())),
                  static_cast<int>(bytes.size()));
        EXPECT_EQ(gzclose(file), Z_OK);
        return Path(name);
    }
};

inline std::string JoinTexts(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) {
        joined += (&text == texts.data() ? "" : "|") + text;
    }
    return joined;
}

struct Outcome {
    std::string columns;  // names, with * for a date and ~ for a span of time
    std::vector<std::string> rows;
    std::vector<std::string> findings;  // "KIND line"
    std::vector<Finding> fullFindings;
    std::string error;
    Progress progress;
};

inline Outcome ReadAll(const InputOptions& options) {
    constexpr const char* KINDS[] = {"AMBIGUOUS", "CUT", "FORGED", "UNREADABLE"};
    Outcome outcome;
    const auto sink = [&](const Finding& finding) {
        outcome.findings.push_back(std::string(KINDS[static_cast<int>(finding.kind)]) + " " +
                                   std::to_string(finding.line));
        outcome.fullFindings.push_back(finding);
    };
    try {
        const auto source = OpenInputs(options, sink, &outcome.progress);
        std::vector<std::string> names;
        for (const Column& column : source->Columns()) {
            constexpr const char* MARKS[] = {"", "*", "~"};
            names.push_back(column.name + MARKS[static_cast<int>(column.type)]);
        }
        outcome.columns = JoinTexts(names);
        Row row;
        while (source->Next(row)) {
            EXPECT_EQ(row.size(), source->Columns().size());
            outcome.rows.push_back(JoinTexts(row));
        }
    } catch (const InputError& error) {
        outcome.error = error.what();
    }
    return outcome;
}

inline Outcome ReadFiles(std::vector<std::string> paths) {
    InputOptions options;
    options.paths = std::move(paths);
    return ReadAll(options);
}

inline Outcome ReadFile(const std::string& path) {
    return ReadFiles({path});
}

// Whether an input is refused with a message that names it and holds the reason.
inline void ExpectError(const Outcome& outcome, const std::string& start,
                        const std::string& reason) {
    EXPECT_TRUE(outcome.error.starts_with(start + ":")) << outcome.error;
    EXPECT_NE(outcome.error.find(reason), std::string::npos) << outcome.error;
}

}  // namespace tallyquist
