#include "playback/lecteur_core_audio.h"

#include <cmath>
#include <type_traits>

namespace dravik {

/// Every change of the mixer: made on the value, told to the audio thread as one finished plan, announced by what it
/// changed.
template <typename Change>
auto LecteurCoreAudio::changeMixer(Change change) {
    const MixerState before = mixer_;
    const auto tell = [&] {
        if (before == mixer_) return;
        sendMix();
        announce(before);
    };
    if constexpr (std::is_void_v<decltype(change(mixer_))>) {
        change(mixer_);
        tell();
    } else {
        const auto result = change(mixer_);
        tell();
        return result;
    }
}

void LecteurCoreAudio::announce(const MixerState& before) {
    if (before.muteParCanal != mixer_.muteParCanal) emit muteParCanalChanged();
    if (before.soloParCanal != mixer_.soloParCanal) emit soloParCanalChanged();
    if (before.panParCanal != mixer_.panParCanal) emit panParCanalChanged();
    if (before.faderDBParCanal != mixer_.faderDBParCanal) emit faderDBParCanalChanged();
    if (before.volumeParCanal != mixer_.volumeParCanal) emit volumeParCanalChanged();
    if (before.reversePolarityParCanal != mixer_.reversePolarityParCanal) emit reversePolarityParCanalChanged();
    if (before.pairesMSMonitoring != mixer_.pairesMSMonitoring) emit pairesMSMonitoringChanged();
    if (before.pairesABLink != mixer_.pairesABLink) emit pairesABLinkChanged();
}

void LecteurCoreAudio::sendMix() {
    // Silent but while something is played, so that a pause is heard at once.
    if (renderer_) renderer_->setMix(mixPlan(mixer_), enLecture_ ? outputGain(volumeBoost_) : 0.0F);
}

void LecteurCoreAudio::setFader(int index, double dB) {
    changeMixer([=](MixerState& mixer) { mixer.setFader(index, dB); });
}

void LecteurCoreAudio::setPan(int index, float pan) {
    changeMixer([=](MixerState& mixer) { mixer.setPan(index, pan); });
}

void LecteurCoreAudio::toggleMute(int index) {
    changeMixer([=](MixerState& mixer) { mixer.toggleMute(index); });
}

void LecteurCoreAudio::toggleSolo(int index, bool shift) {
    changeMixer([&](MixerState& mixer) { mixer.toggleSolo(index, shift, settings_.soloComportement()); });
}

void LecteurCoreAudio::toggleReversePolarity(int index) {
    changeMixer([=](MixerState& mixer) { mixer.toggleReversePolarity(index); });
}

void LecteurCoreAudio::setBoost(float dB) {
    if (!std::isfinite(dB) || dB == volumeBoost_) return;
    volumeBoost_ = dB;
    labelVolume_ = volumeLabel(dB);
    sendMix();
    emit volumeBoostChanged();
}

bool LecteurCoreAudio::setPaireMS(int first, int second, OrientationMonitoringMS orientation, float width) {
    return changeMixer([=](MixerState& mixer) { return mixer.setPaireMS(first, second, orientation, width); });
}

void LecteurCoreAudio::removePaireMS(int first, int second) {
    changeMixer([=](MixerState& mixer) { mixer.removePaireMS(first, second); });
}

void LecteurCoreAudio::setWidth(int first, int second, float width) {
    changeMixer([=](MixerState& mixer) { mixer.setWidth(first, second, width); });
}

bool LecteurCoreAudio::makeLinkAB(int a, int b) {
    return changeMixer([=](MixerState& mixer) { return mixer.makeLinkAB(a, b); });
}

void LecteurCoreAudio::removeLinkAB(int a, int b) {
    changeMixer([=](MixerState& mixer) { mixer.removeLinkAB(a, b); });
}

void LecteurCoreAudio::restoreMonitoringSession(const MonitoringSessionState& state) {
    changeMixer([&](MixerState& mixer) { return mixer.restore(state); });
}

void LecteurCoreAudio::resetMeters(bool clearClip) {
    if (!renderer_) return;
    renderer_->resetMeters(clearClip);
    if (renderer_->copyMeters(meters_)) emit metersChanged();
}

}  // namespace dravik
