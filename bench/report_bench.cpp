// The report of a day of 1,000 files, made from what the scan of its folder found, to that scan.

#include "bench/fixture.h"
#include "model/folder_scan.h"
#include "platform/pdf/lazy_pdf_renderer.h"
#include "report/report_document.h"

#include <benchmark/benchmark.h>

namespace {

using namespace dravik;

constexpr int fileCount = 1000;

class NoCodecs final : public AudioFileReader {
  public:
    [[nodiscard]] std::optional<AudioFormat> format(const std::filesystem::path&) const noexcept override { return {}; }
};

const std::vector<std::filesystem::path>& files() {
    static const auto made = bench::smallRecordings("report", fileCount);
    return made;
}

void scan(benchmark::State& state) {
    const NoCodecs codecs;
    const auto read = [&] { return scanFolder(files().front().parent_path(), codecs, true, {}); };
    benchmark::DoNotOptimize(read());  // the page cache is warm
    for (auto _ : state)
        benchmark::DoNotOptimize(read());
}
BENCHMARK(scan)->Name("report/scan")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(3);

/// Fonts are loaded before: that is a cost of the program, not of the files.
class Report {
  public:
    Report() : infos_(probeFiles(files(), NoCodecs(), {})) {
        document_ = composeReport(infos_, completed({}, infos_), {2024, 3, 7});
        ReportDocument empty = document_;
        empty.rows.clear();
        benchmark::DoNotOptimize(renderer_->render(empty, {}, {}));
    }
    void composed(benchmark::State& state) const {
        for (auto _ : state)
            benchmark::DoNotOptimize(csvText(composeReport(infos_, completed({}, infos_), {2024, 3, 7})));
    }
    void painted(benchmark::State& state) const {
        for (auto _ : state)
            benchmark::DoNotOptimize(renderer_->render(document_, {}, {}));
    }

  private:
    std::vector<InfoFichier> infos_;
    ReportDocument document_;
    std::unique_ptr<PdfRenderer> renderer_ = makeLazyPdfRenderer();
};
const Report& report() {
    static const Report only;
    return only;
}

void csv(benchmark::State& state) { report().composed(state); }
BENCHMARK(csv)->Name("report/csv")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(3);
void pdf(benchmark::State& state) { report().painted(state); }
BENCHMARK(pdf)->Name("report/pdf")->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
