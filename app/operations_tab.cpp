#include "app/operations_tab.h"

#include <QCoreApplication>
#include <algorithm>
#include <iterator>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::OperationTexts)
};

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

OperationTexts textsOf(OperationsTab tab) {
    switch (tab) {
        case OperationsTab::merge:
            return {Texts::tr("Merge"),
                    Texts::tr("No Files to Merge in this Folder"),
                    Texts::tr("Merge requires compatible mono WAV files."),
                    Texts::tr("No compatible current file or mono group."),
                    Texts::tr("No compatible mono group found."),
                    Noun::take,
                    Texts::tr("Take"),
                    Texts::tr("Merging Files…"),
                    Texts::tr("Merge Complete"),
                    Texts::tr("Merge Failed")};
        case OperationsTab::split:
            return {Texts::tr("Split"),
                    Texts::tr("No Poly WAV Files to Split in this Folder"),
                    Texts::tr("Split requires poly WAV files with multiple tracks."),
                    Texts::tr("No compatible current poly file."),
                    Texts::tr("No compatible poly file found."),
                    Noun::take,
                    Texts::tr("Take"),
                    Texts::tr("Splitting Files…"),
                    Texts::tr("Split Complete"),
                    Texts::tr("Split Failed")};
        case OperationsTab::deleteTracks:
            return {Texts::tr("Delete Tracks"),
                    Texts::tr("No Compatible Files for Track Deletion"),
                    Texts::tr("Track deletion requires poly WAV files with multiple tracks."),
                    Texts::tr("No compatible current poly file."),
                    Texts::tr("No compatible poly file found."),
                    Noun::take,
                    Texts::tr("Take"),
                    Texts::tr("Deleting Tracks…"),
                    Texts::tr("Delete Tracks Complete"),
                    Texts::tr("Delete Tracks Failed")};
        case OperationsTab::reorderTracks:
            return {Texts::tr("Reorder Tracks"),
                    Texts::tr("No Compatible Files for Track Reorder"),
                    Texts::tr("Reorder Tracks requires poly WAV files or mono groups with multiple tracks."),
                    Texts::tr("No compatible current group."),
                    Texts::tr("No compatible poly file or mono group found."),
                    Noun::take,
                    Texts::tr("Take"),
                    Texts::tr("Reordering Tracks..."),
                    Texts::tr("Reorder Tracks Complete"),
                    Texts::tr("Reorder Tracks Failed")};
        case OperationsTab::rename:
            return {Texts::tr("Rename"),
                    Texts::tr("No Compatible Files to Rename"),
                    Texts::tr("Select a folder that contains audio files to rename."),
                    QString(),
                    QString(),
                    Noun::file,
                    Texts::tr("File"),
                    Texts::tr("Renaming Files…"),
                    Texts::tr("Rename Complete"),
                    Texts::tr("Rename Failed")};
        case OperationsTab::export_:
            return {Texts::tr("Export"),
                    Texts::tr("No Compatible Take to Export"),
                    Texts::tr("Export requires a poly WAV, a mono WAV, or an existing mono group."),
                    Texts::tr("No compatible current file or mono group."),
                    Texts::tr("No compatible take found."),
                    Noun::take,
                    Texts::tr("Take"),
                    Texts::tr("Exporting %1"),
                    Texts::tr("Export Complete"),
                    Texts::tr("Export Failed")};
        case OperationsTab::report:
            return {Texts::tr("Sound Report"),
                    Texts::tr("No Files Available for Sound Report"),
                    Texts::tr("Select a folder that contains audio files to build a report."),
                    QString(),
                    QString(),
                    Noun::document,
                    Texts::tr("Document"),
                    Texts::tr("Generating Sound Report…"),
                    Texts::tr("Sound Report Complete"),
                    Texts::tr("Sound Report Failed")};
    }
    return {};
}

QString runningText(OperationsTab tab, int files) {
    const QString running = textsOf(tab).running;
    return tab == OperationsTab::export_ ? running.arg(files) : running;
}

QString chooseAnOperation() { return Texts::tr("Choose an operation"); }
QString finishCurrentFirst() { return Texts::tr("Finish the current operation first"); }
QString completedWithErrors() { return Texts::tr("Operation Completed with Errors"); }

}  // namespace dravik
