#include "app/content_view.h"
#include "app/cue_names.h"
#include "app/take_times.h"
#include "app/text.h"
#include "editing/cue_writer.h"

#include <algorithm>
#include <map>
#include <utility>

namespace dravik {
namespace {

auto find(std::vector<CueMarker>& markers, const Uuid& id) {
    return std::find_if(markers.begin(), markers.end(), [&](const CueMarker& marker) { return marker.id == id; });
}

/// Cues that were known before keep their identity, by which questions that are open and drags know them.
void keepIdentities(std::vector<CueMarker>& read, const std::vector<CueMarker>& known) {
    using Content = std::pair<std::int64_t, std::optional<std::string>>;
    std::multimap<Content, Uuid> identities;
    for (const CueMarker& marker : known)
        identities.emplace(Content(marker.frame, marker.label), marker.id);
    for (CueMarker& marker : read) {
        const auto same = identities.find(Content(marker.frame, marker.label));
        if (same == identities.end()) continue;
        marker.id = same->second;
        identities.erase(same);
    }
}

}  // namespace

void ContentView::readCues() {
    if (selected_.empty()) return;
    loadID_ = Uuid::random();
    looking_.run(
        this,
        [url = selected_.front(), known = cuesOriginaux_] {
            std::vector<CueMarker> cues = lireCues(url);
            keepIdentities(cues, known);
            return cues;
        },
        [this, load = loadID_](std::vector<CueMarker> cues) {
            if (load != loadID_) return;
            cuesOriginaux_ = std::move(cues);
            if (std::exchange(enChargement_, false)) emit enChargementChanged();
            emit cueMarkersChanged();
        });
}

std::vector<CueMarker> ContentView::cueMarkers() const {
    const int row = selectedRow();
    if (row < 0) return {};
    const RowState& state = rows_.groupesTableau().at(static_cast<std::size_t>(row));
    return state.cues.value_or(cuesOriginaux_);
}

QString ContentView::cueName(const CueMarker& marker) const {
    std::vector<CueMarker> markers = cueMarkers();
    return dravik::cueName(marker, static_cast<std::size_t>(find(markers, marker.id) - markers.begin()) + 1);
}

void ContentView::editCues(const QString& name, std::vector<CueMarker> markers, const QString& collapseKey) {
    const int row = selectedRow();
    if (row < 0 || enChargement_) return;
    RowState state = rows_.groupesTableau().at(static_cast<std::size_t>(row));
    if (rows_.isLocked()) return;
    if (!rows_.canEdit(row)) {
        emit notice(rows_.isMissing(row) ? QStringLiteral("The files of this take are gone.")
                                         : QStringLiteral("Cues of this format are read-only."));
        return;
    }
    std::stable_sort(markers.begin(), markers.end(),
                     [](const CueMarker& a, const CueMarker& b) { return a.frame < b.frame; });
    // Back to what the file holds is no edit.
    const bool asRead =
        std::equal(markers.begin(), markers.end(), cuesOriginaux_.begin(), cuesOriginaux_.end(),
                   [](const CueMarker& a, const CueMarker& b) { return a.frame == b.frame && a.label == b.label; });
    state.cues = asRead ? std::nullopt : std::optional(std::move(markers));
    rows_.edit(name, {{row, std::move(state)}}, collapseKey);
}

void ContentView::addCue(std::int64_t frame) {
    const int row = selectedRow();
    if (row < 0) return;
    std::vector<CueMarker> markers = cueMarkers();
    const std::int64_t last = lastFrameOf(rows_.groupesTableau().at(static_cast<std::size_t>(row)).groupe);
    markers.push_back({Uuid::random(), std::clamp<std::int64_t>(frame, 0, last), std::nullopt});
    rows_.endCollapsing();
    editCues(QStringLiteral("Add Cue"), std::move(markers));
}

void ContentView::deleteCue(const Uuid& id) {
    std::vector<CueMarker> markers = cueMarkers();
    const auto marker = find(markers, id);
    if (marker == markers.end()) return;
    const auto remove = [this, id] {
        std::vector<CueMarker> now = cueMarkers();
        std::erase_if(now, [&](const CueMarker& one) { return one.id == id; });
        rows_.endCollapsing();
        editCues(QStringLiteral("Delete Cue"), std::move(now));
    };
    if (!services_.settings.value(settings::confirmerSuppressionCues)) {
        remove();
        return;
    }
    Alert alert;
    alert.title = QStringLiteral("Delete Cue?");
    alert.text = QStringLiteral("Delete Cue \"%1\"?\n\nThis action will be applied when you save the file.")
                     .arg(cueName(*marker));
    alert.buttons = {QStringLiteral("Delete"), QStringLiteral("Cancel")};
    alert.destructive = true;
    alert.checkBox = QStringLiteral("Do not ask again");
    services_.dialogs.ask(alert, [this, remove](AlertAnswer answer) {
        if (answer.button != 0) return;
        if (answer.checked) services_.settings.set(settings::confirmerSuppressionCues, false);
        remove();
    });
}

void ContentView::renameCue(const Uuid& id) {
    std::vector<CueMarker> markers = cueMarkers();
    const auto marker = find(markers, id);
    if (marker == markers.end()) return;
    TextQuestion question;
    question.title = QStringLiteral("Edit Cue Name");
    question.text = toQt(marker->label.value_or(""));
    question.hint = QStringLiteral(
        "Leave the name empty to remove it.\n"
        "This action will be applied when you save the file.");
    services_.dialogs.askText(question, [this, id](const std::optional<QString>& text) {
        if (!text) return;
        std::vector<CueMarker> now = cueMarkers();
        const auto renamed = find(now, id);
        if (renamed == now.end()) return;
        renamed->label = text->isEmpty() ? std::nullopt : std::optional(text->toStdString());
        rows_.endCollapsing();
        editCues(QStringLiteral("Edit Cue Name"), std::move(now));
    });
}

void ContentView::beginCueDrag(const Uuid& id) {
    cueDrag_ = CueDrag{id, cueMarkers(), QStringLiteral("drag %1").arg(toQt(Uuid::random().toString()))};
    rows_.endCollapsing();
}

void ContentView::moveCue(std::int64_t frame) {
    const int row = selectedRow();
    if (!cueDrag_ || row < 0) return;
    const std::int64_t last = lastFrameOf(rows_.groupesTableau().at(static_cast<std::size_t>(row)).groupe);
    std::vector<CueMarker> markers = cueDrag_->before;
    const auto dragged = find(markers, cueDrag_->id);
    if (dragged == markers.end()) return;
    dragged->frame = std::clamp<std::int64_t>(frame, 0, last);
    editCues(QStringLiteral("Move Cue"), std::move(markers), cueDrag_->collapseKey);
}

void ContentView::endCueDrag() {
    cueDrag_.reset();
    rows_.endCollapsing();
}

}  // namespace dravik
