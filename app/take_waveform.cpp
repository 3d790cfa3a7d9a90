#include "app/take_waveform.h"

#include "app/text.h"
#include "base/paths.h"
#include "playback/peak_cache.h"

#include <QPointer>
#include <chrono>
#include <exception>
#include <utility>

#include <spdlog/spdlog.h>

namespace dravik {
namespace {

constexpr std::chrono::milliseconds startDelay{15};
constexpr std::uint64_t bytesPerMegabyte = 1'000'000;

struct Found {
    std::shared_ptr<const TakePeaks> peaks;
    QString error;
};

}  // namespace

TakeWaveform::TakeWaveform(ContentView& content, LooseBackground& background, FileOps& ops,
                           const SampleDecoder& decoder, UserDefaults& defaults,
                           std::optional<std::filesystem::path> cacheFolder)
    : content_(content),
      background_(background),
      ops_(ops),
      decoder_(decoder),
      defaults_(defaults),
      cacheFolder_(std::move(cacheFolder)) {
    startDelay_.setSingleShot(true);
    startDelay_.setInterval(startDelay);
    connect(&startDelay_, &QTimer::timeout, this, &TakeWaveform::start);
    connect(&content_, &ContentView::selectionChanged, this, &TakeWaveform::onSelectionChanged);
    connect(&defaults_, &UserDefaults::changed, this, [this](const QString& key) {
        // Who gives it less room wants the room now, not with the next waveform.
        if (key == QLatin1String(settings::peakCacheMegabytes.key) && cacheFolder_) trimCache();
    });
    connect(&content_, &ContentView::filesMoved, this, &TakeWaveform::onFilesMoved);
    connect(&content_, &ContentView::lettingGo, this, &TakeWaveform::letGoOf);
    connect(&content_, &ContentView::takingUpAgain, this, &TakeWaveform::onSelectionChanged);
}

TakeWaveform::~TakeWaveform() {
    if (token_) token_->cancel();
}

void TakeWaveform::onSelectionChanged() {
    const int row = content_.selectedRow();
    show(row < 0 ? TakeAudio()
                 : TakeAudio::of(content_.rows().groupesOriginauxTableau().at(static_cast<std::size_t>(row))));
}

void TakeWaveform::onFilesMoved(const FileMoves& moved) {
    audio_.follow(moved);
    // What is being read may not have been opened yet under its old name.
    if (token_) startDelay_.start();
}

void TakeWaveform::letGoOf(const std::filesystem::path& root) {
    const bool reads = token_ || startDelay_.isActive();
    if (reads && audio_.isUnder(root)) show({});
}

void TakeWaveform::show(TakeAudio audio) {
    if (audio == audio_) return;
    audio_ = std::move(audio);
    if (token_) token_->cancel();
    token_.reset();
    growing_.reset();
    if (whole_) background_.letGo(std::exchange(whole_, nullptr));
    error_.clear();
    emit takeChanged();
    audio_.files.empty() ? startDelay_.stop() : startDelay_.start();
}

std::uint64_t TakeWaveform::cacheLimit() const {
    return static_cast<std::uint64_t>(std::max(0, defaults_.value(settings::peakCacheMegabytes))) * bytesPerMegabyte;
}

void TakeWaveform::trimCache() {
    background_.run(
        this,
        [&ops = ops_, folder = *cacheFolder_, limit = cacheLimit()] {
            PeakCache(ops, folder, limit).trim();
            return true;
        },
        [](bool) {});
}

void TakeWaveform::start() {
    if (token_) token_->cancel();
    token_ = std::make_shared<CancellationToken>();
    const QPointer<QObject> self(this);
    const auto token = token_;
    // The thread may outlive this object, but not what this object was given.
    const auto sink = [this, &background = background_.background(), self, token](CoarsePeaks found) {
        auto shared = std::make_shared<CoarsePeaks>(std::move(found));
        background.post(self, [this, token, shared] {
            if (token_ != token || whole_) return;
            if (!growing_) growing_ = std::make_unique<TakePeaks>();
            growing_->add(*shared);
            emit grown();
        });
    };
    auto work = [&ops = ops_, &decoder = decoder_, files = audio_.urls(), folder = cacheFolder_, limit = cacheLimit(),
                 sink, token] {
        Found found;
        try {
            std::optional<PeakCache> cache;
            if (folder) cache.emplace(ops, *folder, limit);
            PeakReport report = takePeaks(files, decoder, cache ? &*cache : nullptr, sink, {token.get(), {}});
            found.peaks = std::move(report.peaks);
            if (report.cacheProblem) spdlog::warn("{}", *report.cacheProblem);
        } catch (const Cancelled&) {
            return found;
        } catch (const std::exception& error) {
            found.error = toQt(userText(error));
        }
        return found;
    };
    background_.run(this, std::move(work), [this, token](Found found) {
        if (token_ != token) return;
        token_.reset();
        whole_ = std::move(found.peaks);
        error_ = found.error;
        growing_.reset();
        emit grown();
    });
}

}  // namespace dravik
