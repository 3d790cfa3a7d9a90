#include "ui/operations/operation_overlay.h"

#include "app/text.h"
#include "ui/colours.h"
#include "ui/list_looks.h"
#include "ui/metrics.h"
#include "ui/operations/elided_label.h"
#include "ui/operations/row_delegate.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace dravik {
namespace {

constexpr int cardWidth = 560;
constexpr int cardMargin = 20;
constexpr int leastGap = 24;  ///< between the card and the edges of what is covered
constexpr int signSide = 28;
constexpr int titleSize = 16;
constexpr int sourceWidth = 190;  ///< of the column with names, at most
constexpr int progressSteps = 1000;
constexpr int mostListLines = 9;  ///< of results, before the list scrolls

std::optional<std::filesystem::path> fileOf(const OperationAudioResult& result) {
    if (result.destinationURL) return result.destinationURL;
    if (!result.destinationURLs.empty()) return result.destinationURLs.front();
    return std::nullopt;
}

/// What a run came to, in a drawing and a colour: it must be seen without colours, too.
struct Sign {
    const char* icon;
    QColor colour;
};
Sign signOf(const OperationCompletionInfo& info, const Theme& theme) {
    using Ending = OperationCompletionInfo::Ending;
    switch (info.ending()) {
        case Ending::done:
            return {"done", theme.success()};
        case Ending::partly:
            return {"warning", theme.error()};
        case Ending::failed:
            return {"failed", theme.error()};
        case Ending::cancelled:
            break;
    }
    return {"stopped", theme.dimmed()};
}

QPixmap tinted(const QIcon& icon, const QColor& colour, const QWidget& widget) {
    QPixmap drawn = icon.pixmap(QSize(signSide, signSide), widget.devicePixelRatioF());
    QPainter painter(&drawn);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(drawn.rect(), colour);
    return drawn;
}

}  // namespace

/// One line a result; those that failed first.
class OperationResultsModel final : public QAbstractTableModel {
  public:
    enum Column { source, message };
    OperationResultsModel(const Theme& theme, QObject* parent) : QAbstractTableModel(parent), theme_(theme) {}

    void show(std::vector<OperationAudioResult> results) {
        beginResetModel();
        results_ = std::move(results);
        std::stable_partition(results_.begin(), results_.end(),
                              [](const OperationAudioResult& one) { return !one.success; });
        endResetModel();
    }
    [[nodiscard]] const std::vector<OperationAudioResult>& results() const noexcept { return results_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(results_.size());
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 2; }
    [[nodiscard]] QVariant data(const QModelIndex& at, int role) const override {
        const OperationAudioResult& result = results_.at(static_cast<std::size_t>(at.row()));
        const QString text = toQt(at.column() == source ? result.sourceName : result.message);
        switch (role) {
            case Qt::DisplayRole: {
                // An error may go over several lines.
                return shortened(text, longestCellText).simplified();
            }
            case Qt::ToolTipRole:
                return text;
            case Qt::DecorationRole:
                if (at.column() != source) return {};
                return theme_.icon(result.success ? QStringLiteral("done") : QStringLiteral("failed"));
            case Qt::ForegroundRole:
                return result.success || at.column() == source ? QVariant() : QVariant(theme_.error());
            case Qt::AccessibleTextRole:
                if (at.column() == message) return text;
                return QStringLiteral("%1, %2").arg(
                    text, result.success ? OperationOverlay::tr("succeeded") : OperationOverlay::tr("failed"));
            default:
                return {};
        }
    }

  private:
    const Theme& theme_;
    std::vector<OperationAudioResult> results_;
};

OperationOverlay::OperationOverlay(const Theme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme), card_(new QWidget(this)), pages_(new QStackedWidget(card_)) {
    setFocusPolicy(Qt::ClickFocus);
    setCursor(Qt::ArrowCursor);
    card_->setObjectName(QStringLiteral("card"));
    pages_->addWidget(makeWorking());
    pages_->addWidget(makeResult());
    auto* layout = new QVBoxLayout(card_);
    layout->setContentsMargins(cardMargin, cardMargin, cardMargin, cardMargin);
    layout->addWidget(pages_);
    parent->installEventFilter(this);
    card_->installEventFilter(this);
    connect(&theme_, &Theme::changed, this, &OperationOverlay::applyTheme);
    hide();
    applyTheme();
}

QWidget* OperationOverlay::makeWorking() {
    auto* page = new QWidget(pages_);
    message_ = new QLabel(page);
    fileName_ = new ElidedLabel(page);
    remaining_ = new QLabel(page);
    bar_ = new QProgressBar(page);
    bar_->setTextVisible(false);
    bar_->setAccessibleName(tr("Progress"));
    cancel_ = new QPushButton(tr("Cancel"), page);
    cancel_->setAutoDefault(false);
    connect(cancel_, &QPushButton::clicked, this, &OperationOverlay::cancelRequested);
    for (QLabel* told : std::initializer_list<QLabel*>{fileName_, remaining_})
        told->setForegroundRole(QPalette::PlaceholderText);

    auto* below = new QHBoxLayout;
    below->addWidget(fileName_, 1);
    below->addWidget(remaining_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancel_);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::panelMargin);
    layout->addWidget(message_);
    layout->addWidget(bar_);
    layout->addLayout(below);
    layout->addSpacing(metrics::panelMargin);
    layout->addLayout(buttons);
    return page;
}

