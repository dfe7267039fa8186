// Writers that are killed at random moments, over and over, each time followed by one that must get
// through.
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include "tests/faults/Family.h"
#include "tests/support/Processes.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int ITEMS = 200;
constexpr unsigned int MOST_SECONDS = 20;  // that a writer may take after a kill

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// A child that writes the one and the other variant for ever, in a process group with the programs
// that it starts.
pid_t StartWriting(Bench& bench, const Operation& operation) {
    const pid_t writer = fork();
    if (writer == 0) {
        setpgid(0, 0);
        for (;;) {
            bench.variant = 1 - bench.variant;
            bench.Begin();
            operation.run(bench);
            bench.End();
        }
    }
    setpgid(writer, writer);
    return writer;
}

// All of the group; a program whose parent was killed becomes a child of this process.
void KillGroup(pid_t group) {
    kill(-group, SIGKILL);
    while (waitpid(-group, nullptr, 0) > 0) {
    }
}

// Whether the next writer, of the first variant, is done.
bool IsFree(Bench& bench, const Operation& operation) {
    ChildProcess next([&] {
        alarm(MOST_SECONDS);
        bench.variant = 0;
        bench.Begin();
        return operation.run(bench) ? 0 : 1;
    });
    return next.Wait() == 0;
}

void KillWriters(Bench& bench, const Operation& operation, Trial& trial, std::mt19937& random,
                 double seconds) {
    const auto start = Clock::now();
    IsFree(bench, operation);
    std::uniform_real_distribution<double> delay(0, 3 * SecondsSince(start));
    while (SecondsSince(start) < seconds) {
        const pid_t writer = StartWriting(bench, operation);
        std::this_thread::sleep_for(std::chrono::duration<double>(delay(random)));
        KillGroup(writer);
        const std::string fault = "kill " + std::to_string(++trial.counts.tried);
        trial.counts.leftovers += trial.Leftovers();
        const Contents now = ContentsOf(trial.file);
        trial.Require(now == trial.before || now == trial.after, fault,
                      "the file is neither the earlier nor the new one");
        trial.Require(IsFree(bench, operation), fault, "the next writer failed");
        trial.Require(ContentsOf(trial.file) == trial.after, fault,
                      "the next writer did not write the new file");
        trial.Restore();
    }
}

}  // namespace

bool TryKills(double seconds) {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const auto seed = static_cast<unsigned int>(Clock::now().time_since_epoch().count());
    std::mt19937 random(seed);
    const auto each = seconds / static_cast<double>(OperationsWith(KILL).size());
    Bench bench(XML_PARSER, ITEMS);
    return TryFamily("kills with the seed " + std::to_string(seed), KILL, bench,
                     [&](Trial& trial, const Operation& operation) {
                         KillWriters(bench, operation, trial, random, each);
                         return true;
                     });
}
