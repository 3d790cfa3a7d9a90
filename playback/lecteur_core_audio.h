#pragma once

#include "base/uuid.h"
#include "model/groupe_fichiers.h"
#include "playback/audio_output.h"
#include "playback/counter.h"
#include "playback/level_meters.h"
#include "playback/mixer_state.h"
#include "playback/pcm_loader.h"
#include "playback/playback_settings.h"
#include "playback/take_preparation.h"
#include "playback/take_renderer.h"

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// The player. Loads the selected take into memory in the background, plays it through the monitoring mixer, and
/// publishes position, timecode and levels. Everything here is for the main thread; the sound itself is made by a
/// TakeRenderer on the output's thread, which this object feeds and asks.
///
/// Not loaded -> loading -> ready (`pret`) <-> playing (`enLecture`). A new load stops whatever is there, from any
/// state, and gives the old take's memory back at once.
class LecteurCoreAudio : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool pret READ pret NOTIFY pretChanged)
    Q_PROPERTY(bool enLecture READ enLecture NOTIFY enLectureChanged)
    Q_PROPERTY(double positionLecture READ positionLecture NOTIFY positionChanged)
    Q_PROPERTY(std::string timecode READ timecode NOTIFY positionChanged)
    Q_PROPERTY(std::string timecodeMillis READ timecodeMillis NOTIFY positionChanged)
    Q_PROPERTY(std::vector<bool> muteParCanal READ muteParCanal NOTIFY muteParCanalChanged)
    Q_PROPERTY(std::vector<bool> soloParCanal READ soloParCanal NOTIFY soloParCanalChanged)
    Q_PROPERTY(std::vector<float> panParCanal READ panParCanal NOTIFY panParCanalChanged)
    Q_PROPERTY(std::vector<double> faderDBParCanal READ faderDBParCanal NOTIFY faderDBParCanalChanged)
    Q_PROPERTY(std::vector<float> volumeParCanal READ volumeParCanal NOTIFY volumeParCanalChanged)
    Q_PROPERTY(
        std::vector<bool> reversePolarityParCanal READ reversePolarityParCanal NOTIFY reversePolarityParCanalChanged)
    Q_PROPERTY(
        std::vector<PaireMonitoringMS> pairesMSMonitoring READ pairesMSMonitoring NOTIFY pairesMSMonitoringChanged)
    Q_PROPERTY(std::vector<PaireLinkAB> pairesABLink READ pairesABLink NOTIFY pairesABLinkChanged)
    Q_PROPERTY(float volumeBoost READ volumeBoost NOTIFY volumeBoostChanged)
    Q_PROPERTY(std::string labelVolume READ labelVolume NOTIFY volumeBoostChanged)
    Q_PROPERTY(std::optional<double> selectionDebut READ selectionDebut NOTIFY selectionChanged)
    Q_PROPERTY(std::optional<double> selectionFin READ selectionFin NOTIFY selectionChanged)
    Q_PROPERTY(std::vector<float> niveauxDB READ niveauxDB NOTIFY metersChanged)
    Q_PROPERTY(std::vector<float> meterPeakDB READ meterPeakDB NOTIFY metersChanged)
    Q_PROPERTY(std::vector<double> meterPeakHoldUntil READ meterPeakHoldUntil NOTIFY metersChanged)
    Q_PROPERTY(std::vector<bool> meterClipHeld READ meterClipHeld NOTIFY metersChanged)
  public:
    /// Settings and decoder must outlive the player.
    LecteurCoreAudio(PlaybackSettings& settings, const SampleDecoder& decoder, AvailableMemory availableMemory,
                     MakeAudioOutput makeOutput, QObject* parent = nullptr);
    ~LecteurCoreAudio() override;
    LecteurCoreAudio(const LecteurCoreAudio&) = delete;
    LecteurCoreAudio& operator=(const LecteurCoreAudio&) = delete;

    /// Ends with `loaded` or `loadFailed`, unless a later load or `unload` comes first.
    void load(const GroupeFichiers& take);
    void unload();
    /// Files were renamed: what is kept for the takes that they make goes with them, and the one that plays plays on.
    void filesMoved(const std::map<std::filesystem::path, std::filesystem::path>& moved);
    [[nodiscard]] bool pret() const noexcept { return pret_; }

    // Transport. Nothing happens while no take is ready.
    void play();
    void pause();
    void togglePlay() { enLecture_ ? pause() : play(); }
    void returnToBeginning() { setFrame(0); }
    void setFrame(std::int64_t frame);
    /// A fraction of the take, 0 to 1.
    void setPosition(double fraction);
    enum class Direction { backward, forward };
    void nudge(Direction direction, int count = 1);
    /// In seconds from the start of the take.
    void setSelection(std::optional<double> debut, std::optional<double> fin);
    void clearSelection() { setSelection({}, {}); }
    void toggleLoop();

    // Mixer: the rules are MixerState's.
    void setFader(int index, double dB);
    void setPan(int index, float pan);
    void toggleMute(int index);
    void toggleSolo(int index, bool shift);
    void toggleReversePolarity(int index);
    void setBoost(float dB);
    bool setPaireMS(int first, int second, OrientationMonitoringMS orientation, float width);
    void removePaireMS(int first, int second);
    void setWidth(int first, int second, float width);
    bool makeLinkAB(int a, int b);
    void removeLinkAB(int a, int b);
    [[nodiscard]] const MixerState& mixer() const noexcept { return mixer_; }
    [[nodiscard]] std::optional<MonitoringSessionState> monitoringSession() const { return mixer_.snapshot(); }
    void restoreMonitoringSession(const MonitoringSessionState& state);
    void resetMeters(bool clearClip);

    [[nodiscard]] bool enLecture() const noexcept { return enLecture_; }
    /// The loaded samples, for views; null while no take is loaded.
    [[nodiscard]] const std::shared_ptr<const PcmTake>& take() const noexcept { return take_; }
    [[nodiscard]] double positionLecture() const noexcept;
    [[nodiscard]] std::int64_t frameCourante() const noexcept { return frameCourante_; }  ///< last published
    [[nodiscard]] std::int64_t frameDepart() const noexcept { return frameDepart_; }
    [[nodiscard]] std::int64_t frameTotal() const noexcept { return frameTotal_; }
    [[nodiscard]] std::int64_t frameAuDemarrage() const noexcept { return frameAuDemarrage_; }
    [[nodiscard]] double tempsReferenceLecture() const noexcept { return tempsReferenceLecture_; }
    [[nodiscard]] std::int64_t frameReferenceLecture() const noexcept { return frameReferenceLecture_; }
    [[nodiscard]] double sampleRate() const noexcept { return sampleRate_; }
    [[nodiscard]] int nbCanaux() const noexcept { return mixer_.nbCanaux; }
    [[nodiscard]] const std::optional<std::filesystem::path>& urlFichier() const noexcept { return urlFichier_; }
    [[nodiscard]] const std::string& timecode() const noexcept { return timecodeCourant_; }
    [[nodiscard]] const std::string& timecodeCourant() const noexcept { return timecodeCourant_; }
    [[nodiscard]] const std::string& timecodeMillis() const noexcept { return timecodeMillis_; }
    [[nodiscard]] std::int64_t frameTCCourant() const noexcept { return frameTCCourant_; }
    [[nodiscard]] std::int64_t frameTCPosition() const noexcept { return frameTCPosition_; }
    [[nodiscard]] bool enNudge() const noexcept { return enNudge_; }
    [[nodiscard]] const std::string& tcFlag() const noexcept { return takeTimecode_.tcFlag; }
    [[nodiscard]] const TakeTimecode& takeTimecode() const noexcept { return takeTimecode_; }
    [[nodiscard]] const std::optional<double>& selectionDebut() const noexcept { return selectionDebut_; }
    [[nodiscard]] const std::optional<double>& selectionFin() const noexcept { return selectionFin_; }
    [[nodiscard]] const std::vector<bool>& muteParCanal() const noexcept { return mixer_.muteParCanal; }
    [[nodiscard]] const std::vector<bool>& soloParCanal() const noexcept { return mixer_.soloParCanal; }
    [[nodiscard]] const std::vector<float>& panParCanal() const noexcept { return mixer_.panParCanal; }
    [[nodiscard]] const std::vector<double>& faderDBParCanal() const noexcept { return mixer_.faderDBParCanal; }
    [[nodiscard]] const std::vector<float>& volumeParCanal() const noexcept { return mixer_.volumeParCanal; }
    [[nodiscard]] const std::vector<bool>& reversePolarityParCanal() const noexcept {
        return mixer_.reversePolarityParCanal;
    }
    [[nodiscard]] const std::vector<PaireMonitoringMS>& pairesMSMonitoring() const noexcept {
        return mixer_.pairesMSMonitoring;
    }
    [[nodiscard]] const std::vector<PaireLinkAB>& pairesABLink() const noexcept { return mixer_.pairesABLink; }
    [[nodiscard]] float volumeBoost() const noexcept { return volumeBoost_; }
    [[nodiscard]] const std::string& labelVolume() const noexcept { return labelVolume_; }
    [[nodiscard]] const std::vector<float>& niveauxDB() const noexcept { return meters_.niveauxDB; }
    [[nodiscard]] const std::vector<float>& meterPeakDB() const noexcept { return meters_.meterPeakDB; }
    [[nodiscard]] const std::vector<double>& meterPeakHoldUntil() const noexcept { return meters_.meterPeakHoldUntil; }
    [[nodiscard]] const std::vector<bool>& meterClipHeld() const noexcept { return meters_.meterClipHeld; }

  signals:
    void pretChanged();
    void enLectureChanged();
    /// At most sixty times a second while playing; at once for a position that was set.
    void positionChanged();
    /// At most 48 times a second.
    void metersChanged();
    void muteParCanalChanged();
    void soloParCanalChanged();
    void panParCanalChanged();
    void faderDBParCanalChanged();
    void volumeParCanalChanged();
    void reversePolarityParCanalChanged();
    void pairesMSMonitoringChanged();
    void pairesABLinkChanged();
    void volumeBoostChanged();
    void selectionChanged();
    void lectureEnBoucleChanged();

    void loadProgress(double fraction);
    void loaded();
    /// The take or the output could not be had; the text is for the user.
    void loadFailed(const std::string& text);

  private:
    struct Request;
    void startLoad(Request request);
    void applyLoaded(const Request& request, std::shared_ptr<const PcmTake> take, const std::string& error);
    void keepMonitoringSession();
    void dropTake();
    void buildEngine(bool goOn);
    void stopEngine() noexcept;
    void stopped();
    void configurationChanged();
    void rebuildAfterDeviceChange();

    void tick();
    [[nodiscard]] PlayRange range() const;
    [[nodiscard]] Transport transport(std::int64_t frame, bool playing);
    void sendTransport(std::int64_t frame, bool playing);
    void moveTo(std::int64_t frame);
    void publishPosition();
    template <typename Change>
    auto changeMixer(Change change);
    void announce(const MixerState& before);
    void sendMix();

    PlaybackSettings& settings_;
    const SampleDecoder& decoder_;
    const AvailableMemory availableMemory_;
    const MakeAudioOutput makeOutput_;

    bool pret_ = false, enLecture_ = false, enNudge_ = false;
    std::int64_t frameDepart_ = 0, frameCourante_ = 0, frameAuDemarrage_ = 0, frameReferenceLecture_ = 0;
    double tempsReferenceLecture_ = 0;
    double dernierePublicationPosition_ = 0;
    std::int64_t frameTotal_ = 0;
    double sampleRate_ = 48000.0;
    std::optional<std::filesystem::path> urlFichier_;
    TakeTimecode takeTimecode_;
    std::string timecodeCourant_ = "00:00:00:00", timecodeMillis_ = "00:00:00.000";
    std::int64_t frameTCCourant_ = 0, frameTCPosition_ = 0;
    std::optional<double> selectionDebut_, selectionFin_;
    bool looping_ = false;         // as the renderer has it
    std::uint64_t toursSeen_ = 0;  // of the renderer's count

    MixerState mixer_;
    float volumeBoost_ = 0;
    std::string labelVolume_ = "0 dB";
    LevelMeters meters_;
    using TakeKey = std::vector<std::string>;  // normalised paths of its files
    std::map<TakeKey, MonitoringSessionState> sessions_;
    TakeKey takeKey_;

    Uuid chargementAudioID_ = Uuid::random();
    std::shared_ptr<CancellationToken> preparationAudioTask_;
    TakePreparation preparation_;
    std::shared_ptr<const PcmTake> take_;
    std::unique_ptr<TakeRenderer> renderer_;
    std::unique_ptr<AudioOutput> moteur_;  // after the renderer, which it calls until it is destroyed
    double mediaTime_ = 0;
    QTimer ticks_, meterReset_, reconfigurationAudioTask_;
    bool reconfigurationAudioEnCours_ = false;
};

}  // namespace dravik
