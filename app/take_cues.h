#pragma once

#include "app/background.h"
#include "app/dialogs.h"
#include "app/take_rows.h"
#include "app/user_defaults.h"
#include "base/uuid.h"
#include "editing/cue_marker.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace dravik {

/// The cue markers of the loaded take: as they stand in its first file, which is asked on another thread, and as they
/// are edited, which is an edit of its row. Main thread only.
class TakeCues : public QObject {
    Q_OBJECT
  public:
    /// All of them outlive it.
    TakeCues(TakeRows& rows, UserDefaults& settings, Dialogs& dialogs)
        : rows_(rows), settings_(settings), dialogs_(dialogs) {}

    /// Of which file the markers are. The same again, or the same by another name, reads them anew; those that are
    /// shown stay until it is known that they are others.
    void load(const std::filesystem::path& file);
    void unload();
    /// The file has a new name.
    void follow(const std::filesystem::path& file) { file_ = file; }
    /// The edited ones are on disk now.
    void onWritten();
    /// Nothing is known of those on disk until they have been read again.
    void onReplaced();

    [[nodiscard]] bool isReading() const noexcept { return reading_; }
    /// As they are edited, in the order of the take.
    [[nodiscard]] std::vector<CueMarker> markers() const;
    [[nodiscard]] const std::vector<CueMarker>& originaux() const noexcept { return originaux_; }

    void add(std::int64_t frame);
    /// Asks before, unless the user does not want it to.
    void remove(const Uuid& id);
    void rename(const Uuid& id);
    /// A drag is one step: `drag` as often as the pointer moves, `endDrag` once. Frames are clamped to the take.
    void beginDrag(const Uuid& id);
    void drag(std::int64_t frame);
    void endDrag();

  signals:
    void changed();
    void readingChanged();
    void notice(const QString& text);

  private:
    [[nodiscard]] int row() const noexcept { return file_.empty() ? -1 : rows_.indexOfFile(file_); }
    void read();
    void setReading(bool reading);
    void edit(const QString& name, std::vector<CueMarker> markers, const QString& collapseKey = {});

    struct Drag {
        Uuid id;
        std::vector<CueMarker> before;
        QString collapseKey;
    };

    TakeRows& rows_;
    UserDefaults& settings_;
    Dialogs& dialogs_;
    std::filesystem::path file_;
    std::vector<CueMarker> originaux_;
    Uuid readID_;  ///< of the current reading; what another one brings is dropped
    bool reading_ = false;
    std::optional<Drag> drag_;
    LooseBackground background_;
};

}  // namespace dravik
