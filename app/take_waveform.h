#pragma once

#include "app/background.h"
#include "app/content_view.h"
#include "app/take_audio.h"
#include "app/user_defaults.h"
#include "base/file_ops.h"
#include "base/progress.h"
#include "model/sample_decoder.h"
#include "playback/peaks.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

namespace dravik {

/// The extremes of the selected take, from the cache or out of its files, as soon as any of them are known. Main thread
/// only; what it is given outlives it.
class TakeWaveform : public QObject {
    Q_OBJECT
  public:
    /// Without a cache folder nothing is kept.
    TakeWaveform(ContentView& content, LooseBackground& background, FileOps& ops, const SampleDecoder& decoder,
                 UserDefaults& defaults, std::optional<std::filesystem::path> cacheFolder);
    ~TakeWaveform() override;

    /// Of the selected take, as far as they are known; null when nothing is.
    [[nodiscard]] const TakePeaks* peaks() const noexcept { return whole_ ? whole_.get() : growing_.get(); }
    [[nodiscard]] bool isComplete() const noexcept { return whole_ != nullptr; }
    /// Why there is no waveform; empty when there is one, or will be.
    [[nodiscard]] const QString& error() const noexcept { return error_; }

  signals:
    /// Another take: what was shown is not its waveform.
    void takeChanged();
    /// More of the same take is known.
    void grown();

  private:
    void onSelectionChanged();
    void onFilesMoved(const FileMoves& moved);
    void letGoOf(const std::filesystem::path& root);
    void show(TakeAudio audio);
    void start();
    [[nodiscard]] std::uint64_t cacheLimit() const;
    void trimCache();

    ContentView& content_;
    LooseBackground& background_;
    FileOps& ops_;
    const SampleDecoder& decoder_;
    UserDefaults& defaults_;
    std::optional<std::filesystem::path> cacheFolder_;
    QTimer startDelay_;  ///< who walks through the table with the arrow keys reads no file
    TakeAudio audio_;
    std::shared_ptr<CancellationToken> token_;
    std::unique_ptr<TakePeaks> growing_;      ///< while they are being found
    std::shared_ptr<const TakePeaks> whole_;  ///< once they are
    QString error_;
};

}  // namespace dravik
