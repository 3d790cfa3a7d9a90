#include "app/update_presentation.h"

#include "app/text.h"
#include "update/update_check_error.h"

#include <QCoreApplication>
#include <QDate>
#include <QLocale>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::UpdatePresentation)
};

// What is longer was not written to be read in a sheet.
constexpr qsizetype longestWord = 40;
constexpr qsizetype longestNote = 2000;
constexpr std::size_t mostNotes = 100;

/// Characters that turn the direction of what stands around them.
bool turnsText(char16_t c) {
    return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0x200E || c == 0x200F || c == 0x061C;
}

QString plain(const std::string& text, qsizetype limit) {
    QString shown;
    for (const QChar c : toQt(text)) {
        if (c.isSpace()) {
            shown += QLatin1Char(' ');
        } else if (c.category() != QChar::Other_Control && !turnsText(c.unicode())) {
            shown += c;
        }
    }
    shown = shown.simplified();
    const bool cutsACharacter = shown.size() > limit && shown.at(limit - 1).isHighSurrogate();
    return shortened(shown, cutsACharacter ? limit - 1 : limit);
}

QStringList paragraphs(const std::vector<std::string>& notes) {
    QStringList shown;
    for (const std::string& note : notes) {
        if (shown.size() == static_cast<qsizetype>(mostNotes)) {
            shown << QString(QChar(0x2026));
            break;
        }
        if (const QString text = plain(note, longestNote); !text.isEmpty()) shown << text;
    }
    return shown;
}

QString dateText(const std::string& date) {
    const QDate day = QDate::fromString(toQt(date), QStringLiteral("yyyy-MM-dd"));
    if (!day.isValid()) return plain(date, longestWord);
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(day, QStringLiteral("MMMM d, yyyy"));
}

QString installedLine(const InstalledAppVersion& installed) {
    return Texts::tr("You are currently using version %1 (Build %2)")
        .arg(plain(installed.version, longestWord), QString::number(installed.build));
}

QString systemLine(const RunningSystem& system) {
    if (system.macOS) {
        return Texts::tr("This Mac is currently running macOS %1")
            .arg(toQt(formatOperatingSystemVersion(*system.macOS)));
    }
    return Texts::tr("This computer is currently running %1").arg(system.name);
}

}  // namespace

UpdatePresentation presentationOf(const UpdateAvailable& update, const InstalledAppVersion& installed,
                                  const RunningSystem& system) {
    const UpdateInfo& info = update.info;
    const QString version = plain(info.version, longestWord);
    UpdatePresentation shown;
    if (update.isCompatibleWithCurrentMac) {
        shown.title = Texts::tr("Dravik %1 is available").arg(version);
        shown.downloadURL = toQt(info.downloadURL);
        shown.downloadButton = Texts::tr("Download Update");
        shown.closeButton = Texts::tr("Later");
    } else {
        const QString minimum = plain(info.minimumMacOS, longestWord);
        shown.title = Texts::tr("Dravik %1 requires macOS %2 or later.")
                          .arg(version, minimum.isEmpty() ? Texts::tr("the required macOS version") : minimum);
        shown.closeButton = Texts::tr("OK");
    }
    shown.information << installedLine(installed) << systemLine(system)
                      << Texts::tr("Released %1").arg(dateText(info.releaseDate));
    shown.notes = paragraphs(info.releaseNotes);
    return shown;
}

UpdatePresentation whatsNewPresentation(const Bundle& bundle, const std::vector<std::string>& notes) {
    UpdatePresentation shown;
    InstalledAppVersion installed{bundle.shortVersion.value_or("Unknown"), 0};
    try {
        installed = installedAppVersion(bundle);
        shown.information << installedLine(installed);
    } catch (const UpdateCheckError&) {
        // The title says as much as is known.
    }
    shown.title = Texts::tr("What's New in Dravik %1").arg(plain(installed.version, longestWord));
    shown.notes = paragraphs(notes);
    shown.closeButton = Texts::tr("OK");
    return shown;
}

}  // namespace dravik