QWidget* OperationOverlay::makeResult() {
    auto* page = new QWidget(pages_);
    sign_ = new QLabel(page);
    title_ = new QLabel(page);
    successMessage_ = new QLabel(page);
    successMessage_->setWordWrap(true);
    successMessage_->setTextFormat(Qt::PlainText);
    successMessage_->setForegroundRole(QPalette::PlaceholderText);
    model_ = new OperationResultsModel(theme_, this);
    results_ = new QTableView(page);
    results_->setModel(model_);
    makeDense(*results_, theme_, tr("Results"), {sourceWidth});
    results_->setItemDelegate(new RowDelegate(OperationResultsModel::message, this));
    results_->horizontalHeader()->hide();
    results_->setFrameShape(QFrame::StyledPanel);
    results_->setIconSize({metrics::iconSide, metrics::iconSide});
    results_->setTextElideMode(Qt::ElideMiddle);
    results_->installEventFilter(this);
    connect(results_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &OperationOverlay::showReveal);

    reveal_ = new QPushButton(tr("Reveal"), page);
    reveal_->setAutoDefault(false);
    reveal_->setToolTip(tr("Show the file in the file browser"));
    connect(reveal_, &QPushButton::clicked, this, [this] {
        if (const auto file = fileToReveal()) emit revealRequested(*file);
    });
    ok_ = new QPushButton(tr("OK"), page);
    ok_->setDefault(true);
    connect(ok_, &QPushButton::clicked, this, &OperationOverlay::dismissed);

    auto* head = new QHBoxLayout;
    head->setSpacing(metrics::panelMargin + 2);
    head->addWidget(sign_);
    head->addWidget(title_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(reveal_);
    buttons->addStretch();
    buttons->addWidget(ok_);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::panelMargin);
    layout->addLayout(head);
    layout->addWidget(successMessage_);
    layout->addWidget(results_, 1);
    layout->addSpacing(metrics::fieldSpacing);
    layout->addLayout(buttons);
    return page;
}

void OperationOverlay::setState(const std::optional<OperationStatusOverlayState>& state) {
    const bool wasShown = state_.has_value();
    const bool wasWorking = wasShown && std::holds_alternative<OperationWorking>(*state_);
    state_ = state;
    if (!state_) {
        if (!wasShown) return;
        hide();
        if (focusedBefore_) focusedBefore_->setFocus(Qt::OtherFocusReason);
        return;
    }
    if (!wasShown) focusedBefore_ = window()->focusWidget();
    if (const auto* working = std::get_if<OperationWorking>(&*state_)) {
        showWorking(*working);
        if (!wasShown || !wasWorking) cancel_->setFocus(Qt::TabFocusReason);
    } else {
        showResult(std::get<OperationCompletionInfo>(*state_));
        if (!wasShown || wasWorking) ok_->setFocus(Qt::TabFocusReason);
    }
    cover();
    if (!wasShown) {
        raise();
        show();
        // A widget that is not seen does not get the keyboard.
        (std::holds_alternative<OperationWorking>(*state_) ? cancel_ : ok_)->setFocus(Qt::TabFocusReason);
    }
}

void OperationOverlay::showWorking(const OperationWorking& working) {
    pages_->setCurrentIndex(0);
    message_->setText(working.message);
    fileName_->show(working.fileName);
    remaining_->setText(working.remaining);
    if (working.fraction) {
        bar_->setRange(0, progressSteps);
        bar_->setValue(static_cast<int>(std::lround(std::clamp(*working.fraction, 0.0, 1.0) * progressSteps)));
    } else {
        bar_->setRange(0, 0);
    }
    cancel_->setText(working.cancelling ? tr("Cancelling…") : tr("Cancel"));
    cancel_->setAccessibleName(cancel_->text());
    if (working.cancelling && cancel_->hasFocus()) setFocus();  // no other has keys meanwhile
    cancel_->setEnabled(!working.cancelling);
    setAccessibleName(working.message);
}

void OperationOverlay::showResult(const OperationCompletionInfo& info) {
    pages_->setCurrentIndex(1);
    title_->setText(info.title());
    setAccessibleName(info.title());
    const QString text = info.summary();
    successMessage_->setText(text);
    successMessage_->setVisible(!text.isEmpty());
    model_->show(info.results);
    results_->setVisible(!info.results.empty());
    const int lines = std::min(mostListLines, model_->rowCount());
    // The message has more to say than the name.
    results_->resizeColumnToContents(OperationResultsModel::source);
    results_->setColumnWidth(OperationResultsModel::source,
                             std::min(results_->columnWidth(OperationResultsModel::source), sourceWidth));
    results_->setFixedHeight(lines * metrics::rowHeight + 2 * results_->frameWidth());
    showReveal();
    applyTheme();
}

