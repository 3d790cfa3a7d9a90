#pragma once

#include "app/export_audio_session_state.h"
#include "app/operation_preview.h"
#include "app/operations_tab.h"
#include "app/take_audio.h"
#include "base/progress.h"
#include "model/groupe_fichiers.h"
#include "operations/batch_rename_plan.h"
#include "operations/export_services.h"
#include "operations/operation_audio_result.h"
#include "operations/reorder_tracks.h"
#include "operations/track_eligibility.h"
#include "report/generateur_rapport.h"

#include <QString>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dravik {

/// What one run of the operations window is about, taken from the window when it is shown or run; what it would make;
/// and the run. Values and functions on them: they block, are not for the main thread, and know no window.

/// What was chosen about the tracks of one take. Positions from 0.
struct TrackChoices {
    std::set<int> exclus;                   ///< merge: members that are left out; behind the files the unreadable ones
    std::set<int> monoCanaux;               ///< split: tracks that become mono files…
    bool stereoTracks12 = false;            ///< …and the first two as one stereo file
    std::set<int> supprimes;                ///< delete
    OperationsAudio::ChannelMapping ordre;  ///< reorder

    /// Every track splits off; nothing else is chosen.
    [[nodiscard]] static TrackChoices standard(const GroupeFichiers& groupe);
    friend bool operator==(const TrackChoices&, const TrackChoices&) = default;
};

struct OperationRequest {
    OperationsTab tab = OperationsTab::merge;
    std::vector<GroupeFichiers> groupes;          ///< takes that take part
    std::map<std::string, TrackChoices> choices;  ///< by the path of a take's first file; others have the standard
    bool preserveTrackNumbers = false;
    ExportAudioSessionState exportState;
    std::vector<InfoFichier> fichiers;  ///< files that take part in a renaming or are reported
    BatchRenameChoice rename;
    GenerateurRapport report;
    std::optional<std::filesystem::path> destination;  ///< absent: beside what it is made of
};

/// What runs work with. Outlives them.
struct OperationServices {
    const ExportServices& exports;
    const PdfRenderer& pdf;
};

/// Plans the run as the run itself would; nothing is written. Throws Cancelled only.
[[nodiscard]] OperationPreview previewOf(const OperationRequest& request, const OperationServices& services,
                                         const TaskContext& task);

/// What came of it.
struct OperationOutcome {
    std::vector<OperationAudioResult> results;  ///< one for each take or file that was begun
    bool cancelled = false;
    QString message;  ///< of the whole run, when all went well
    FileMoves moved;  ///< files that have other names now
};
/// Does it. A take that fails does not stop the next. Throws what no take can be blamed for: no room, no folder.
[[nodiscard]] OperationOutcome perform(const OperationRequest& request, const OperationServices& services,
                                       const TaskContext& task);

}  // namespace dravik
