#pragma once

#include "ui/theme.h"
#include "ui/track_name.h"

#include <QWidget>
#include <set>
#include <vector>

namespace dravik {

class CheckBar;
class CheckTable;
class TrackChecksModel;

/// The tracks of a take with a check box each: those that a split makes files of, or those that are deleted.
class TrackChecks : public QWidget {
    Q_OBJECT
  public:
    /// What a check mark says of a track; what is removed is struck through.
    enum class Meaning { taken, removed };
    TrackChecks(Meaning meaning, const Theme& theme, QWidget* parent = nullptr);

    /// A first row for the first two tracks as one stereo file; it is disabled while there is one track only.
    void setStereoOffered(bool offered);
    /// These tell nobody. Positions from 0; those that no track has are left out. New tracks keep the marks of the ones
    /// before them at the same positions.
    void setTracks(std::vector<TrackName> tracks);
    void setChecked(const std::set<int>& positions, bool stereo = false);
    [[nodiscard]] std::set<int> checked() const;
    [[nodiscard]] bool stereoChecked() const noexcept;  ///< false where it is disabled
    [[nodiscard]] CheckTable& table() noexcept { return *table_; }

  signals:
    /// The user has changed one or all.
    void checkedChanged(const std::set<int>& positions, bool stereo);

  private:
    void refresh();

    TrackChecksModel* model_;  // children, all of them
    CheckTable* table_;
    CheckBar* bar_;
};

}  // namespace dravik
