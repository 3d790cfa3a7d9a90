#include "app/take_playback.h"

#include "app/text.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace dravik {
namespace {

constexpr std::chrono::milliseconds loadDelay{120};
/// A marker that has just been reached is not the one before the position: whoever presses twice wants the next.
constexpr double reachedSeconds = 0.25;

}  // namespace

TakePlayback::TakePlayback(ContentView& content, LecteurCoreAudio& player, UserDefaults& defaults)
    : content_(content), player_(player), defaults_(defaults) {
    loadDelay_.setSingleShot(true);
    loadDelay_.setInterval(loadDelay);
    connect(&loadDelay_, &QTimer::timeout, this, &TakePlayback::loadSelected);
    connect(&content_, &ContentView::selectionChanged, this, &TakePlayback::onSelectionChanged);
    connect(&content_, &ContentView::filesMoved, this, &TakePlayback::onFilesMoved);
    connect(&content_, &ContentView::lettingGo, this, &TakePlayback::letGoOf);
    connect(&content_, &ContentView::takingUpAgain, this, &TakePlayback::onSelectionChanged);
    connect(&player_, &LecteurCoreAudio::loadProgress, this, [this](double fraction) {
        fraction_ = fraction;
        emit stateChanged();
    });
    connect(&player_, &LecteurCoreAudio::loaded, this, [this] {
        loading_ = false;
        emit stateChanged();
    });
    connect(&player_, &LecteurCoreAudio::pretChanged, this, [this] {
        // A device that was lost may be there again.
        if (!player_.pret() || error_.isEmpty()) return;
        error_.clear();
        emit stateChanged();
    });
    connect(&player_, &LecteurCoreAudio::loadFailed, this, [this](const std::string& text) {
        loading_ = false;
        error_ = toQt(text);
        emit stateChanged();
    });
}

void TakePlayback::onSelectionChanged() {
    const int row = content_.selectedRow();
    if (row < 0) {
        loadDelay_.stop();
        audio_ = {};
        loading_ = false;
        error_.clear();
        player_.unload();
        emit stateChanged();
        return;
    }
    const GroupeFichiers& groupe = content_.rows().groupesOriginauxTableau().at(static_cast<std::size_t>(row));
    if (TakeAudio audio = TakeAudio::of(groupe); audio != std::exchange(audio_, audio)) {
        // Silence at once: what is heard is what is selected.
        player_.unload();
        loading_ = true;
        fraction_ = 0;
        error_.clear();
        loadDelay_.start();
        emit stateChanged();
    }
}

void TakePlayback::onFilesMoved(const FileMoves& moved) {
    audio_.follow(moved);
    player_.filesMoved(moved);
    // What is being read may not have been opened yet under its old name.
    if (loading_) loadDelay_.start();
}

void TakePlayback::letGoOf(const std::filesystem::path& root) {
    // What is in memory already can be heard without its volume.
    if (!loading_ || !audio_.isUnder(root)) return;
    loadDelay_.stop();
    audio_ = {};
    loading_ = false;
    player_.unload();
    emit stateChanged();
}

void TakePlayback::loadSelected() {
    const int row = content_.selectedRow();
    if (row >= 0) player_.load(content_.rows().groupesOriginauxTableau().at(static_cast<std::size_t>(row)));
}

void TakePlayback::togglePlay() {
    if (!player_.pret()) return;
    if (!player_.enLecture() && player_.frameDepart() >= player_.frameTotal()) player_.returnToBeginning();
    player_.togglePlay();
}

void TakePlayback::nudge(LecteurCoreAudio::Direction direction) {
    // Not from where it was started, which is what the player counts from.
    if (player_.enLecture()) player_.setFrame(player_.frameCourante());
    player_.nudge(direction);
}

QString TakePlayback::nudgeAmount() const {
    const QString value = defaults_.value(settings::nudgeValeur);
    return value == QLatin1String("1s")   ? tr("1 second")
           : value == QLatin1String("5s") ? tr("5 seconds")
                                          : tr("1 frame");
}

void TakePlayback::toggleSoloMode() {
    defaults_.set(settings::soloComportement, addsSolos() ? QStringLiteral("OR") : QStringLiteral("X"));
}

void TakePlayback::toggleInsertionFollows() {
    defaults_.set(settings::pauseComportement, insertionFollows() ? QStringLiteral("retour") : QString());
}

void TakePlayback::goToPreviousCue() {
    const auto reached = static_cast<std::int64_t>(player_.enLecture() ? reachedSeconds * player_.sampleRate() : 0);
    const std::int64_t before = player_.frameCourante() - reached;
    std::int64_t target = 0;
    for (const CueMarker& marker : content_.cueMarkers()) {
        if (marker.frame < before) target = std::max(target, marker.frame);
    }
    player_.setFrame(target);
}

void TakePlayback::goToNextCue() {
    std::optional<std::int64_t> target;
    for (const CueMarker& marker : content_.cueMarkers()) {
        if (marker.frame > player_.frameCourante() && (!target || marker.frame < *target)) target = marker.frame;
    }
    if (target) player_.setFrame(*target);
}

void TakePlayback::addCueAtPlayhead() {
    if (player_.pret()) content_.cues().add(player_.frameCourante());
}

}  // namespace dravik
