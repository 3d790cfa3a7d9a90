#pragma once

#include "ui/theme.h"

#include <QTextBrowser>

namespace dravik {

/// Shows one page of the manual in a column that can be read, with its pictures no wider than that.
class ManualPageView : public QTextBrowser {
    Q_OBJECT
  public:
    explicit ManualPageView(const Theme& theme, QWidget* parent);

    /// Points at 100 %; a window is as wide or narrower.
    static constexpr int columnWidth = 720;

  protected:
    QVariant loadResource(int type, const QUrl& name) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void shape();

    const Theme& theme_;
};

}  // namespace dravik
