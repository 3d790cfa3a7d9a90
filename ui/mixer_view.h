#pragma once

#include "app/take_playback.h"
#include "ui/mixer_strip.h"
#include "ui/theme.h"

#include <QLabel>
#include <QScrollArea>
#include <QStackedLayout>
#include <QWidget>
#include <vector>

namespace dravik {

/// The strips of the loaded take side by side, with the scale of the meters between them. In the main window and in the
/// floating mixer alike.
class MixerView : public QWidget {
    Q_OBJECT
  public:
    /// The scale is repeated after so many strips, so that one is near wherever one looks.
    static constexpr int meterScaleRepeatInterval = 8;

    /// In the main window the user may do without the scale.
    enum class Scale { always, asSet };
    MixerView(ContentView& content, TakePlayback& playback, UserDefaults& defaults, const Theme& theme, Scale scale,
              QWidget* parent = nullptr);
    [[nodiscard]] const std::vector<MixerStrip*>& strips() const noexcept { return strips_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void rebuild();
    void refresh();
    void refreshNames();
    void refreshHint();
    void placeScales();
    void showScales();

    ContentView& content_;
    TakePlayback& playback_;
    UserDefaults& defaults_;
    const Theme& theme_;
    const Scale scale_;
    QStackedLayout* pages_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    QLabel* hint_ = nullptr;
    std::vector<MixerStrip*> strips_;
    std::vector<MixerMeterScaleView*> scales_;
};

}  // namespace dravik
