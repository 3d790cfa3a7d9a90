#pragma once

#include "app/content_view.h"
#include "ui/theme.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QWidget>
#include <vector>

namespace dravik {

/// What the format of the loaded take is, when it was recorded, and which files it is made of. Only told.
class TakeSummary : public QWidget {
    Q_OBJECT
  public:
    TakeSummary(const ContentView& content, const Theme& theme, QWidget* parent = nullptr);

    void refresh(const GroupeFichiers& groupe);
    /// The list of files begins with the first one.
    void scrollToTop();

  private:
    void applyTheme();

    const ContentView& content_;
    const Theme& theme_;

    // Widgets are children of this one.
    std::vector<QLabel*> captions_;
    QLabel* format_ = nullptr;
    QLabel* duration_ = nullptr;
    QLabel* sampleRate_ = nullptr;
    QLabel* bits_ = nullptr;
    QLabel* trackCount_ = nullptr;
    QLabel* date_ = nullptr;
    QPlainTextEdit* files_ = nullptr;
};

}  // namespace dravik
