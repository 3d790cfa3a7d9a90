#pragma once

#include "model/audio_metadata.h"
#include "model/piste.h"

#include <QObject>
#include <map>
#include <string>
#include <vector>

namespace dravik {

/// The fields of a take that can be edited, as texts: an absent value is the empty text. A value.
struct EditedFields {
    std::string project, scene, tape, prise, note;
    bool circled = false, wild = false;
    std::map<int, std::string> nomsPistes;  ///< track of the take (from 1) -> name as shown
    std::map<int, int> numerosPistes;  ///< track of the take (from 1) -> recorder's channel number, where it has one
    std::string timecode;              ///< "HH:MM:SS:FF", empty for none
    std::string framerate;             ///< label, empty for none
    friend bool operator==(const EditedFields&, const EditedFields&) = default;
};

/// The unsaved edits of the selected take beside the values it had when it was loaded. It does not touch files and
/// knows no window. Main thread only. Nothing throws.
class ModificationsEnCours : public QObject {
    Q_OBJECT
    Q_PROPERTY(std::string project READ project WRITE setProject NOTIFY projectChanged)
    Q_PROPERTY(std::string scene READ scene WRITE setScene NOTIFY sceneChanged)
    Q_PROPERTY(std::string tape READ tape WRITE setTape NOTIFY tapeChanged)
    Q_PROPERTY(std::string prise READ prise WRITE setPrise NOTIFY priseChanged)
    Q_PROPERTY(std::string note READ note WRITE setNote NOTIFY noteChanged)
    Q_PROPERTY(bool circled READ circled WRITE setCircled NOTIFY circledChanged)
    Q_PROPERTY(bool wild READ wild WRITE setWild NOTIFY wildChanged)
    Q_PROPERTY(std::string timecode READ timecode WRITE setTimecode NOTIFY timecodeChanged)
    Q_PROPERTY(std::string framerate READ framerate WRITE setFramerate NOTIFY framerateChanged)
    Q_PROPERTY(bool modifTableau READ modifTableau WRITE setModifTableau NOTIFY modifTableauChanged)
    Q_PROPERTY(bool modifCues READ modifCues WRITE setModifCues NOTIFY modifCuesChanged)
    Q_PROPERTY(bool aDesModifications READ aDesModifications NOTIFY aDesModificationsChanged)

  public:
    using QObject::QObject;

    /// Takes over a loaded take: edited and original values alike, nothing unsaved. `sampleRate` in Hz.
    void charger(const AudioMetadata& metadata, const std::vector<Piste>& pistes, double sampleRate);
    /// Brings `aDesModifications` up to date. Every setter calls it.
    void recalculer();
    /// Discard: back to the values at load.
    void annuler();
    /// After a successful save: what was edited is what is on disk.
    void valider();

    [[nodiscard]] const EditedFields& fields() const noexcept { return edited_; }
    [[nodiscard]] const EditedFields& originals() const noexcept { return originals_; }
    [[nodiscard]] double sampleRate() const noexcept { return sampleRate_; }

    [[nodiscard]] const std::string& project() const noexcept { return edited_.project; }
    [[nodiscard]] const std::string& scene() const noexcept { return edited_.scene; }
    [[nodiscard]] const std::string& tape() const noexcept { return edited_.tape; }
    [[nodiscard]] const std::string& prise() const noexcept { return edited_.prise; }
    [[nodiscard]] const std::string& note() const noexcept { return edited_.note; }
    [[nodiscard]] bool circled() const noexcept { return edited_.circled; }
    [[nodiscard]] bool wild() const noexcept { return edited_.wild; }
    [[nodiscard]] const std::map<int, std::string>& nomsPistes() const noexcept { return edited_.nomsPistes; }
    [[nodiscard]] const std::map<int, int>& numerosPistes() const noexcept { return edited_.numerosPistes; }
    [[nodiscard]] const std::string& timecode() const noexcept { return edited_.timecode; }
    [[nodiscard]] const std::string& framerate() const noexcept { return edited_.framerate; }
    [[nodiscard]] bool modifTableau() const noexcept { return modifTableau_; }
    [[nodiscard]] bool modifCues() const noexcept { return modifCues_; }
    [[nodiscard]] bool aDesModifications() const noexcept { return aDesModifications_; }

    void setProject(const std::string& texte);
    void setScene(const std::string& texte);
    void setTape(const std::string& texte);
    void setPrise(const std::string& texte);
    void setNote(const std::string& texte);
    void setCircled(bool valeur);
    void setWild(bool valeur);
    void setTrackName(int piste, const std::string& nom);
    /// Recorder's channel numbers of these tracks; the others keep theirs.
    void setTrackNumbers(const std::map<int, int>& numeros);
    void setTimecode(const std::string& texte);
    void setFramerate(const std::string& label);
    void setModifTableau(bool valeur);
    void setModifCues(bool valeur);

  signals:
    void projectChanged();
    void sceneChanged();
    void tapeChanged();
    void priseChanged();
    void noteChanged();
    void circledChanged();
    void wildChanged();
    void nomsPistesChanged();
    void numerosPistesChanged();
    void timecodeChanged();
    void framerateChanged();
    void modifTableauChanged();
    void modifCuesChanged();
    void aDesModificationsChanged();

  private:
    template <typename Value>
    void set(Value& field, const Value& valeur, void (ModificationsEnCours::*changed)());
    void remplacer(EditedFields fields);  // nothing is unsaved then

    EditedFields edited_;
    EditedFields originals_;
    double sampleRate_ = 0;
    bool modifTableau_ = false;
    bool modifCues_ = false;
    bool aDesModifications_ = false;
};

}  // namespace dravik
