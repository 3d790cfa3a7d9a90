#include "app/text.h"
#include "operations/batch_rename_plan.h"
#include "operations/rename_pattern.h"
#include "report/generateur_rapport.h"
#include "report/report_form.h"
#include "report/sound_report_columns.h"
#include "tests/ui/all_windows.h"
#include "tests/ui/window_texts.h"
#include "ui/manual_pages.h"

#include <QFile>
#include <QSet>
#include <QToolButton>
#include <QTranslator>
#include <QXmlStreamReader>
#include <algorithm>
#include <cmath>
#include <mutex>
#include <set>

#include <gmock/gmock.h>

namespace dravik {
namespace {

/// Context and source text of everything in the English catalogue.
std::set<std::pair<QString, QString>> catalogue() {
    QFile file(QStringLiteral(DRAVIK_CATALOGUE));
    if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("there is no catalogue of the texts");
    std::set<std::pair<QString, QString>> all;
    QXmlStreamReader xml(&file);
    for (QString context; !xml.atEnd(); xml.readNext()) {
        if (!xml.isStartElement()) continue;
        if (xml.name() == QLatin1String("name")) context = xml.readElementText();
        if (xml.name() == QLatin1String("source")) all.emplace(context, xml.readElementText());
    }
    return all;
}

/// A language in which every text is the English one in brackets, or, with a growth, that much longer.
class Brackets final : public QTranslator {
  public:
    explicit Brackets(double growth = 0) : growth_(growth) {}

    QString translate(const char* context, const char* text, const char*, int) const override {
        const QString of = QString::fromUtf8(context), source = QString::fromUtf8(text);
        // That is no text, but which way they are written.
        if (source == QLatin1String("QT_LAYOUT_DIRECTION")) return {};
        const bool isOurs = of.startsWith(QLatin1String("dravik"));
        if (isOurs && !catalogue_.contains({of, source})) {
            const std::lock_guard lock(mutex_);  // previews are worked out in the background
            unlisted_.insert(of + QStringLiteral(": ") + source);
        }
        if (growth_ == 0) return QLatin1Char('[') + source + QLatin1Char(']');
        const auto more = static_cast<qsizetype>(std::lround(growth_ * static_cast<double>(source.size())));
        return source + QString(more, QLatin1Char('~'));
    }
    [[nodiscard]] bool isEmpty() const override { return false; }
    /// What was asked for under another name than it is listed under.
    [[nodiscard]] const std::set<QString>& unlisted() const { return unlisted_; }

