#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <filesystem>
#include <functional>
#include <optional>

namespace dravik {

/// A question or a message.
struct Alert {
    QString title;
    QString text;
    QStringList buttons;       ///< in their order; the first is the default one
    int cancelButton = -1;     ///< what Escape and closing the dialog mean; -1 for the last button
    QString checkBox;          ///< text of a check box below; empty for none
    bool destructive = false;  ///< the first button destroys something: Return does not press it
};

struct AlertAnswer {
    int button = 0;  ///< index into the alert's buttons
    bool checked = false;
};

/// A question for one line of text.
struct TextQuestion {
    QString title;
    QString label;
    QString text;  ///< what the field holds at first
    QString hint;  ///< below the field
    QString accept = QCoreApplication::translate("dravik::Dialogs", "OK");
};

/// A panel that chooses one file or one folder.
struct OpenPanel {
    QString title;
    QString prompt;  ///< text of the button that accepts
    bool folders = false;
    std::filesystem::path start;
    QStringList nameFilters;  ///< "*.wav" …; empty for all
};

/// How the controllers ask. Each call returns at once; the answer comes later, on the main thread, exactly once.
/// One dialog at a time: a question asked while another is open waits for it.
class Dialogs {
  public:
    virtual ~Dialogs() = default;
    virtual void ask(const Alert& alert, std::function<void(AlertAnswer)> answered) = 0;
    /// Absent when it was cancelled.
    virtual void askText(const TextQuestion& question, std::function<void(std::optional<QString>)> answered) = 0;
    virtual void choose(const OpenPanel& panel, std::function<void(std::optional<std::filesystem::path>)> chosen) = 0;

  protected:
    Dialogs() = default;
    Dialogs(const Dialogs&) = default;
    Dialogs& operator=(const Dialogs&) = default;
};

/// Tells what went wrong, with an "OK" button.
void showError(Dialogs& dialogs, const QString& title, const QString& text);

}  // namespace dravik
