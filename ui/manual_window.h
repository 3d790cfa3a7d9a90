#pragma once

#include "app/dialogs.h"
#include "app/user_defaults.h"
#include "app/workspace.h"
#include "ui/theme.h"

#include <QLineEdit>
#include <QListWidget>
#include <QSplitter>
#include <QTextBrowser>
#include <QToolButton>
#include <QWidget>

namespace dravik {

/// The manual: its pages at the left, the chosen one at the right. A search keeps the pages that have all its words,
/// and marks them in the page. Links go from page to page, and to the system's browser. Remembers its frame.
class ManualWindow : public QWidget {
    Q_OBJECT
  public:
    struct Services {
        UserDefaults& settings;
        const Theme& theme;
        Workspace& workspace;
        Dialogs& dialogs;
    };
    ManualWindow(const Services& services, QWidget* parent);
    ~ManualWindow() override;

    void present();
    /// The page by its name, "edit"; nothing happens when there is none.
    void showPage(const QString& name);
    [[nodiscard]] QString currentPage() const;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QToolButton* historyButton(const QString& icon, const QString& name, void (QTextBrowser::*go)(),
                               void (QTextBrowser::*available)(bool));
    void follow(const QUrl& link);
    void narrow();
    void markWords();
    void rememberFrame();
    [[nodiscard]] QStringList words() const;

    Services services_;
    // Children.
    QLineEdit* search_;
    QListWidget* list_;
    QTextBrowser* page_;
    QSplitter* split_;
};

}  // namespace dravik
