#include "app/operations_tab.h"

#include <algorithm>
#include <iterator>

namespace dravik {
namespace {

const QString& rawText(OperationsTab tab) {
    static const QString texts[] = {QStringLiteral("merge"),        QStringLiteral("split"),
                                    QStringLiteral("deleteTracks"), QStringLiteral("reorderTracks"),
                                    QStringLiteral("rename"),       QStringLiteral("export"),
                                    QStringLiteral("report")};
    return texts[static_cast<std::size_t>(tab)];
}

OperationsTab beside(OperationsTab tab, std::size_t steps) noexcept {
    return allOperationsTabs[(static_cast<std::size_t>(tab) + steps) % allOperationsTabs.size()];
}

}  // namespace

OperationCommand commandOf(OperationsTab tab) noexcept {
    static constexpr OperationCommand commands[] = {&Commands::dravikMergeAudio,   &Commands::dravikSplitAudio,
                                                    &Commands::dravikRemoveTracks, &Commands::dravikReorderTracks,
                                                    &Commands::dravikBatchRename,  &Commands::dravikExportAudio,
                                                    &Commands::dravikExportReport};
    static_assert(std::size(commands) == allOperationsTabs.size());
    return commands[static_cast<std::size_t>(tab)];
}

QString rawValue(OperationsTab tab) { return rawText(tab); }

std::optional<OperationsTab> operationsTab(const QString& rawValue) {
    const auto* found = std::find_if(allOperationsTabs.begin(), allOperationsTabs.end(),
                                     [&](OperationsTab tab) { return rawText(tab) == rawValue; });
    return found == allOperationsTabs.end() ? std::nullopt : std::optional(*found);
}

OperationsTab nextTab(std::optional<OperationsTab> tab) noexcept {
    return tab ? beside(*tab, 1) : allOperationsTabs.front();
}

OperationsTab previousTab(std::optional<OperationsTab> tab) noexcept {
    return tab ? beside(*tab, allOperationsTabs.size() - 1) : allOperationsTabs.back();
}

const OperationTexts& textsOf(OperationsTab tab) {
    static const OperationTexts texts[] = {
        {QStringLiteral("Merge"), QStringLiteral("No Files to Merge in this Folder"),
         QStringLiteral("Merge requires compatible mono WAV files."),
         QStringLiteral("No compatible current file or mono group."), QStringLiteral("No compatible mono group found."),
         QStringLiteral("take"), QStringLiteral("Merging Files…"), QStringLiteral("Merge Complete"),
         QStringLiteral("Merge Failed")},
        {QStringLiteral("Split"), QStringLiteral("No Poly WAV Files to Split in this Folder"),
         QStringLiteral("Split requires poly WAV files with multiple tracks."),
         QStringLiteral("No compatible current poly file."), QStringLiteral("No compatible poly file found."),
         QStringLiteral("take"), QStringLiteral("Splitting Files…"), QStringLiteral("Split Complete"),
         QStringLiteral("Split Failed")},
        {QStringLiteral("Delete Tracks"), QStringLiteral("No Compatible Files for Track Deletion"),
         QStringLiteral("Track deletion requires poly WAV files with multiple tracks."),
         QStringLiteral("No compatible current poly file."), QStringLiteral("No compatible poly file found."),
         QStringLiteral("take"), QStringLiteral("Deleting Tracks…"), QStringLiteral("Delete Tracks Complete"),
         QStringLiteral("Delete Tracks Failed")},
        {QStringLiteral("Reorder Tracks"), QStringLiteral("No Compatible Files for Track Reorder"),
         QStringLiteral("Reorder Tracks requires poly WAV files or mono groups with multiple tracks."),
         QStringLiteral("No compatible current group."), QStringLiteral("No compatible poly file or mono group found."),
         QStringLiteral("take"), QStringLiteral("Reordering Tracks..."), QStringLiteral("Reorder Tracks Complete"),
         QStringLiteral("Reorder Tracks Failed")},
        {QStringLiteral("Rename"), QStringLiteral("No Compatible Files to Rename"),
         QStringLiteral("Select a folder that contains audio files to rename."), QString(), QString(),
         QStringLiteral("file"), QStringLiteral("Renaming Files…"), QStringLiteral("Rename Complete"),
         QStringLiteral("Rename Failed")},
        {QStringLiteral("Export"), QStringLiteral("No Compatible Take to Export"),
         QStringLiteral("Export requires a poly WAV, a mono WAV, or an existing mono group."),
         QStringLiteral("No compatible current file or mono group."), QStringLiteral("No compatible take found."),
         QStringLiteral("take"), QStringLiteral("Exporting %1"), QStringLiteral("Export Complete"),
         QStringLiteral("Export Failed")},
        {QStringLiteral("Sound Report"), QStringLiteral("No Files Available for Sound Report"),
         QStringLiteral("Select a folder that contains audio files to build a report."), QString(), QString(),
         QStringLiteral("document"), QStringLiteral("Generating Sound Report…"),
         QStringLiteral("Sound Report Complete"), QStringLiteral("Sound Report Failed")},
    };
    return texts[static_cast<std::size_t>(tab)];
}

QString runningText(OperationsTab tab, int files) {
    const QString& running = textsOf(tab).running;
    return tab == OperationsTab::export_ ? running.arg(files) : running;
}

QString chooseAnOperation() { return QStringLiteral("Choose an operation"); }
QString finishCurrentFirst() { return QStringLiteral("Finish the current operation first"); }
QString completedWithErrors() { return QStringLiteral("Operation Completed with Errors"); }

}  // namespace dravik
