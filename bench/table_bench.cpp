// The take table with 20,000 takes: what the main thread does at once when rows come, are sorted, filtered, edited and
// painted. Each has to stay below 50 ms; the baseline is a bare copy of the rows. tools/bench runs it.

#include "app/table_edits.h"
#include "ui/take_table_model.h"
#include "ui/take_table_view.h"

#include <QApplication>
#include <filesystem>
#include <numeric>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

namespace {

using namespace dravik;

constexpr int takeCount = 20'000;

InfoFichier recording(int number, int track) {
    InfoFichier fichier;
    fichier.nom =
        fmt::format("SC{:03}{}_T{:03}_{}", number / 40, static_cast<char>('A' + number % 7), number % 40, track);
    fichier.url = "/day/" + fichier.nom + ".wav";
    fichier.format = "WAV";
    fichier.project = "The Long Tide";
    fichier.scene = fmt::format("{}{}", number / 40, static_cast<char>('A' + number % 7));
    fichier.prise = fmt::format("{}", number % 40);
    fichier.tape = fmt::format("24{:02}{:02}_R{}", number % 12 + 1, number % 28 + 1, number % 3);
    if (number % 3 == 0) fichier.notes = "Plane at the end, good for sound only";
    fichier.timecode = fmt::format("{:02}:{:02}:{:02}:{:02}", number % 24, number % 60, number % 59, number % 25);
    fichier.framerate = "25";
    fichier.circled = number % 5 == 0;
    fichier.channels = 8;
    fichier.sampleRate = 48000;
    fichier.bits = 24;
    fichier.dureeSecondes = 10 + number % 1000;
    fichier.taille = 1'000'000U + static_cast<std::uint64_t>(number) * 7919U % 100'000'000U;
    for (int name = 1; name <= 8; ++name)
        fichier.nomsPistes[name] = fmt::format("Lav {}", name);
    return fichier;
}

/// Every fourth take is a set of two files.
std::vector<GroupeFichiers> readTakes() {
    std::vector<GroupeFichiers> groupes;
    for (int number = 0; number < takeCount; ++number) {
        GroupeFichiers groupe;
        groupe.estPoly = number % 4 != 0;
        groupe.fichiers = {recording(number, 1)};
        if (!groupe.estPoly) groupe.fichiers = {recording(number, 1), recording(number, 2)};
        groupe.nom = groupe.fichiers.front().nom;
        mergeMetadata(groupe);
        groupes.push_back(std::move(groupe));
    }
    return groupes;
}

const std::vector<GroupeFichiers>& takes() {
    static const std::vector<GroupeFichiers> made = readTakes();
    return made;
}

/// The view as the window has it, on a screen of nobody.
struct Stage {
    Stage() : settings(std::filesystem::temp_directory_path() / "dravik-table-bench.ini"), theme(settings) {
        view.resize(1600, 800);
        view.show();
        rows.load(takes());
        QApplication::processEvents();
    }
    UserDefaults settings;
    Theme theme;
    TakeRows rows;
    TakeTableModel model{rows};
    TakeTableView view{model, theme};
};

void copyRows(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<GroupeFichiers> copy = takes();
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(copyRows)->Name("table/bare_copy_of_the_rows")->Unit(benchmark::kMillisecond);

void sorted(benchmark::State& state, TakeColumn column) {
    Stage stage;
    for (auto _ : state) {
        stage.model.sort(static_cast<int>(column), Qt::DescendingOrder);
    }
}
BENCHMARK_CAPTURE(sorted, name, TakeColumn::name)->Name("table/sort/name")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sorted, note, TakeColumn::note)->Name("table/sort/note")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sorted, end, TakeColumn::endTimecode)->Name("table/sort/end_tc")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sorted, tracks, TakeColumn::tracks)->Name("table/sort/tracks")->Unit(benchmark::kMillisecond);

void firstFilter(benchmark::State& state) {
    Stage stage;
    for (auto _ : state) {
        state.PauseTiming();
        stage.model.setFilter({});
        stage.rows.load(takes());
        state.ResumeTiming();
        stage.model.setFilter(QStringLiteral("lav 17b"));
    }
}
BENCHMARK(firstFilter)->Name("table/filter/first_word")->Unit(benchmark::kMillisecond)->Iterations(10);

