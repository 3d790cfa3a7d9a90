#include "playback/lecteur_core_audio.h"

#include "base/paths.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <utility>

namespace dravik {
namespace {

/// A sixtieth of a second, to the next millisecond: the timer must not be faster than the position may be published.
constexpr std::chrono::milliseconds tickInterval{17};
constexpr double positionPublicationSecondes = 1.0 / 60.0;
/// The last blocks before a pause are measured after it.
constexpr std::chrono::milliseconds meterResetDelay{100};
/// Devices come in flocks: an interface announces every one of its outputs.
constexpr std::chrono::milliseconds reconfigurationDelay{100};

double now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

std::vector<std::string> keyOf(const GroupeFichiers& take) {
    std::vector<std::string> key;
    for (const InfoFichier& file : take.fichiers)
        key.push_back(normalisedPath(file.url));
    return key;
}

}  // namespace

/// What a background load has to know.
struct LecteurCoreAudio::Request {
    Uuid id;
    std::vector<std::filesystem::path> files;
    bool estPoly = false;
    std::shared_ptr<CancellationToken> token = std::make_shared<CancellationToken>();
};

LecteurCoreAudio::LecteurCoreAudio(PlaybackSettings& settings, const SampleDecoder& decoder,
                                   AvailableMemory availableMemory, MakeAudioOutput makeOutput, QObject* parent)
    : QObject(parent),
      settings_(settings),
      decoder_(decoder),
      availableMemory_(std::move(availableMemory)),
      makeOutput_(std::move(makeOutput)) {
    ticks_.setTimerType(Qt::PreciseTimer);
    ticks_.setInterval(tickInterval);
    connect(&ticks_, &QTimer::timeout, this, &LecteurCoreAudio::tick);
    meterReset_.setSingleShot(true);
    meterReset_.setInterval(meterResetDelay);
    connect(&meterReset_, &QTimer::timeout, this, [this] { resetMeters(false); });
    reconfigurationAudioTask_.setSingleShot(true);
    reconfigurationAudioTask_.setInterval(reconfigurationDelay);
    connect(&reconfigurationAudioTask_, &QTimer::timeout, this, &LecteurCoreAudio::rebuildAfterDeviceChange);
}

LecteurCoreAudio::~LecteurCoreAudio() {
    if (preparationAudioTask_) preparationAudioTask_->cancel();
    stopEngine();
}

void LecteurCoreAudio::load(const GroupeFichiers& take) {
    unload();
    takeKey_ = keyOf(take);
    takeTimecode_ = TakeTimecode::of(take.framerate, take.timecode);
    if (!take.fichiers.empty()) urlFichier_ = take.fichiers.front().url;

    Request request;
    // Whoever was told that the old take is gone may have begun a load of its own: this one is the later.
    if (preparationAudioTask_) preparationAudioTask_->cancel();
    request.id = chargementAudioID_ = Uuid::random();
    request.estPoly = !take.isMonoSet();
    for (const InfoFichier& file : take.fichiers)
        request.files.push_back(file.url);
    preparationAudioTask_ = request.token;
    startLoad(std::move(request));
}

void LecteurCoreAudio::startLoad(Request request) {
    preparation_.run([this, request = std::move(request), &decoder = decoder_,
                      available = availableMemory_](const TakePreparation::Post& post) {
        // On another thread, which may outlive this object: only what is posted may touch it.
        int percentTold = 0;
        const TaskContext task{request.token.get(), [&](const Progress& progress) {
                                   const double fraction =
                                       static_cast<double>(progress.doneBytes) /
                                       static_cast<double>(std::max<std::uint64_t>(1, progress.allBytes));
                                   const int percent = static_cast<int>(fraction * 100);
                                   if (std::exchange(percentTold, percent) == percent) return;
                                   post([this, id = request.id, fraction] {
                                       if (id == chargementAudioID_) emit loadProgress(fraction);
                                   });
                               }};
        auto pcm = std::make_shared<std::shared_ptr<const PcmTake>>();
        std::string error;
        try {
            *pcm = loadTake(request.files, request.estPoly, decoder, available, task);
        } catch (const Cancelled&) {
            return;
        } catch (const std::exception& failure) {
            error = userText(failure);
        }
        post([this, request, pcm, error] { applyLoaded(request, std::move(*pcm), error); });
    });
}

void LecteurCoreAudio::unload() {
    chargementAudioID_ = Uuid::random();
    if (preparationAudioTask_) preparationAudioTask_->cancel();
    preparationAudioTask_.reset();
    keepMonitoringSession();
    dropTake();
}

void LecteurCoreAudio::filesMoved(const std::map<std::filesystem::path, std::filesystem::path>& moved) {
    std::map<std::string, std::string> names;
    for (const auto& [before, after] : moved)
        names.emplace(normalisedPath(before), normalisedPath(after));
    const auto follow = [&](TakeKey key) {
        for (std::string& name : key) {
            if (const auto found = names.find(name); found != names.end()) name = found->second;
        }
        return key;
    };
    // All at once: two takes may have swapped their names.
    std::map<TakeKey, MonitoringSessionState> sessions;
    for (auto& [key, state] : sessions_)
        sessions.insert_or_assign(follow(key), std::move(state));
    sessions_ = std::move(sessions);
    takeKey_ = follow(std::move(takeKey_));
    if (!urlFichier_) return;
    if (const auto found = moved.find(*urlFichier_); found != moved.end()) urlFichier_ = found->second;
}

void LecteurCoreAudio::keepMonitoringSession() {
    if (const std::optional<MonitoringSessionState> state = mixer_.snapshot(); state && take_) {
        sessions_.insert_or_assign(takeKey_, *state);
    }
}

void LecteurCoreAudio::dropTake() {
    // All is said once all is done: a listener may begin another load.
    const bool wasPret = std::exchange(pret_, false);
    const bool wasPlaying = std::exchange(enLecture_, false);
    stopEngine();
    meterReset_.stop();
    reconfigurationAudioTask_.stop();
    // Gigabytes are given back to the system page by page: not on this thread.
    if (take_) preparation_.run([take = std::exchange(take_, nullptr)](const TakePreparation::Post&) {});
    urlFichier_.reset();
    takeTimecode_ = {};
    frameTotal_ = 0;
    frameDepart_ = frameCourante_ = frameAuDemarrage_ = frameReferenceLecture_ = 0;
    tempsReferenceLecture_ = 0;
    const MixerState before = std::exchange(mixer_, MixerState());
    meters_ = {};
    const bool hadSelection = selectionDebut_ || selectionFin_;
    selectionDebut_.reset();
    selectionFin_.reset();
    publishPosition();
    emit metersChanged();
    if (hadSelection) emit selectionChanged();
    announce(before);
    if (wasPlaying) emit enLectureChanged();
    if (wasPret) emit pretChanged();
}

void LecteurCoreAudio::applyLoaded(const Request& request, std::shared_ptr<const PcmTake> take,
                                   const std::string& error) {
    if (request.id != chargementAudioID_) {  // a newer load has won
        if (take) preparation_.run([take = std::move(take)](const TakePreparation::Post&) {});
        return;
    }
    preparationAudioTask_.reset();
    if (!take) {
        emit loadFailed(error);
        return;
    }
    take_ = std::move(take);
    sampleRate_ = take_->sampleRate;
    frameTotal_ = take_->frameTotal;
    const MixerState before = std::exchange(mixer_, MixerState(take_->nbCanaux));
    if (const auto known = sessions_.find(takeKey_); known != sessions_.end()) mixer_.restore(known->second);
    meters_ = LevelMeters(take_->nbCanaux);
    std::string refused;
    try {
        buildEngine(false);
        pret_ = true;
    } catch (const std::exception& failure) {
        refused = userText(failure);
    }
    announce(before);
    emit metersChanged();
    publishPosition();
    if (request.id != chargementAudioID_) return;  // a listener has begun another load
    if (!refused.empty()) {
        emit loadFailed(refused);
    } else {
        emit pretChanged();
        emit loaded();
    }
}

// --- Engine

void LecteurCoreAudio::stopEngine() noexcept {
    ticks_.stop();
    if (moteur_) moteur_->stop();
    moteur_.reset();
    if (renderer_) {
        const TakeRenderer::Heard heard = renderer_->heard();
        mediaTime_ = heard.mediaTime;
        if (enLecture_) frameCourante_ = heard.frameCourante;
    }
    renderer_.reset();
}

void LecteurCoreAudio::buildEngine(bool goOn) {
    stopEngine();
    // The clock of the meters never goes back, whatever speed the last output ran at.
    mediaTime_ = std::max(mediaTime_, now());
    renderer_ = std::make_unique<TakeRenderer>(take_, mediaTime_, meters_);
    sendMix();
    sendTransport(frameCourante_, goOn);
    // The output is destroyed before this object, and calls no more then.
    moteur_ = makeOutput_([this, post = preparation_.post()] { post([this] { configurationChanged(); }); });
    moteur_->start(take_->sampleRate, *renderer_);
    if (goOn) ticks_.start();
}

void LecteurCoreAudio::configurationChanged() {
    if (take_) reconfigurationAudioTask_.start();
}

void LecteurCoreAudio::rebuildAfterDeviceChange() {
    if (!take_ || reconfigurationAudioEnCours_) return;
    if (enLecture_) tick();  // what the old output has reached, its end perhaps
    if (!take_) return;      // a listener has begun another load
    reconfigurationAudioEnCours_ = true;
    const bool wasPlaying = enLecture_;
    const bool wasPret = pret_;
    std::string refused;
    try {
        buildEngine(wasPlaying);
        pret_ = true;
    } catch (const std::exception& failure) {
        // The output stays, without sound: it tells when a device comes.
        refused = userText(failure);
        pret_ = false;
        if (wasPlaying) stopped();
    }
    reconfigurationAudioEnCours_ = false;
    if (wasPlaying != enLecture_) {
        publishPosition();
        emit enLectureChanged();
    }
    if (wasPret != pret_) emit pretChanged();
    if (!refused.empty()) emit loadFailed(refused);
}

// --- Transport

PlayRange LecteurCoreAudio::range() const {
    return playRange(selectionDebut_, selectionFin_, frameCourante_, sampleRate_, frameTotal_);
}

Transport LecteurCoreAudio::transport(std::int64_t frame, bool playing) {
    frameCourante_ = frame;
    looping_ = settings_.lectureEnBoucle();
    const PlayRange played = range();
    const PlayRange again = playRange(selectionDebut_, selectionFin_, played.debut, sampleRate_, frameTotal_);
    return {playing, frame, played.fin, looping_ ? played.debut : -1, again.fin};
}

void LecteurCoreAudio::sendTransport(std::int64_t frame, bool playing) {
    renderer_->setTransport(transport(frame, playing));
    toursSeen_ = 0;
}

void LecteurCoreAudio::play() {
    if (!pret_ || enLecture_) return;
    meterReset_.stop();
    frameAuDemarrage_ = frameDepart_;
    frameReferenceLecture_ = frameDepart_;
    tempsReferenceLecture_ = now();
    enLecture_ = true;
    sendMix();
    sendTransport(frameDepart_, true);
    ticks_.start();
    publishPosition();
    emit enLectureChanged();
}

void LecteurCoreAudio::pause() {
    if (!pret_ || !enLecture_) return;
    const TakeRenderer::Heard heard = renderer_->heard();
    frameCourante_ = heard.frameCourante;
    if (heard.tours != toursSeen_) frameDepart_ = range().debut;
    stopped();
    sendMix();
    sendTransport(frameCourante_, false);
    publishPosition();
    emit enLectureChanged();
}

/// What holds whenever the sound ends, whether somebody paused or the device went.
void LecteurCoreAudio::stopped() {
    if (settings_.pauseComportement() == "retour") {
        frameCourante_ = frameDepart_;
    } else {
        frameDepart_ = frameCourante_;
    }
    ticks_.stop();
    enLecture_ = false;
    tempsReferenceLecture_ = 0;
    meterReset_.start();
}

void LecteurCoreAudio::tick() {
    const TakeRenderer::Heard heard = renderer_->heard();
    frameCourante_ = heard.frameCourante;
    const bool metersMoved = renderer_->copyMeters(meters_);
    if (heard.tours != toursSeen_) {
        toursSeen_ = heard.tours;
        frameDepart_ = frameAuDemarrage_ = range().debut;
        tempsReferenceLecture_ = 0;
    }
    if (heard.finAtteinte) {
        pause();
        if (metersMoved) emit metersChanged();
        return;
    }
    if (settings_.lectureEnBoucle() != looping_) {
        renderer_->setRange(transport(frameCourante_, true));
    }
    if (metersMoved) emit metersChanged();
    if (now() - dernierePublicationPosition_ >= positionPublicationSecondes) publishPosition();
}

double LecteurCoreAudio::positionLecture() const noexcept {
    return frameTotal_ > 0 ? static_cast<double>(frameCourante_) / static_cast<double>(frameTotal_) : 0.0;
}

void LecteurCoreAudio::publishPosition() {
    frameTCCourant_ = timecodeFrameAt(frameCourante_, sampleRate_, takeTimecode_);
    frameTCPosition_ = frameTCCourant_;
    timecodeCourant_ = timecodeText(frameTCCourant_, takeTimecode_.tcFps);
    timecodeMillis_ = elapsedText(frameCourante_, sampleRate_);
    dernierePublicationPosition_ = now();
    emit positionChanged();
}

void LecteurCoreAudio::moveTo(std::int64_t frame) {
    frameDepart_ = std::clamp<std::int64_t>(frame, 0, frameTotal_);
    sendTransport(frameDepart_, enLecture_);
    if (enLecture_) {
        tempsReferenceLecture_ = now();
        frameReferenceLecture_ = frameDepart_;
    }
    publishPosition();
}

void LecteurCoreAudio::setFrame(std::int64_t frame) {
    if (pret_) moveTo(frame);
}

void LecteurCoreAudio::setPosition(double fraction) {
    if (!std::isfinite(fraction)) return;
    setFrame(std::llround(std::clamp(fraction, 0.0, 1.0) * static_cast<double>(frameTotal_)));
}

void LecteurCoreAudio::nudge(Direction direction, int count) {
    if (!pret_) return;
    const std::int64_t samples = nudgeSamples(settings_.nudgeValeur(), count, sampleRate_, takeTimecode_.tcFps);
    enNudge_ = true;
    moveTo(frameDepart_ + (direction == Direction::forward ? samples : -samples));
    enNudge_ = false;
}

void LecteurCoreAudio::setSelection(std::optional<double> debut, std::optional<double> fin) {
    if (debut == selectionDebut_ && fin == selectionFin_) return;
    selectionDebut_ = debut;
    selectionFin_ = fin;
    if (pret_) {
        const TakeRenderer::Heard heard = renderer_->heard();
        renderer_->setRange(transport(enLecture_ ? heard.frameCourante : frameCourante_, enLecture_));
    }
    emit selectionChanged();
}

void LecteurCoreAudio::toggleLoop() {
    settings_.setLectureEnBoucle(!settings_.lectureEnBoucle());
    emit lectureEnBoucleChanged();
}

}  // namespace dravik
