#include "ui/update_sheet.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextEdit>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::UpdateSheet)
};

constexpr int sheetWidth = 560;
constexpr int margin = 20;
constexpr int iconSide = 64;
/// Longer notes are scrolled.
constexpr int mostNotesHeight = 260;
constexpr int betweenParagraphs = 8;
constexpr int notesMargin = 8;

QLabel* line(const QString& text) {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel* title(const QString& text) {
    QLabel* label = line(text);
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.3);
    label->setFont(font);
    return label;
}

QTextEdit* notes(const QStringList& paragraphs) {
    auto* text = new QTextEdit;
    text->setObjectName(QStringLiteral("releaseNotes"));
    text->setAccessibleName(Texts::tr("Release notes"));
    text->setReadOnly(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setTabChangesFocus(true);
    text->document()->setDocumentMargin(notesMargin);
    QTextCursor cursor(text->document());
    QTextBlockFormat format;
    for (const QString& paragraph : paragraphs) {
        if (!cursor.atStart()) {
            format.setTopMargin(betweenParagraphs);
            cursor.insertBlock();
        }
        cursor.setBlockFormat(format);
        cursor.insertText(paragraph);
    }
    text->moveCursor(QTextCursor::Start);
    text->ensurePolished();
    text->document()->setTextWidth(sheetWidth - 2 * margin - 2 * text->frameWidth());
    const int height = static_cast<int>(std::ceil(text->document()->size().height())) + 2 * text->frameWidth();
    text->setMinimumHeight(std::min(height, mostNotesHeight));
    if (height <= mostNotesHeight) text->setMaximumHeight(height);
    return text;
}

}  // namespace

QDialog* makeUpdateSheet(const UpdatePresentation& presentation, std::function<void(const QString& url)> download,
                         QWidget* window) {
    auto* sheet = new QDialog(window, Qt::Sheet);
    sheet->setObjectName(QStringLiteral("updateSheet"));
    sheet->setWindowTitle(presentation.title);
    sheet->setAccessibleDescription(presentation.information.join(QLatin1Char('\n')));

    auto* icon = new QLabel;
    icon->setPixmap(QIcon(QStringLiteral(":/icons/dravik.svg")).pixmap(QSize(iconSide, iconSide)));
    auto* heading = new QVBoxLayout;
    heading->addWidget(title(presentation.title));
    heading->addSpacing(2);
    heading->setSpacing(4);
    for (const QString& information : presentation.information) {
        QLabel* label = line(information);
        label->setForegroundRole(QPalette::PlaceholderText);
        heading->addWidget(label);
    }
    heading->addStretch();
    auto* top = new QHBoxLayout;
    top->setSpacing(16);
    top->addWidget(icon, 0, Qt::AlignTop);
    top->addLayout(heading, 1);

    // The roles keep their order, whatever the desktop's habit.
    auto* buttons = new QDialogButtonBox;
    if (presentation.downloadURL) {
        QPushButton* button = buttons->addButton(presentation.downloadButton, QDialogButtonBox::ActionRole);
        QObject::connect(button, &QPushButton::clicked, sheet,
                         [sheet, download = std::move(download), url = *presentation.downloadURL] {
                             sheet->accept();
                             if (download) download(url);
                         });
    }
    QPushButton* close = buttons->addButton(presentation.closeButton, QDialogButtonBox::ActionRole);
    QObject::connect(close, &QPushButton::clicked, sheet, &QDialog::reject);

    auto* layout = new QVBoxLayout(sheet);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(14);
    layout->addLayout(top);
    if (!presentation.notes.isEmpty()) layout->addWidget(notes(presentation.notes), 1);
    layout->addWidget(buttons);
    auto* first = qobject_cast<QPushButton*>(buttons->buttons().constFirst());
    first->setDefault(true);
    // Not on a button: it comes unasked, and Space was meant to play.
    if (auto* text = sheet->findChild<QTextEdit*>()) {
        text->setFocus();
    } else {
        close->setFocus();
    }
    sheet->resize(sheetWidth,
                  layout->hasHeightForWidth() ? layout->heightForWidth(sheetWidth) : layout->sizeHint().height());
    return sheet;
}

}  // namespace dravik
