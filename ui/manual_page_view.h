#pragma once

#include "ui/theme.h"

#include <QTextBrowser>

namespace dravik {

/// Shows one page of the manual in a column that can be read, with its pictures no wider than that.
class ManualPageView : public QTextBrowser {
    Q_OBJECT
  public:
    explicit ManualPageView(const Theme& theme, QWidget* parent);

    /// Of the text, in points at 100 %; a wider window has empty margins.
    static constexpr int columnWidth = 720;

  protected:
    QVariant loadResource(int type, const QUrl& name) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void shape();
    /// Of the widest picture that there is room for.
    [[nodiscard]] int pictureWidth() const;

    const Theme& theme_;
    int picturesFor_ = 0;  ///< the width that those shown were made for
};

}  // namespace dravik
