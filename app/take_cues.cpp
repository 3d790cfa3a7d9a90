#include "app/take_cues.h"

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

void TakeCues::load(const std::filesystem::path& file) {
    if (file != file_) {
        file_ = file;
        originaux_.clear();
        drag_.reset();
        setReading(true);
    }
    emit changed();
    read();
}

void TakeCues::unload() {
    file_.clear();
    readID_ = Uuid::random();
    originaux_.clear();
    drag_.reset();
    setReading(false);
    emit changed();
}

void TakeCues::onWritten() {
    if (row() < 0) return;
    const auto& cues = rows_.groupesTableau().at(static_cast<std::size_t>(row())).cues;
    if (!cues) return;
    originaux_ = *cues;
    readID_ = Uuid::random();  // what is just being read may be what was there before
}

void TakeCues::onReplaced() {
    if (file_.empty()) return;
    setReading(true);
    read();
}

void TakeCues::setReading(bool reading) {
    if (std::exchange(reading_, reading) != reading) emit readingChanged();
}

void TakeCues::read() {
    readID_ = Uuid::random();
    background_.run(
        this,
        [file = file_, known = originaux_] {
            std::vector<CueMarker> cues = lireCues(file);
            keepIdentities(cues, known);
            return cues;
        },
        [this, reading = readID_](std::vector<CueMarker> cues) {
            if (reading != readID_) return;
            originaux_ = std::move(cues);
            setReading(false);
            emit changed();
        });
}

std::vector<CueMarker> TakeCues::markers() const {
    const int at = row();
    if (at < 0) return {};
    return rows_.groupesTableau().at(static_cast<std::size_t>(at)).cues.value_or(originaux_);
}

void TakeCues::edit(const QString& name, std::vector<CueMarker> markers, const QString& collapseKey) {
    const int at = row();
    if (at < 0 || reading_) return;
    RowState state = rows_.groupesTableau().at(static_cast<std::size_t>(at));
    if (rows_.isLocked()) return;
    if (!rows_.canEdit(at)) {
        emit notice(rows_.isMissing(at) ? tr("The files of this take are gone.")
                                        : tr("Cues of this format are read-only."));
        return;
    }
    std::stable_sort(markers.begin(), markers.end(),
                     [](const CueMarker& a, const CueMarker& b) { return a.frame < b.frame; });
    // Back to what the file holds is no edit.
    const bool asRead =
        std::equal(markers.begin(), markers.end(), originaux_.begin(), originaux_.end(),
                   [](const CueMarker& a, const CueMarker& b) { return a.frame == b.frame && a.label == b.label; });
    state.cues = asRead ? std::nullopt : std::optional(std::move(markers));
    rows_.edit(name, {{at, std::move(state)}}, collapseKey);
}

void TakeCues::add(std::int64_t frame) {
    const int at = row();
    if (at < 0) return;
    std::vector<CueMarker> all = markers();
    const std::int64_t last = lastFrameOf(rows_.groupesTableau().at(static_cast<std::size_t>(at)).groupe);
    all.push_back({Uuid::random(), std::clamp<std::int64_t>(frame, 0, last), std::nullopt});
    rows_.endCollapsing();
    edit(tr("Add Cue"), std::move(all));
}

void TakeCues::remove(const Uuid& id) {
    std::vector<CueMarker> all = markers();
    const auto marker = find(all, id);
    if (marker == all.end()) return;
    const auto remove = [this, id] {
        std::vector<CueMarker> now = markers();
        std::erase_if(now, [&](const CueMarker& one) { return one.id == id; });
        rows_.endCollapsing();
        edit(tr("Delete Cue"), std::move(now));
    };
    if (!settings_.value(settings::confirmerSuppressionCues)) {
        remove();
        return;
    }
    Alert alert;
    alert.title = tr("Delete Cue?");
    alert.text = tr("Delete Cue \"%1\"?\n\nThis action will be applied when you save the file.")
                     .arg(cueName(*marker, static_cast<std::size_t>(marker - all.begin()) + 1));
    alert.buttons = {tr("Delete"), tr("Cancel")};
    alert.destructive = true;
    alert.checkBox = tr("Do not ask again");
    dialogs_.ask(alert, [this, remove](AlertAnswer answer) {
        if (answer.button != 0) return;
        if (answer.checked) settings_.set(settings::confirmerSuppressionCues, false);
        remove();
    });
}

void TakeCues::rename(const Uuid& id) {
    std::vector<CueMarker> all = markers();
    const auto marker = find(all, id);
    if (marker == all.end()) return;
    TextQuestion question;
    question.title = tr("Edit Cue Name");
    question.text = toQt(marker->label.value_or(""));
    question.hint =
        tr("Leave the name empty to remove it.\n"
           "This action will be applied when you save the file.");
    dialogs_.askText(question, [this, id](const std::optional<QString>& text) {
        if (!text) return;
        std::vector<CueMarker> now = markers();
        const auto renamed = find(now, id);
        if (renamed == now.end()) return;
        renamed->label = text->isEmpty() ? std::nullopt : std::optional(text->toStdString());
        rows_.endCollapsing();
        edit(tr("Edit Cue Name"), std::move(now));
    });
}

void TakeCues::beginDrag(const Uuid& id) {
    drag_ = Drag{id, markers(), QStringLiteral("drag %1").arg(toQt(Uuid::random().toString()))};
    rows_.endCollapsing();
}

void TakeCues::drag(std::int64_t frame) {
    const int at = row();
    if (!drag_ || at < 0) return;
    const std::int64_t last = lastFrameOf(rows_.groupesTableau().at(static_cast<std::size_t>(at)).groupe);
    std::vector<CueMarker> moved = drag_->before;
    const auto dragged = find(moved, drag_->id);
    if (dragged == moved.end()) return;
    dragged->frame = std::clamp<std::int64_t>(frame, 0, last);
    edit(tr("Move Cue"), std::move(moved), drag_->collapseKey);
}

void TakeCues::endDrag() {
    drag_.reset();
    rows_.endCollapsing();
}

}  // namespace dravik
