#include "ui/about_windows.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace dravik {
namespace {

struct Licence {
    const char* name;
    const char* use;
    const char* licence;
};
/// The libraries that the program is linked with or loads.
constexpr Licence licences[] = {
    {"Qt 6", "windows, settings, network", "LGPL 3"},
    {"FFmpeg (libavformat, libavcodec, libavutil)", "reading M4A", "LGPL 2.1 or later"},
    {"libsndfile", "reading AIFF, CAF, FLAC, MP3", "LGPL 2.1 or later"},
    {"utf8proc", "letter case of file names", "MIT"},
    {"{fmt}", "text formatting", "MIT"},
    {"spdlog", "logging", "MIT"},
};

/// Keys that stand in no menu.
constexpr std::pair<const char*, const char*> tableKeys[] = {
    {"Edit the cell", "F2, double click, or type"},
    {"Commit, go down", "Enter"},
    {"Commit, go up", "Shift+Enter"},
    {"Commit, next cell", "Tab"},
    {"Commit to all selected rows", "Ctrl+Enter"},
    {"Leave the cell as it was", "Escape"},
    {"Copy the column of the selection", "Ctrl+C"},
    {"Paste lines downwards", "Ctrl+V"},
    {"Toggle circled or wild", "Space in its column"},
};

QDialog* makeDialog(QWidget& parent, const QString& title, QWidget* content) {
    auto* dialog = new QDialog(&parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(title);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(dialog);
    layout->addWidget(content);
    layout->addWidget(buttons);
    return dialog;
}

QTextBrowser* page(const QString& html, const QString& name) {
    auto* text = new QTextBrowser;
    text->setAccessibleName(name);
    text->setFrameShape(QFrame::NoFrame);
    text->setHtml(html);
    return text;
}

QString row(const QString& left, const QString& right) {
    return QStringLiteral(
               "<tr><td width='260' style='padding:2px 24px 2px 0'>%1</td><td style='padding:2px 0'>%2</td></tr>")
        .arg(left.toHtmlEscaped(), right.toHtmlEscaped());
}

void addShortcuts(const QMenu& menu, QString& rows) {
    for (const QAction* action : menu.actions()) {
        if (action->menu() != nullptr) {
            addShortcuts(*action->menu(), rows);
        } else if (!action->shortcut().isEmpty()) {
            const QString name = action->data().toString();
            QString text = name.isEmpty() ? action->text() : name;
            rows += row(text.remove(QLatin1Char('&')), action->shortcut().toString(QKeySequence::NativeText));
        }
    }
}

}  // namespace

void showShortcuts(QWidget& parent) {
    QString html;
    if (const auto* window = qobject_cast<QMainWindow*>(&parent)) {
        for (const QAction* action : window->menuBar()->actions()) {
            QString rows;
            if (action->menu() != nullptr) addShortcuts(*action->menu(), rows);
            if (rows.isEmpty()) continue;
            QString title = action->text();
            html += QStringLiteral("<h4>%1</h4><table>%2</table>")
                        .arg(title.remove(QLatin1Char('&')).toHtmlEscaped(), rows);
        }
    }
    QString rows;
    for (const auto& [what, keys] : tableKeys)
        rows += row(QString::fromLatin1(what), QString::fromLatin1(keys));
    html += QStringLiteral("<h4>Take table</h4><table>%1</table>").arg(rows);
    QDialog* dialog =
        makeDialog(parent, QStringLiteral("Keyboard Shortcuts"), page(html, QStringLiteral("Keyboard shortcuts")));
    dialog->resize(460, 620);
    dialog->show();
}

void showAbout(QWidget& parent) {
    auto* content = new QLabel(
        QStringLiteral(
            "<h2>Dravik %1</h2><p>Metadata of production sound: see takes instead of files,<br>correct them, "
            "and lose nothing.</p>")
            .arg(QApplication::applicationVersion().toHtmlEscaped()));
    content->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* picture = new QLabel;
    picture->setPixmap(QIcon(QStringLiteral(":/icons/dravik.svg")).pixmap(QSize(64, 64)));
    auto* both = new QWidget;
    auto* layout = new QHBoxLayout(both);
    layout->addWidget(picture, 0, Qt::AlignTop);
    layout->addSpacing(12);
    layout->addWidget(content, 1);
    makeDialog(parent, QStringLiteral("About Dravik"), both)->open();
}

void showLicences(QWidget& parent) {
    QString rows;
    for (const Licence& one : licences) {
        rows += QStringLiteral("<tr><td style='padding:3px 20px 3px 0'><b>%1</b><br>%2</td><td>%3</td></tr>")
                    .arg(QString::fromLatin1(one.name).toHtmlEscaped(), QString::fromLatin1(one.use),
                         QString::fromLatin1(one.licence));
    }
    QDialog* dialog = makeDialog(
        parent, QStringLiteral("Third-Party Licenses"),
        page(QStringLiteral("<p>Dravik stands on these libraries, with thanks.</p><table>%1</table>").arg(rows),
             QStringLiteral("Third-party licenses")));
    dialog->resize(460, 360);
    dialog->show();
}

}  // namespace dravik
