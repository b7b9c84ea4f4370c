// Sequential LM_WS_getTitles calls (a 20-title page, no cache) against the service simulator over
// TLS on loopback, in one run, three ways:
//   kept          the connection stays open between calls (the client's way);
//   new/resumed   the server closes the connection after every answer, so each call connects
//                 again, resuming the TLS session;
//   new/full      the same with session resumption off on the server: a full handshake per call,
//                 which is what every call cost before connections were kept.
// And the time from starting lmws to the end of its first call, as a device's start-up pays it.
#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "LMWSTestSupport.h"
#include "LM_WS.h"
#include "LmsimProcess.h"

namespace {

const LM_WS_Page kPage = {1, 20};

// One simulator and a client of it without a cache.
struct Target {
    LmsimProcess sim;
    LM_WS_Handle client{};
    bool ready = false;

    explicit Target(std::vector<std::string> args) : sim(std::move(args)) {
        if (!sim.Ready()) {
            return;
        }
        lmws_test::PointAt(sim);
        lmws_test::Params params;
        ready = LM_WS_Setup(&client, params.Get()) == LM_WS_OK;
    }
    ~Target() { LM_WS_Teardown(&client); }
};

Target& Kept() {
    static Target target({});
    return target;
}
Target& NewResumed() {
    static Target target({"--max-requests", "1"});
    return target;
}
Target& NewFull() {
    static Target target({"--max-requests", "1", "--no-resumption"});
    return target;
}

void Calls(benchmark::State& state, Target& target) {
    if (!target.ready) {
        state.SkipWithError("the simulator or the client did not start");
        return;
    }
    const long before = target.sim.Stat("connections");
    for (auto _ : state) {
        LM_WS_TitlesResponse page;
        LM_WS_Status status = LM_WS_getTitles(&target.client, 1, kPage, 2, &page);
        if (status != LM_WS_OK || page.Titles.Count != kPage.ItemsPerPage) {
            state.SkipWithError("getTitles did not answer a full page");
        }
        LM_WS_FreeResult(&page);
    }
    state.counters["calls/s"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["connections"] = static_cast<double>(target.sim.Stat("connections") - before);
}

void BM_GetTitlesKept(benchmark::State& state) {
    Calls(state, Kept());
}
BENCHMARK(BM_GetTitlesKept)->Unit(benchmark::kMicrosecond)->UseRealTime();

void BM_GetTitlesNewConnectionResumed(benchmark::State& state) {
    Calls(state, NewResumed());
}
BENCHMARK(BM_GetTitlesNewConnectionResumed)->Unit(benchmark::kMicrosecond)->UseRealTime();

void BM_GetTitlesNewConnectionFullHandshake(benchmark::State& state) {
    Calls(state, NewFull());
}
BENCHMARK(BM_GetTitlesNewConnectionFullHandshake)->Unit(benchmark::kMicrosecond)->UseRealTime();

// lmws started, set up, one getTitles call, exited.
void BM_LmwsStartToFirstCall(benchmark::State& state) {
    Target& target = Kept();
    if (!target.ready) {
        state.SkipWithError("the simulator did not start");
        return;
    }
    lmws_test::PointAt(target.sim);
    for (auto _ : state) {
        pid_t pid = fork();
        if (pid == 0) {
            freopen("/dev/null", "w", stdout);
            freopen("/dev/null", "w", stderr);
            execl(LMWS_PATH, LMWS_PATH, "--env", "2", "--access-type", "2", "getTitles", "1", "1",
                  "20", "2", static_cast<char*>(nullptr));
            _exit(127);
        }
        int status = 0;
        waitpid(pid, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
            state.SkipWithError("lmws failed");
        }
    }
}
BENCHMARK(BM_LmwsStartToFirstCall)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