void nextFilter(benchmark::State& state) {
    Stage stage;
    bool other = false;
    stage.model.sort(0, Qt::AscendingOrder);
    for (auto _ : state) {
        stage.model.setFilter(other ? QStringLiteral("plane") : QStringLiteral("plan"));
        other = !other;
    }
}
BENCHMARK(nextFilter)->Name("table/filter/next_key")->Unit(benchmark::kMillisecond);

/// The last half arrives while the first is sorted by name and all of it is selected.
void appended(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        Stage stage;
        const std::vector<GroupeFichiers>& all = takes();
        stage.rows.load({all.begin(), all.begin() + takeCount / 2});
        stage.model.sort(0, Qt::AscendingOrder);
        stage.view.selectAll();
        ReadRows read(all);
        state.ResumeTiming();
        stage.rows.refresh(read, TakeRows::Reading::last);
        state.PauseTiming();
        stage.rows.load({});
        read = ReadRows();  // the window lets go of it on another thread
        state.ResumeTiming();
    }
}
BENCHMARK(appended)->Name("table/rows_appended")->Unit(benchmark::kMillisecond)->Iterations(10);

void readAgain(benchmark::State& state) {
    Stage stage;
    stage.model.sort(0, Qt::AscendingOrder);
    stage.view.goTo(stage.model.index(takeCount / 2, 3));
    for (auto _ : state) {
        state.PauseTiming();
        ReadRows read(readTakes());
        state.ResumeTiming();
        stage.rows.refresh(read, TakeRows::Reading::again);
        state.PauseTiming();
        read = ReadRows();
        state.ResumeTiming();
    }
}
BENCHMARK(readAgain)->Name("table/read_again")->Unit(benchmark::kMillisecond)->Iterations(10);

/// The same two without a table over them: the share of the rows themselves.
void readAlone(benchmark::State& state, TakeRows::Reading reading) {
    for (auto _ : state) {
        state.PauseTiming();
        TakeRows rows;
        const bool half = reading == TakeRows::Reading::last;
        rows.load({takes().begin(), takes().begin() + (half ? takeCount / 2 : takeCount)});
        ReadRows read(readTakes());
        state.ResumeTiming();
        rows.refresh(read, reading);
        state.PauseTiming();
        rows.load({});
        read = ReadRows();
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(readAlone, appended, TakeRows::Reading::last)
    ->Name("table/rows_appended/without_table")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(10);
BENCHMARK_CAPTURE(readAlone, again, TakeRows::Reading::again)
    ->Name("table/read_again/without_table")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(10);

void edited(benchmark::State& state) {
    Stage stage;
    int number = 0;
    for (auto _ : state)
        setField(stage.rows, {takeCount / 2}, RowField::scene, QString::number(++number));
}
BENCHMARK(edited)->Name("table/edit_one_cell")->Unit(benchmark::kMillisecond);

std::vector<int> allRows() {
    std::vector<int> rows(takeCount);
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
}

void filled(benchmark::State& state) {
    Stage stage;
    const std::vector<int> all = allRows();
    int number = 0;
    for (auto _ : state)
        setField(stage.rows, all, RowField::scene, QString::number(++number));
}
BENCHMARK(filled)->Name("table/edit_all_rows")->Unit(benchmark::kMillisecond)->Iterations(20);

void undone(benchmark::State& state) {
    Stage stage;
    setField(stage.rows, allRows(), RowField::scene, QStringLiteral("99"));
    bool back = true;
    for (auto _ : state) {
        back ? stage.rows.undo() : stage.rows.redo();
        back = !back;
    }
}
BENCHMARK(undone)->Name("table/undo_and_redo_all_rows")->Unit(benchmark::kMillisecond);

void painted(benchmark::State& state) {
    Stage stage;
    stage.view.selectAll();
    QPixmap screen(stage.view.size());
    for (auto _ : state)
        stage.view.render(&screen);
}
BENCHMARK(painted)->Name("table/paint_a_screen")->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
