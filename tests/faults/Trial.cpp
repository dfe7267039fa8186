#include "tests/faults/Trial.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <regex>
#include <stdexcept>

#include "tests/support/Processes.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* USER_COPY = GROUP_FOLDER "/CMSystemSetting.cfg";
constexpr const char* ASIDE = "aside";

enum ExitCode : int { TOLD = 1, LOST = 2, NOT_POSSIBLE = 4 };

std::vector<std::string> NamesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

Contents ContentsOf(const std::string& path) {
    if (fs::is_directory(path)) {
        std::string names = "folder";
        for (const std::string& name : NamesIn(path)) {
            names.append(" ").append(name);
        }
        return names;
    }
    if (!fs::exists(path)) {
        return std::nullopt;
    }
    // Times and numbers of processes are not the same twice.
    static const std::regex NUMBER("[0-9]+");
    const std::string text = ReadFile(path);
    return path.ends_with(".log") ? std::regex_replace(text, NUMBER, "0") : text;
}

Trial::Trial(Bench& bench, const Operation& operation)
    : file(operation.file == nullptr ? "" : bench.folder.Path(operation.file)),
      folder(fs::path(file).parent_path()),
      m_bench(bench),
      m_operation(operation) {
    const auto require = [&](bool isDone) {
        if (!isDone || m_hasThrown) {
            throw std::runtime_error(std::string(operation.name).append(" fails without a fault"));
        }
    };
    m_bench.Begin();
    m_bench.variant = 1;
    (operation.prepare != nullptr ? operation.prepare : operation.run)(m_bench);
    m_bench.variant = 0;
    m_bench.End();
    m_bench.Begin();
    m_bench.End();
    m_values = {m_bench.Value()};
    before = ContentsOf(file);
    m_expected = NamesIn(folder);
    require(Run());
    after = ContentsOf(file);
    // A writer that changes nothing would pass whatever it left.
    require((operation.faults & (SYSTEM | KILL)) == 0 || before != after);
    m_values.push_back(m_bench.Value());
    if (m_values.front() != m_values.back()) {
        fs::rename(USER_COPY, ASIDE);
        if (Run()) {
            m_values.push_back(m_bench.Value());
        }
        fs::rename(ASIDE, USER_COPY);
    }
    if ((operation.faults & SYSTEM) != 0) {
        fs::rename(folder, ASIDE);
        m_fromNothing = Run() ? ContentsOf(file) : std::nullopt;
    }
    Restore();
    m_bench.Forget();
}

long Trial::Leftovers() const {
    const std::vector<std::string> names = NamesIn(folder);
    return std::count_if(names.begin(), names.end(), [&](const std::string& name) {
        return folder + "/" + name != file && !IsExpected(name);
    });
}

bool Trial::IsExpected(const std::string& name) const {
    return std::binary_search(m_expected.begin(), m_expected.end(), name);
}

bool Trial::Run() {
    m_bench.Begin();
    bool isDone = false;
    m_hasThrown = false;
    arm();
    try {
        isDone = m_operation.run(m_bench);
    } catch (...) {
        m_hasThrown = true;
    }
    disarm();
    m_bench.End();
    return isDone;
}

void Trial::Require(bool isWell, const std::string& fault, const char* what) {
    if (!isWell) {
        ++counts.lost;
        std::fprintf(stderr, "%s, %s: %s\n", m_operation.name, fault.c_str(), what);
    }
}

void Trial::Judge(bool isDone, const std::string& fault) {
    ++counts.tried;
    counts.told += isDone ? 0 : 1;
    Require(!m_hasThrown, fault, "an exception came out");
    Require(Leftovers() == 0, fault, "another file was left");
    const Contents now = ContentsOf(file);
    const bool isOld = now == before;
    const bool isNew = canBeDone && (now == after || (!before && now && now == m_fromNothing));
    const bool isGone = !now && m_operation.promise == Promise::GONE;
    if (m_operation.promise == Promise::UNTOLD || m_operation.promise == Promise::SAVED) {
        const bool isTold = !isDone || canBeDone || m_operation.promise == Promise::UNTOLD;
        Require(isTold, fault, "a failed save was not told of");
        Require(isOld || isNew, fault, "the file is neither the earlier nor the new one");
        return;
    }
    const bool isKept = isOld && before && m_operation.promise == Promise::KEPT;
    Require(isDone ? isNew || isKept : isOld || isGone, fault,
            isDone ? "done, but not the new file" : "failed, but not the earlier file");
    if (m_operation.promise != Promise::PARTIAL && isValueTold) {
        const auto earlier = m_values.begin();
        const auto from = isDone ? earlier + 1 : earlier;
        const auto to = isDone ? m_values.end() : earlier + 1;
        const bool isRight = std::find(from, to, m_bench.Value()) != to;
        Require(isRight, fault, isDone ? "a wrong value" : "a value in spite of the failure");
    }
}

void Trial::Attempt(const std::string& fault) {
    Judge(Run(), fault);
    m_bench.Forget();
}

bool Trial::AttemptInChild(const std::string& fault, const std::function<bool()>& impose) {
    ChildProcess child([&] {
        counts = {};
        if (!impose()) {
            return int{NOT_POSSIBLE};
        }
        before = ContentsOf(file);
        m_expected = NamesIn(folder);
        Attempt(fault);
        return (counts.told != 0 ? TOLD : 0) | (counts.lost != 0 ? LOST : 0);
    });
    const int code = child.Wait();
    Restore();
    if (code == NOT_POSSIBLE) {
        return false;
    }
    ++counts.tried;
    counts.told += code >= 0 && (code & TOLD) != 0 ? 1 : 0;
    counts.lost += code < 0 || (code & LOST) != 0 ? 1 : 0;
    if (code < 0) {
        std::fprintf(stderr, "%s, %s: crashed or hung\n", m_operation.name, fault.c_str());
    }
    return true;
}

void Trial::Restore() {
    if (m_operation.file == nullptr) {
        return;
    }
    if (fs::exists(ASIDE)) {
        fs::remove_all(folder);
        fs::rename(ASIDE, folder);
    }
    if ((fs::status(folder).permissions() & fs::perms::owner_write) == fs::perms::none) {
        fs::permissions(folder, fs::perms(0755));
    }
    for (const std::string& name : NamesIn(folder)) {
        if (!IsExpected(name)) {
            fs::remove_all(folder + "/" + name);
        }
    }
    if (ContentsOf(file) != before) {
        fs::remove_all(file);
        if (before) {
            WriteFile(file, *before);
        }
    }
}
