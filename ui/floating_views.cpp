#include "ui/floating_views.h"

#include "ui/meters_view.h"
#include "ui/mixer_view.h"
#include "ui/transport_bar.h"

namespace dravik {
namespace {

constexpr FloatingWindow::Kind mixerKind{"DravikFloatingMixer",
                                         QT_TRANSLATE_NOOP("dravik::FloatingWindow", "Mixer"),
                                         settings::floatingMixerVisible,
                                         settings::floatingMixerAlwaysOnTop,
                                         {760, 420}};
constexpr FloatingWindow::Kind metersKind{"DravikFloatingMeters",
                                          QT_TRANSLATE_NOOP("dravik::FloatingWindow", "Meters"),
                                          settings::floatingMetersVisible,
                                          settings::floatingMetersAlwaysOnTop,
                                          {520, 260}};
constexpr FloatingWindow::Kind transportKind{"DravikLargeTransport",
                                             QT_TRANSLATE_NOOP("dravik::FloatingWindow", "Transport"),
                                             settings::largeTransportVisible,
                                             settings::largeTransportAlwaysOnTop,
                                             {640, 210}};

}  // namespace

FloatingViews::FloatingViews(ContentView& content, TakePlayback& playback, UserDefaults& defaults, const Theme& theme,
                             Commands& commands, QWidget* window)
    : QObject(window), content_(content), playback_(playback), defaults_(defaults), theme_(theme), window_(window) {
    connect(&commands, &Commands::dravikShowFloatingMixer, this, [this] { mixer().togglePresence(); });
    connect(&commands, &Commands::dravikShowFloatingMeters, this, [this] { meters().togglePresence(); });
    connect(&commands, &Commands::dravikShowLargeTransport, this, [this] { transport().togglePresence(); });
}

void FloatingViews::restore() {
    if (defaults_.value(settings::floatingMixerVisible)) mixer().show();
    if (defaults_.value(settings::floatingMetersVisible)) meters().show();
    if (defaults_.value(settings::largeTransportVisible)) transport().show();
}

FloatingWindow& FloatingViews::mixer() {
    if (mixer_ == nullptr) {
        auto* view = new MixerView(content_, playback_, defaults_, theme_, MixerView::Scale::always, window_);
        mixer_ = new FloatingWindow(defaults_, mixerKind, view, window_);
    }
    return *mixer_;
}

FloatingWindow& FloatingViews::meters() {
    if (meters_ == nullptr) {
        auto* view = new MetersView(content_, playback_, defaults_, theme_, window_);
        meters_ = new FloatingWindow(defaults_, metersKind, view, window_);
    }
    return *meters_;
}

FloatingWindow& FloatingViews::transport() {
    if (transport_ == nullptr) {
        auto* view = new TransportBar(playback_, defaults_, theme_, TransportBar::Form::large, window_);
        transport_ = new FloatingWindow(defaults_, transportKind, view, window_);
    }
    return *transport_;
}

}  // namespace dravik
