#include "ui/about_windows.h"

#include "app/text.h"
#include "base/build_info.h"
#include "ui/shortcuts.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <functional>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::AboutWindows)
};

struct Licence {
    const char* name;
    const char* use;
    const char* licence;  ///< by its own name, in every language
};
/// The libraries that the program is linked with or loads.
constexpr Licence licences[] = {
    {"Qt 6", QT_TRANSLATE_NOOP("dravik::AboutWindows", "windows, settings, network"), "LGPL 3"},
    {"FFmpeg (libavformat, libavcodec, libavutil)",
     QT_TRANSLATE_NOOP("dravik::AboutWindows", "reading and writing M4A"), "LGPL 2.1+"},
    {"libsndfile", QT_TRANSLATE_NOOP("dravik::AboutWindows", "reading AIFF, CAF, FLAC"), "LGPL 2.1+"},
    {"mpg123", QT_TRANSLATE_NOOP("dravik::AboutWindows", "reading MP3"), "LGPL 2.1"},
    {"LAME", QT_TRANSLATE_NOOP("dravik::AboutWindows", "writing MP3"), "LGPL 2+"},
    {"SoX Resampler", QT_TRANSLATE_NOOP("dravik::AboutWindows", "sample rates"), "LGPL 2.1+"},
    {"SDL 2", QT_TRANSLATE_NOOP("dravik::AboutWindows", "audio output"), "zlib"},
    {"utf8proc", QT_TRANSLATE_NOOP("dravik::AboutWindows", "letter case of file names"), "MIT"},
    {"{fmt}", QT_TRANSLATE_NOOP("dravik::AboutWindows", "text formatting"), "MIT"},
    {"spdlog", QT_TRANSLATE_NOOP("dravik::AboutWindows", "logging"), "MIT"},
    {"nlohmann-json", QT_TRANSLATE_NOOP("dravik::AboutWindows", "reading what the update server says"), "MIT"},
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

/// The groups of the shortcuts from one on, as long as `belongs` says so.
QString shortcutGroups(int nameWidth, const std::function<bool(const Shortcut&)>& belongs) {
    QString html;
    QString group;
    for (const Shortcut& one : shortcuts()) {
        if (!belongs(one)) continue;
        if (one.group() != group) {
            html += QStringLiteral("%1<h4 style='margin:%2px 0 4px 0'>%3</h4><table width='100%'>")
                        .arg(group.isEmpty() ? QString() : QStringLiteral("</table>"),
                             group.isEmpty() ? QStringLiteral("0") : QStringLiteral("14"), one.group().toHtmlEscaped());
            group = one.group();
        }
        QString name = one.name();
        html += QStringLiteral(
                    "<tr><td width='%3' style='padding:2px 16px 2px 0'>%1</td>"
                    "<td style='padding:2px 0'>%2</td></tr>")
                    .arg(name.remove(QStringLiteral("...")).toHtmlEscaped(), keysText(one).toHtmlEscaped())
                    .arg(nameWidth);
    }
    return html + QStringLiteral("</table>");
}

}  // namespace

void showShortcuts(QWidget& parent) {
    const auto left = [](const Shortcut& one) {
        return one.context == KeyContext::window || one.context == KeyContext::browser;
    };
    const QString html =
        QStringLiteral(
            "<table width='100%'><tr><td width='40%' style='padding-right:28px'>%1</td><td>%2</td></tr></table>")
            .arg(shortcutGroups(170, left), shortcutGroups(230, [&](const Shortcut& one) { return !left(one); }));
    QDialog* dialog = makeDialog(parent, Texts::tr("Keyboard Shortcuts"), page(html, Texts::tr("Keyboard shortcuts")));
    dialog->setObjectName(QStringLiteral("shortcuts"));
    dialog->resize(880, 680);
    dialog->show();
}

void showAbout(QWidget& parent) {
    auto* content = new QLabel(
        Texts::tr("<h2>Dravik %1</h2><p>Build %2, commit %3</p><p>Metadata of production sound: see takes instead of "
                  "files,<br>correct them, and lose nothing.</p>")
            .arg(toQt(buildInfo().version), toQt(buildInfo().build), toQt(buildInfo().commit)));
    content->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* picture = new QLabel;
    picture->setPixmap(QIcon(QStringLiteral(":/icons/dravik.svg")).pixmap(QSize(64, 64)));
    auto* both = new QWidget;
    auto* layout = new QHBoxLayout(both);
    layout->addWidget(picture, 0, Qt::AlignTop);
    layout->addSpacing(12);
    layout->addWidget(content, 1);
    makeDialog(parent, Texts::tr("About Dravik"), both)->open();
}

void showLicences(QWidget& parent) {
    QString rows;
    for (const Licence& one : licences) {
        rows += QStringLiteral(
                    "<tr><td style='padding:3px 20px 3px 0'><b>%1</b><br>%2</td><td style='padding:3px 0'>%3</td></tr>")
                    .arg(QString::fromLatin1(one.name).toHtmlEscaped(), Texts::tr(one.use).toHtmlEscaped(),
                         QString::fromLatin1(one.licence).toHtmlEscaped());
    }
    QDialog* dialog = makeDialog(parent, Texts::tr("Third-Party Licenses"),
                                 page(QStringLiteral("<p style='margin-bottom:10px'>%1</p><table>%2</table>")
                                          .arg(Texts::tr("Dravik stands on these libraries, with thanks."), rows),
                                      Texts::tr("Third-party licenses")));
    dialog->resize(460, 360);
    dialog->show();
}

}  // namespace dravik
