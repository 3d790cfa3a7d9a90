#pragma once

#include "app/export_audio_session_state.h"
#include "ui/track_name.h"

#include <QComboBox>
#include <QLabel>
#include <QStackedWidget>
#include <QWidget>
#include <optional>
#include <vector>

namespace dravik {

/// What an export makes of a take: channels, format, depth or bit rate, sample rate and the tracks it takes. Shows what
/// applies to the choices made so far, at places that do not move. Which takes are exported is not its business; that
/// part of the state passes through.
class ExportForm : public QWidget {
    Q_OBJECT
  public:
    explicit ExportForm(QWidget* parent = nullptr);

    /// These tell nobody.
    void setState(const ExportAudioSessionState& state);
    /// Those of the take that is shown. A choice of a track that it has not stays, and says so.
    void setTracks(std::vector<TrackName> tracks);
    [[nodiscard]] const ExportAudioSessionState& state() const noexcept { return state_; }

  signals:
    /// The user has chosen something; the state is one that is allowed.
    void stateChanged(const ExportAudioSessionState& state);

  private:
    [[nodiscard]] QComboBox* box(const QString& name, const QString& help);
    void makeTracks();
    void alignLabels();
    void takeOver();
    void refresh();
    /// `optional`: none can be chosen.
    void fillTracks(QComboBox& box, std::optional<int> chosenTrack, bool optional) const;

    ExportAudioSessionState state_;
    std::vector<TrackName> tracks_;

    // Children, all of them.
    QComboBox *channels_, *format_, *depth_, *bitRate_, *rate_;
    QComboBox *mono1_ = nullptr, *mono2_ = nullptr, *gain_ = nullptr, *left_ = nullptr, *right_ = nullptr;
    QLabel* depthLabel_;
    QStackedWidget *depthOrRate_, *trackPages_;
    QLabel* oneTrack_ = nullptr;
};

}  // namespace dravik
