// dravik-cli as a process, start and end included. The program stands beside this one, or where DRAVIK_CLI says.

#include "bench/fixture.h"
#include "bench/measure.h"

#include <cstdlib>

#include <benchmark/benchmark.h>

namespace {

using namespace dravik;

constexpr int fileCount = 2000;

std::filesystem::path beside(const char* program) {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / program;
}
std::string cli() {
    const char* given = std::getenv("DRAVIK_CLI");
    return given != nullptr ? std::string(given) : beside("dravik-cli").native();
}

const std::vector<std::filesystem::path>& files() {
    static const auto made = bench::smallRecordings("small", fileCount);
    return made;
}

void process(benchmark::State& state, const std::vector<std::string>& arguments) {
    bench::runProgram(arguments);  // the page cache is warm, for every one of them
    for (auto _ : state)
        bench::runProgram(arguments);
}

void bareLoop(benchmark::State& state) {
    process(state, {beside("bare_loop").native(), files().front().parent_path().native()});
}
BENCHMARK(bareLoop)->Name("process/bare_loop")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void scanJson(benchmark::State& state) {
    process(state, {cli(), "scan", "--json", files().front().parent_path().native()});
}
BENCHMARK(scanJson)->Name("process/scan_json")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void nothing(benchmark::State& state) { process(state, {"/bin/true"}); }
BENCHMARK(nothing)->Name("process/true")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(10);

void show(benchmark::State& state) { process(state, {cli(), "show", files().back().native()}); }
BENCHMARK(show)->Name("process/show")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