void OperationOverlay::cover() {
    const QRect all = parentWidget()->rect();
    setGeometry(all);
    const int width = std::min(cardWidth, all.width() - 2 * leastGap);
    QWidget* page = pages_->currentWidget();
    const int inner = width - 2 * cardMargin;
    page->layout()->invalidate();  // what it shows has just changed
    const int wanted =
        page->layout()->hasHeightForWidth() ? page->layout()->heightForWidth(inner) : page->sizeHint().height();
    const int height = std::min(wanted + 2 * cardMargin, all.height() - leastGap);
    // Somewhat above the middle, where dialogs are looked for.
    card_->setGeometry((all.width() - width) / 2, std::max(leastGap / 2, (all.height() - height) * 2 / 5), width,
                       height);
    update();
}

std::optional<std::filesystem::path> OperationOverlay::fileToReveal() const {
    const QModelIndexList selected = results_->selectionModel()->selectedRows();
    for (const QModelIndex& row : selected) {
        if (auto file = fileOf(model_->results()[static_cast<std::size_t>(row.row())])) return file;
    }
    if (!selected.isEmpty()) return std::nullopt;
    for (const OperationAudioResult& result : model_->results()) {
        if (auto file = fileOf(result)) return file;
    }
    return std::nullopt;
}

void OperationOverlay::showReveal() { reveal_->setEnabled(fileToReveal().has_value()); }

void OperationOverlay::copySelected() {
    QModelIndexList rows = results_->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    QStringList lines;
    for (const QModelIndex& row : rows) {
        const OperationAudioResult& result = model_->results()[static_cast<std::size_t>(row.row())];
        lines << toQt(result.sourceName) + QLatin1Char('\t') + toQt(result.message);
    }
    if (!lines.isEmpty()) QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void OperationOverlay::applyTheme() {
    QFont large = font();
    large.setPixelSize(titleSize);
    large.setBold(true);
    for (QLabel* one : {title_, message_})
        one->setFont(large);
    results_->viewport()->update();
    if (!state_ || !std::holds_alternative<OperationCompletionInfo>(*state_)) return;
    const Sign sign = signOf(std::get<OperationCompletionInfo>(*state_), theme_);
    const QColor ground = QApplication::palette().color(QPalette::Window);
    sign_->setPixmap(tinted(theme_.icon(QString::fromLatin1(sign.icon)), legibleOn(ground, sign.colour), *this));
}

void OperationOverlay::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QColor veil = palette().color(QPalette::Window);
    veil.setAlphaF(0.72F);
    painter.fillRect(rect(), veil);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    // A shadow, so that the card is seen to lie above.
    constexpr int shadow = 14;
    for (int spread = shadow; spread > 0; spread -= 2) {
        painter.setBrush(QColor(0, 0, 0, theme_.isDark() ? 20 : 5));
        painter.drawRoundedRect(QRectF(card_->geometry()).adjusted(-spread, -spread + 3, spread, spread + 3),
                                8 + spread, 8 + spread);
    }
    painter.setBrush(palette().color(QPalette::Window));
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.drawRoundedRect(QRectF(card_->geometry()).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
}

void OperationOverlay::keyPressEvent(QKeyEvent* event) {
    event->accept();  // nothing of it is for what lies below
    if (!state_) return;
    const auto* working = std::get_if<OperationWorking>(&*state_);
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (working != nullptr) {
        if (event->key() == Qt::Key_Escape && !working->cancelling) emit cancelRequested();
    } else if (event->key() == Qt::Key_Escape || enters) {
        emit dismissed();
    }
}

bool OperationOverlay::focusNextPrevChild(bool next) {
    std::vector<QWidget*> stops;
    for (QWidget* stop : std::initializer_list<QWidget*>{cancel_, results_, reveal_, ok_}) {
        if (stop->isVisible() && stop->isEnabled()) stops.push_back(stop);
    }
    if (stops.empty()) return true;
    const auto now = std::find(stops.begin(), stops.end(), focusWidget());
    const auto count = static_cast<std::ptrdiff_t>(stops.size());
    const std::ptrdiff_t place = now == stops.end() ? (next ? -1 : count) : now - stops.begin();
    stops[static_cast<std::size_t>((place + (next ? 1 : -1) + count) % count)]->setFocus(next ? Qt::TabFocusReason
                                                                                              : Qt::BacktabFocusReason);
    return true;
}

bool OperationOverlay::eventFilter(QObject* object, QEvent* event) {
    const bool resized = object == parentWidget() && event->type() == QEvent::Resize;
    const bool needsRoom = object == card_ && event->type() == QEvent::LayoutRequest;
    if ((resized || needsRoom) && state_) cover();
    if (object == results_ && (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride)) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Copy)) {
            if (event->type() == QEvent::KeyPress) copySelected();
            event->accept();
            return true;
        }
        const bool closes = key->key() == Qt::Key_Escape || key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        if (closes && event->type() == QEvent::KeyPress) {
            keyPressEvent(key);
            return true;
        }
    }
    return QWidget::eventFilter(object, event);
}

}  // namespace dravik
