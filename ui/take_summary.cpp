#include "ui/take_summary.h"

#include "app/text.h"
#include "base/paths.h"
#include "ui/list_looks.h"
#include "ui/metrics.h"

#include <QGridLayout>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

namespace dravik {

TakeSummary::TakeSummary(const ContentView& content, const Theme& theme, QWidget* parent)
    : QWidget(parent), content_(content), theme_(theme) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::fieldSpacing);
    auto* title = new QLabel(tr("Format"), this);
    title->setFont(metrics::smallFont(*title));
    captions_.push_back(title);
    layout->addWidget(title);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(1, 1);
    int row = 0;
    const auto line = [&](const QString& caption) {
        auto* name = new QLabel(caption, this);
        name->setFont(metrics::smallFont(*name));
        captions_.push_back(name);
        auto* value = new QLabel(this);
        value->setFont(metrics::smallFont(*value));
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        value->setAccessibleName(caption);
        grid->addWidget(name, row, 0);
        grid->addWidget(value, row++, 1);
        return value;
    };
    format_ = line(tr("Container"));
    duration_ = line(tr("Duration"));
    sampleRate_ = line(tr("Sample rate"));
    bits_ = line(tr("Bit depth"));
    trackCount_ = line(tr("Tracks"));
    date_ = line(tr("Recorded"));
    layout->addLayout(grid);
    files_ = new QPlainTextEdit(this);
    files_->setReadOnly(true);
    files_->setFrameShape(QFrame::NoFrame);
    files_->setLineWrapMode(QPlainTextEdit::NoWrap);
    files_->setTabChangesFocus(true);
    files_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    files_->setFont(metrics::smallFont(*files_));
    files_->setAccessibleName(tr("Files"));
    files_->viewport()->setAutoFillBackground(false);
    files_->document()->setDocumentMargin(0);
    files_->setMinimumHeight(30);
    layout->addSpacing(metrics::fieldSpacing);
    layout->addWidget(files_, 1);
    const QFontMetrics letters(metrics::smallFont(*this));
    int widest = 0;
    for (const QLabel* caption : captions_)
        widest = std::max(widest, letters.horizontalAdvance(caption->text()));
    setMinimumWidth(
        std::max(150, widest + grid->horizontalSpacing() + letters.horizontalAdvance(QStringLiteral("00:00:00.000"))));
    connect(&theme_, &Theme::changed, this, &TakeSummary::applyTheme);
    applyTheme();
}

void TakeSummary::refresh(const GroupeFichiers& groupe) {
    const AudioMetadata summary = content_.metadata().value_or(AudioMetadata{});
    format_->setText(toQt(summary.format));
    duration_->setText(toQt(summary.duree));
    sampleRate_->setText(toQt(summary.sampleRate));
    bits_->setText(summary.bitDepth.empty() ? QStringLiteral("–") : toQt(summary.bitDepth));
    trackCount_->setText(toQt(summary.nbPistes));
    const auto date = groupe.recordingDate();
    date_->setText(date ? toQt(formatRecordingDate(*date))
                   : groupe.recordingDateStatus() == GroupeFichiers::RecordingDateStatus::mixed ? tr("Mixed dates")
                                                                                                : tr("No date"));
    QStringList lines;
    for (const InfoFichier& fichier : groupe.fichiers)
        lines << toQt(fichier.url.filename());
    const QString folder = toQt(folderOf(groupe.fichiers.front().url));
    lines << tr("in %1").arg(inItsOwnDirection(folder, layoutDirection()));
    const QString text = lines.join(QLatin1Char('\n'));
    if (files_->toPlainText() != text) files_->setPlainText(text);
    files_->setToolTip(text);
}

void TakeSummary::scrollToTop() { files_->verticalScrollBar()->setValue(0); }

void TakeSummary::applyTheme() {
    QPalette palette;
    palette.setColor(QPalette::WindowText, theme_.dimmed());
    for (QLabel* caption : captions_)
        caption->setPalette(palette);
}

}  // namespace dravik
