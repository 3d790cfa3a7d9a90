#include "app/take_waveform.h"

#include "app/text.h"
#include "base/paths.h"
#include "playback/peak_cache.h"

#include <QPointer>
#include <chrono>
#include <exception>
#include <utility>

#include <fmt/format.h>
#include <spdlog/spdlog.h>

namespace dravik {
namespace {

constexpr std::chrono::milliseconds startDelay{15};
constexpr std::uint64_t bytesPerMegabyte = 1'000'000;

/// The same for the same audio, whatever a save has changed of its metadata.
std::string audioKey(const GroupeFichiers& groupe) {
    std::string key;
    for (const InfoFichier& fichier : groupe.fichiers)
        key += fmt::format("{}\n{} {}\n", fichier.url.native(), fichier.dureeSecondes, fichier.channels);
    return key;
}

struct Found {
    std::shared_ptr<const TakePeaks> peaks;
    QString error;
};

}  // namespace

TakeWaveform::TakeWaveform(ContentView& content, Background& background, FileOps& ops, const SampleDecoder& decoder,
                           UserDefaults& defaults, std::optional<std::filesystem::path> cacheFolder)
    : content_(content),
      background_(background),
      ops_(ops),
      decoder_(decoder),
      defaults_(defaults),
      cacheFolder_(std::move(cacheFolder)) {
    start_.setSingleShot(true);
    start_.setInterval(startDelay);
    connect(&start_, &QTimer::timeout, this, &TakeWaveform::start);
    connect(&content_, &ContentView::selectionChanged, this, &TakeWaveform::onSelectionChanged);
}

TakeWaveform::~TakeWaveform() {
    if (token_) token_->cancel();
}

void TakeWaveform::onSelectionChanged() {
    std::string key;
    std::vector<std::filesystem::path> files;
    if (const int row = content_.selectedRow(); row >= 0) {
        const GroupeFichiers& groupe = content_.rows().groupesOriginauxTableau().at(static_cast<std::size_t>(row));
        key = audioKey(groupe);
        for (const InfoFichier& fichier : groupe.fichiers)
            files.push_back(fichier.url);
    }
    if (key == key_) return;
    key_ = std::move(key);
    files_ = std::move(files);
    if (token_) token_->cancel();
    token_.reset();
    growing_.reset();
    if (whole_) background_.letGo(std::exchange(whole_, nullptr));
    error_.clear();
    emit takeChanged();
    files_.empty() ? start_.stop() : start_.start();
}

void TakeWaveform::start() {
    token_ = std::make_shared<CancellationToken>();
    const QPointer<QObject> self(this);
    const auto token = token_;
    const auto limit = static_cast<std::uint64_t>(std::max(0, defaults_.value(settings::peakCacheMegabytes)));
    // The thread may outlive this object, but not what this object was given.
    const auto sink = [this, &background = background_, self, token](CoarsePeaks found) {
        auto shared = std::make_shared<CoarsePeaks>(std::move(found));
        background.post(self, [this, token, shared] {
            if (token_ != token || whole_) return;
            if (!growing_) growing_ = std::make_unique<TakePeaks>();
            growing_->add(*shared);
            emit grown();
        });
    };
    auto work = [&ops = ops_, &decoder = decoder_, files = files_, folder = cacheFolder_, limit, sink, token] {
        Found found;
        try {
            std::optional<PeakCache> cache;
            if (folder) cache.emplace(ops, *folder, limit * bytesPerMegabyte);
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
