// The exporter plug-in, loaded as a host loads it, against the least that writing such a file can
// cost: one fwrite per row of bytes that are already rendered, into a stream with the same buffer.
//
// Usage: bench_exporter [Google Benchmark's options]. Files go to $TMPDIR, else /tmp.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "JobCostExporter/CJobCostExporter.h"
#include "bench/Bench.h"
#include "bench/RatioReporter.h"

namespace {

constexpr size_t ROWS = 100'000;
constexpr size_t DISTINCT_ROWS = 1024;  // a host fills the same few buffers again and again
constexpr int COLUMNS = 20;
constexpr size_t STREAM_BUFFER = 12582912;

struct Plugin {
    decltype(&DataExporterCreate) create;
    decltype(&DataExporterDispose) dispose;
    decltype(&DataExporterOpen) open;
    decltype(&DataExporterClose) close;
    decltype(&DataExporterWriteValues) writeValues;
};

template <typename Function>
void Find(void* module, const char* name, Function* function) {
    *function = reinterpret_cast<Function>(dlsym(module, name));
    if (*function == nullptr) {
        Fail(std::string(EXPORTER_PLUGIN) + " has no " + name);
    }
}

Plugin LoadPlugin() {
    void* module = dlopen(EXPORTER_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        Fail(dlerror());
    }
    Plugin plugin{};
    Find(module, "DataExporterCreate", &plugin.create);
    Find(module, "DataExporterDispose", &plugin.dispose);
    Find(module, "DataExporterOpen", &plugin.open);
    Find(module, "DataExporterClose", &plugin.close);
    Find(module, "DataExporterWriteValues", &plugin.writeValues);
    return plugin;
}

// Rows as a job log gives them; `dateTimes` and `timeSpans` say how many of the columns are typed.
struct Table {
    Table(int dateTimes, int timeSpans) {
        std::mt19937 random(20261121);
        std::uniform_int_distribution<int> pick(0, 999'999);
        for (int column = 0; column < COLUMNS; ++column) {
            types.push_back(column < dateTimes               ? "datetime"
                            : column < dateTimes + timeSpans ? "timespan"
                                                             : nullptr);
        }
        texts.reserve(DISTINCT_ROWS * COLUMNS);
        for (size_t row = 0; row < DISTINCT_ROWS; ++row) {
            for (int column = 0; column < COLUMNS; ++column) {
                texts.push_back(column < dateTimes ? std::to_string(FirstTime() + pick(random) * 32)
                                : column < dateTimes + timeSpans
                                    ? std::to_string(pick(random) / 100)
                                    : Text(column, pick(random)));
            }
        }
        for (const std::string& text : texts) {
            values.push_back(text.c_str());
        }
    }

    static int64_t FirstTime() { return 1767225600; }  // 2026, and from there one year on

    static std::string Text(int column, int number) {
        static const char* const WORDS[] = {
            "Office_PDF",          "alice", "iso_a4_210x297mm", "localhost",
            "two-sided-long-edge", "-",     "Quarterly report"};
        switch (column % 4) {
            case 0:
                return std::to_string(number % 1000);
            case 1:
                return std::string("user") + std::to_string(number % 500);
            default:
                return WORDS[static_cast<size_t>(number) % std::size(WORDS)];
        }
    }

    const char** Row(size_t row) { return &values[row % DISTINCT_ROWS * COLUMNS]; }

    std::vector<const char*> types;
    std::vector<std::string> texts;
    std::vector<const char*> values;
};

void Export(const Plugin& plugin, Table& table, const std::string& path, size_t rows = ROWS) {
    void* exporter = nullptr;
    plugin.create(&exporter);
    int result = plugin.open(exporter, path.c_str());
    for (size_t row = 0; row < rows && result == 0; ++row) {
        result = plugin.writeValues(exporter, COLUMNS, table.Row(row), nullptr, table.types.data());
    }
    if (result != 0 || plugin.close(exporter) != 0) {
        Fail("cannot write " + path);
    }
    plugin.dispose(exporter);
}

void WriteRendered(const std::vector<std::string>& rows, const std::string& path) {
    // A new buffer for each file, as the writer has one: touching its pages is part of the work.
    const std::unique_ptr<char[]> buffer(new char[STREAM_BUFFER]);
    FILE* file = std::fopen(path.c_str(), "w");
    if (file == nullptr || std::setvbuf(file, buffer.get(), _IOFBF, STREAM_BUFFER) != 0) {
        Fail("cannot write " + path);
    }
    for (size_t row = 0; row < ROWS; ++row) {
        const std::string& bytes = rows[row % DISTINCT_ROWS];
        const size_t skipped = row == 0 ? 1 : 0;  // no line feed comes before the first row
        std::fwrite(bytes.data() + skipped, 1, bytes.size() - skipped, file);
    }
    if (std::fclose(file) != 0) {
        Fail("cannot write " + path);
    }
}

std::string Contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// What the plug-in writes for each of the distinct rows, with the line feed before it. No text of
// the table holds a line feed.
std::vector<std::string> Render(const Plugin& plugin, Table& table) {
    const std::string path = Path("rendered");
    Export(plugin, table, path, DISTINCT_ROWS);
    std::ifstream file(path, std::ios::binary);
    std::vector<std::string> rows;
    for (std::string row; std::getline(file, row);) {
        rows.push_back("\n" + row);
    }
    std::remove(path.c_str());
    return rows;
}

void CheckSameBytes(const Plugin& plugin, Table& table, const std::vector<std::string>& rows) {
    Export(plugin, table, Path("work"));
    WriteRendered(rows, Path("limit"));
    const bool same = Contents(Path("work")) == Contents(Path("limit"));
    std::remove(Path("work").c_str());
    std::remove(Path("limit").c_str());
    if (!same) {
        Fail("the plug-in and the limit wrote different bytes");
    }
}

void SetZone(const char* zone) {
    if (zone != nullptr) {
        setenv("TZ", zone, 1);
    } else {
        unsetenv("TZ");
    }
    tzset();
}

void Register(const std::string& name, const Plugin& plugin, Table& table, const char* zone) {
    SetZone(zone);
    auto rows = Render(plugin, table);
    CheckSameBytes(plugin, table, rows);
    benchmark::RegisterBenchmark((name + "/work").c_str(), [&plugin, &table, zone](auto& state) {
        SetZone(zone);
        for ([[maybe_unused]] auto _ : state) {
            Export(plugin, table, Path("work"));
        }
        std::remove(Path("work").c_str());
    });
    benchmark::RegisterBenchmark((name + "/limit").c_str(), [rows](auto& state) {
        for ([[maybe_unused]] auto _ : state) {
            WriteRendered(rows, Path("limit"));
        }
        std::remove(Path("limit").c_str());
    });
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    const Plugin plugin = LoadPlugin();
    Table text(0, 0);
    Table mixed(2, 1);
    Table dateTimes(15, 1);
    for (const char* zone : {"Europe/Berlin", static_cast<const char*>(nullptr)}) {
        const std::string suffix = zone != nullptr ? ", zone set" : ", zone unset";
        Register("text" + suffix, plugin, text, zone);
        Register("mixed" + suffix, plugin, mixed, zone);
        Register("datetime-heavy" + suffix, plugin, dateTimes, zone);
    }
    RatioReporter reporter({{"text", 4.2}, {"mixed", 4.2}, {"datetime-heavy", 4.2}});
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
