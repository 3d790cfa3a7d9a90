#include "app/take_fields.h"

#include "app/table_edits.h"
#include "app/text.h"
#include "model/audio_metadata.h"

#include <utility>

namespace dravik {

TakeFields::TakeFields(TakeRows& rows, std::function<int()> row) : rows_(rows), row_(std::move(row)) {
    const std::pair<void (ModificationsEnCours::*)(), RowField> fields[] = {
        {&ModificationsEnCours::projectChanged, RowField::project},
        {&ModificationsEnCours::sceneChanged, RowField::scene},
        {&ModificationsEnCours::tapeChanged, RowField::tape},
        {&ModificationsEnCours::priseChanged, RowField::prise},
        {&ModificationsEnCours::noteChanged, RowField::note},
        {&ModificationsEnCours::circledChanged, RowField::circled},
        {&ModificationsEnCours::wildChanged, RowField::wild},
        {&ModificationsEnCours::timecodeChanged, RowField::timecode},
        {&ModificationsEnCours::framerateChanged, RowField::framerate},
        {&ModificationsEnCours::nomsPistesChanged, RowField::tracks},
        {&ModificationsEnCours::numerosPistesChanged, RowField::trackNumbers},
    };
    for (const auto& [signal, field] : fields)
        connect(&modifications_, signal, this, [this, field = field] { onEdited(field); });
}

void TakeFields::show() {
    const int row = row_();
    filling_ = true;
    if (row < 0) {
        modifications_.charger({}, {}, 0);
    } else {
        fill(row);
    }
    filling_ = false;
}

void TakeFields::follow() {
    if (!filling_) show();
}

void TakeFields::fill(int row) {
    const auto at = static_cast<std::size_t>(row);
    const GroupeFichiers& original = rows_.groupesOriginauxTableau().at(at);
    const RowState& state = rows_.groupesTableau().at(at);
    modifications_.charger(summary(original), tracksOfGroup(original), original.fichiers.front().sampleRate);
    const EditedFields fields = fieldsOf(state.groupe);
    modifications_.setProject(fields.project);
    modifications_.setScene(fields.scene);
    modifications_.setTape(fields.tape);
    modifications_.setPrise(fields.prise);
    modifications_.setNote(fields.note);
    modifications_.setCircled(fields.circled);
    modifications_.setWild(fields.wild);
    modifications_.setFramerate(fields.framerate);
    modifications_.setTimecode(fields.timecode);
    for (const auto& [piste, nom] : fields.nomsPistes)
        modifications_.setTrackName(piste, nom);
    modifications_.setTrackNumbers(fields.numerosPistes);
    modifications_.setModifTableau(state.groupe.nom != original.nom);
    modifications_.setModifCues(state.cues.has_value());
}

void TakeFields::onEdited(RowField field) {
    const int row = row_();
    if (filling_ || row < 0) return;
    if (!rows_.canEdit(row)) {
        show();
        return;
    }
    RowState state = rows_.groupesTableau().at(static_cast<std::size_t>(row));
    const EditedFields& edited = modifications_.fields();
    switch (field) {
        case RowField::project:
            static_cast<void>(setText(state.groupe, field, edited.project));
            break;
        case RowField::scene:
            static_cast<void>(setText(state.groupe, field, edited.scene));
            break;
        case RowField::tape:
            static_cast<void>(setText(state.groupe, field, edited.tape));
            break;
        case RowField::prise:
            static_cast<void>(setText(state.groupe, field, edited.prise));
            break;
        case RowField::note:
            static_cast<void>(setText(state.groupe, field, edited.note));
            break;
        case RowField::circled:
            setFlag(state.groupe, field, edited.circled);
            break;
        case RowField::wild:
            setFlag(state.groupe, field, edited.wild);
            break;
        case RowField::timecode:
            static_cast<void>(setText(state.groupe, field, edited.timecode));
            break;
        case RowField::framerate:
            static_cast<void>(setText(state.groupe, field, edited.framerate));
            break;
        case RowField::tracks:
            for (const auto& [piste, nom] : edited.nomsPistes)
                setTrackName(state.groupe, piste, nom);
            break;
        case RowField::trackNumbers:
            if (const auto problem = trackNumberProblem(state.groupe, edited.numerosPistes)) {
                show();
                emit notice(toQt(*problem));
                return;
            }
            static_cast<void>(setTrackNumbers(state.groupe, edited.numerosPistes));
            break;
        case RowField::name:
        case RowField::cues:
            return;
    }
    filling_ = true;  // the fields are what the row is about to become
    rows_.edit(tr("Edit %1").arg(fieldTitle(field)), {{row, std::move(state)}},
               QStringLiteral("field %1 of %2").arg(static_cast<int>(field)).arg(row));
    filling_ = false;
}

}  // namespace dravik
