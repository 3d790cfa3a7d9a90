#pragma once

#include "app/commands.h"
#include "app/text.h"

#include <QString>
#include <array>
#include <optional>

namespace dravik {

/// The tabs of the operations window, in their order.
enum class OperationsTab { merge, split, deleteTracks, reorderTracks, rename, export_, report };

inline constexpr std::array allOperationsTabs = {
    OperationsTab::merge,  OperationsTab::split,   OperationsTab::deleteTracks, OperationsTab::reorderTracks,
    OperationsTab::rename, OperationsTab::export_, OperationsTab::report};

/// What opens a tab.
using OperationCommand = void (Commands::*)();
[[nodiscard]] OperationCommand commandOf(OperationsTab tab) noexcept;

/// "deleteTracks": the text under which a tab is stored, and back.
[[nodiscard]] QString rawValue(OperationsTab tab);
[[nodiscard]] std::optional<OperationsTab> operationsTab(const QString& rawValue);

/// The tab behind or before one; from the last to the first, and from none to the first or last.
[[nodiscard]] OperationsTab nextTab(std::optional<OperationsTab> tab) noexcept;
[[nodiscard]] OperationsTab previousTab(std::optional<OperationsTab> tab) noexcept;

/// What a tab says. Texts of the interface, in the language they are shown in.
struct OperationTexts {
    QString title;         ///< of the tab and of its command
    QString emptyTitle;    ///< when nothing in the folder is for it
    QString emptyMessage;  ///< and why
    QString noneSelected;  ///< when the selection alone is not for it; empty for tabs that take the whole folder
    QString noneFound;     ///< when nothing is, with all takes asked for
    Noun noun{};           ///< what it does one of after the other
    QString heading;       ///< above a list of them: "Take"
    QString running;       ///< while it runs; the export's takes the number of files
    QString succeeded, failed;
};
[[nodiscard]] OperationTexts textsOf(OperationsTab tab);
/// The running text with the number of files, where the tab's has one.
[[nodiscard]] QString runningText(OperationsTab tab, int files);

/// With no tab chosen, and when another is asked for while one runs.
[[nodiscard]] QString chooseAnOperation();
[[nodiscard]] QString finishCurrentFirst();
/// The title when some results succeeded and some did not.
[[nodiscard]] QString completedWithErrors();

}  // namespace dravik
