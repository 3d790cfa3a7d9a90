#include "ui/floating_views.h"

#include "ui/meters_view.h"
#include "ui/mixer_view.h"
#include "ui/transport_bar.h"

namespace dravik {

FloatingViews::FloatingViews(ContentView& content, TakePlayback& playback, UserDefaults& defaults, const Theme& theme,
                             Commands& commands, QWidget* window)
    : QObject(window), defaults_(defaults), window_(window) {
    connect(&commands, &Commands::dravikShowFloatingMixer, this, [this, &content, &playback, &theme] {
        toggle(mixer_, QStringLiteral("DravikFloatingMixer"), QStringLiteral("Mixer"), {760, 420},
               [&] { return new MixerView(content, playback, defaults_, theme, window_); });
    });
    connect(&commands, &Commands::dravikShowFloatingMeters, this, [this, &content, &playback, &theme] {
        toggle(meters_, QStringLiteral("DravikFloatingMeters"), QStringLiteral("Meters"), {520, 260},
               [&] { return new MetersView(content, playback, defaults_, theme, window_); });
    });
    connect(&commands, &Commands::dravikShowLargeTransport, this, [this, &playback, &theme] {
        toggle(transport_, QStringLiteral("DravikLargeTransport"), QStringLiteral("Transport"), {620, 210},
               [&] { return new TransportBar(playback, defaults_, theme, TransportBar::Form::large, window_); });
    });
}

void FloatingViews::toggle(FloatingWindow*& one, const QString& key, const QString& title, QSize firstSize,
                           const std::function<QWidget*()>& makeView) {
    if (one == nullptr) one = new FloatingWindow(defaults_, key, title, makeView(), firstSize, window_);
    one->togglePresence();
}

}  // namespace dravik