  private:
    const double growth_;
    const std::set<std::pair<QString, QString>> catalogue_ = catalogue();
    mutable std::mutex mutex_;
    mutable std::set<QString> unlisted_;
};

/// Before the windows are made.
struct InBrackets {
    explicit InBrackets(double growth = 0) : language(growth) { QCoreApplication::installTranslator(&language); }
    ~InBrackets() { QCoreApplication::removeTranslator(&language); }
    InBrackets(const InBrackets&) = delete;
    InBrackets& operator=(const InBrackets&) = delete;
    Brackets language;
};

/// What is left of the text without all that stands in brackets.
QString outside(const QString& text) {
    QString left;
    int depth = 0;
    for (const QChar one : text) {
        if (one == QLatin1Char('[')) ++depth;
        if (depth == 0) left += one;
        if (one == QLatin1Char(']') && depth > 0) --depth;
    }
    return left;
}

/// Words that no language changes: units, names of formats, libraries and the like, and what users have written.
bool isData(const QString& word) {
    static const QSet<QString> known = {
        QStringLiteral("dB"),        QStringLiteral("dBFS"),       QStringLiteral("kHz"),
        QStringLiteral("MB"),        QStringLiteral("KB"),         QStringLiteral("WAV"),
        QStringLiteral("wav"),       QStringLiteral("AAC"),        QStringLiteral("AIF"),
        QStringLiteral("PDF"),       QStringLiteral("CSV"),        QStringLiteral("DF"),
        QStringLiteral("MS"),        QStringLiteral("HH"),         QStringLiteral("MM"),
        QStringLiteral("SS"),        QStringLiteral("FF"),         QStringLiteral("Dravik"),
        QStringLiteral("Qt"),        QStringLiteral("FFmpeg"),     QStringLiteral("fmt"),
        QStringLiteral("spdlog"),    QStringLiteral("libavcodec"), QStringLiteral("libavformat"),
        QStringLiteral("libavutil"), QStringLiteral("libsndfile"), QStringLiteral("nlohmann"),
        QStringLiteral("json"),      QStringLiteral("LGPL"),       QStringLiteral("MIT"),
        QStringLiteral("zlib"),      QStringLiteral("LAME"),       QStringLiteral("SoX"),
        QStringLiteral("Resampler"), QStringLiteral("SDL")};
    // As in "12B" and "utf8proc"; the letters of channels and keys.
    const bool hasDigit = std::any_of(word.begin(), word.end(), [](QChar one) { return one.isDigit(); });
    return word.size() == 1 || hasDigit || word.startsWith(QLatin1String("zz")) || known.contains(word);
}

/// What the engine says, whose sentences are English, and what the pictures have made up. Whole texts, so that a label
/// of the same word is still found elsewhere.
bool isOfTheEngine(const QString& where, const QString& text) {
    static const QSet<QString> sentences = [] {
        QSet<QString> all = {
            toQt(noDestinationSelected),
            toQt(toBeRenamedText(5)),
            QStringLiteral("Plane over the end of the take"),
            QStringLiteral("Identity mapping — no output created."),
            QStringLiteral("Scene _ Take _ Track Name"),
            QStringLiteral("The export exceeds the integer PCM range; no clipped file was created."),
            QStringLiteral(
                "12-T01.WAV could not be written: there is no room left on the volume. The file is as it was.")};
        for (const char* take : {"12-T01", "12-T02", "12-T03"})
            all << QStringLiteral("Created %1_export.wav").arg(QLatin1String(take));
        return all;
    }();
    static const QSet<QString> labels = [] {
        QSet<QString> all;
        for (const PaletteRenommage one : allPaletteRenommage)
            all << toQt(label(one)) << toQt(shortLabel(one));
        for (const auto mode :
             {OperationAudioBatchRenameMode::renameInPlace, OperationAudioBatchRenameMode::copyAndRename})
            all << toQt(label(mode)).replace(QLatin1Char('&'), QLatin1String("&&"));
        for (const ReportColumnInfo& column : optionalColumns())
            all << toQt(column.title);
        for (const std::string_view depth : bitDepthChoices)
            all << toQt(depth);
        return all << toQt(titleOf(ReportColumn::fileName));
    }();
    const bool isBitDepth = where.startsWith(QLatin1String("main")) && text == toQt(bitDepthChoices[1]);
    return sentences.contains(text) || isBitDepth ||
           (where.startsWith(QLatin1String("operations")) && labels.contains(text));
}

/// A page of the manual, which is written in English, or its title.
bool isOfTheManual(const QString& where, const QString& text) {
    return where.startsWith(QLatin1String("manual")) &&
           std::any_of(manualPages().begin(), manualPages().end(),
                       [&](const ManualPage& page) { return text.startsWith(page.title); });
}

/// What the text says that is neither translated nor data.
QStringList untranslated(const QString& where, const QString& text) {
    QString plain = outside(text);
    if (isOfTheEngine(where, plain.trimmed()) || isOfTheManual(where, text)) return {};
    if (const qsizetype behind = plain.lastIndexOf(QStringLiteral(" — ")); behind >= 0) {
        if (isOfTheEngine(where, plain.mid(behind + 3))) plain.truncate(behind);
    }
    for (qsizetype from = 0; (from = plain.indexOf(QLatin1Char('<'), from)) >= 0;) {
        const qsizetype to = plain.indexOf(QLatin1Char('>'), from);
        plain.remove(from, to < 0 ? plain.size() : to - from + 1);
    }
    QStringList words;
    QString word;
    for (const QChar one : plain + QLatin1Char(' ')) {
        if (one.isLetterOrNumber() || one == QLatin1Char('_')) {
            word += one;
            continue;
        }
        const bool hasLetter = std::any_of(word.begin(), word.end(), [](QChar part) { return part.isLetter(); });
        if (hasLetter && !isData(word)) words << word;
        word.clear();
    }
    return words;
}

class Language : public testing::Test, public InBrackets, public test::AllWindows {};

TEST_F(Language, NoWindowSaysAnythingThatWasNotTranslated) {
    std::set<QString> told;
    EXPECT_TRUE(visit([&](QWidget& one, const QString& name) {
        test::visitTexts(one, name, [&](const QString& where, const QString& text) {
            const QString shownText = QString(text).remove(toQt(folder.path()));
            const QStringList words = untranslated(where, shownText);
            if (!words.isEmpty() && told.insert(shownText).second)
                ADD_FAILURE() << where.toStdString() << " says “" << shownText.toStdString() << "”, in which “"
                              << words.join(QLatin1Char(' ')).toStdString() << "” is not translated";
        });
        return true;
    }));
    for (const QString& text : language.unlisted())
        ADD_FAILURE() << "not in the catalogue: " << text.toStdString();
}

/// Other languages need about a third more letters than English.
struct InLongBrackets : InBrackets {
    InLongBrackets() : InBrackets(0.3) {}
};

class LongLanguage : public testing::Test, public InLongBrackets, public test::AllWindows {};

/// Does the widget show less of its text than there is? What wraps or ends with an ellipsis does so on purpose.
bool isCut(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        return !label->wordWrap() && label->sizePolicy().horizontalPolicy() != QSizePolicy::Ignored &&
               label->sizeHint().width() > label->width();
    }
    const auto* tool = qobject_cast<const QToolButton*>(&widget);
    if (tool != nullptr && tool->toolButtonStyle() == Qt::ToolButtonIconOnly && !tool->icon().isNull()) return false;
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    return button != nullptr &&
           button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width() > button->width();
}

TEST_F(LongLanguage, TextsThatAreAThirdLongerStillHaveTheirRoom) {
    std::set<QString> told;
    const QString pictures = qEnvironmentVariable("DRAVIK_LONG_PICTURES");
    EXPECT_TRUE(visit([&](QWidget& one, const QString& name) {
        if (!pictures.isEmpty()) one.grab().save(pictures + QLatin1Char('/') + name + QStringLiteral(".png"));
        for (const QWidget* part : one.findChildren<QWidget*>()) {
            if (part->window() != &one || !part->isVisible() || !isCut(*part)) continue;
            const auto* button = qobject_cast<const QAbstractButton*>(part);
            const auto* label = qobject_cast<const QLabel*>(part);
            const QString text = button != nullptr ? button->text() : label->text();
            if (told.insert(text).second)
                ADD_FAILURE() << name.toStdString() << ": " << part->metaObject()->className() << " in "
                              << part->parentWidget()->metaObject()->className() << " " << part->width() << " of "
                              << part->sizeHint().width() << ": " << text.toStdString();
        }
        return true;
    }));
}

}  // namespace
}  // namespace dravik
