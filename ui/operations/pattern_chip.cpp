#include "ui/operations/pattern_chip.h"

#include "app/text.h"
#include "ui/colours.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>

namespace dravik {
namespace {

constexpr int chipHeight = 26;
constexpr int gripWidth = 12;
constexpr int crossSide = 18;
constexpr int textPadding = 4;
constexpr qreal radius = 4;
/// No file name is longer.
constexpr int longestText = 255;
constexpr int leastFieldWidth = 24;

/// What a separator looks like where it would be a blank.
QString shown(const std::string& separator) {
    QString text = toQt(separator);
    return text.replace(QLatin1Char(' '), QChar(0x2423));
}

}  // namespace

bool PatternChip::isTyping(const QKeyEvent& key) {
    // A blank begins no text: where there is no field, Space is a key and no letter.
    return !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) && !key.text().isEmpty() &&
           key.text().at(0).isPrint() && !key.text().at(0).isSpace();
}

PatternChip::PatternChip(const BlocRenommage& block, const Theme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme), id_(block.id), cross_(new QToolButton(this)) {
    setToolTip(tr("Drag to reorder"));
    setCursor(Qt::OpenHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    cross_->setAutoRaise(true);
    cross_->setFocusPolicy(Qt::NoFocus);  // Delete does the same
    cross_->setCursor(Qt::ArrowCursor);
    cross_->setIconSize({10, 10});
    cross_->setToolTip(tr("Remove"));
    connect(cross_, &QToolButton::clicked, this, [this] { emit removeRequested(1); });

    if (const auto* token = std::get_if<TokenRenommage>(&block.contenu)) {
        isToken_ = true;
        label_ = toQt(label(*token));
    } else if (const auto* separator = std::get_if<BlocRenommage::Separateur>(&block.contenu)) {
        label_ = shown(separator->text);
    } else {
        label_ = toQt(label(PaletteRenommage::text));
        field_ = new QLineEdit(toQt(std::get<BlocRenommage::Texte>(block.contenu).text), this);
        field_->setFrame(false);
        field_->setPlaceholderText(label_);
        field_->setMaxLength(std::max(longestText, static_cast<int>(field_->text().size())));
        field_->setCursor(Qt::IBeamCursor);
        field_->installEventFilter(this);
        setFocusProxy(field_);
        connect(field_, &QLineEdit::textChanged, this, [this] { updateGeometry(); });
        connect(field_, &QLineEdit::textEdited, this, &PatternChip::textTyped);
    }
    connect(&theme_, &Theme::changed, this, &PatternChip::applyTheme);
    applyTheme();
}

void PatternChip::applyTheme() {
    cross_->setIcon(theme_.icon(QStringLiteral("remove")));
    if (field_ != nullptr) {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Base, Qt::transparent);  // the chip's own ground
        field_->setPalette(palette);
    }
    update();
}

void PatternChip::setText(const QString& text) {
    if (field_ != nullptr && field_->text() != text) field_->setText(text);
}

void PatternChip::setPlace(int place, int count) {
    const QString name = tr("%1, block %2 of %3").arg(label_).arg(place + 1).arg(count);
    setAccessibleName(name);
    if (field_ != nullptr) field_->setAccessibleName(name);
    cross_->setAccessibleName(tr("Remove %1").arg(label_));
}

void PatternChip::setDragged(bool dragged) {
    faded_ = dragged;
    update();
}

void PatternChip::enter(int direction) {
    setFocus(Qt::TabFocusReason);
    if (field_ == nullptr) return;
    field_->deselect();
    field_->setCursorPosition(direction > 0 ? 0 : static_cast<int>(field_->text().size()));
}

QSize PatternChip::sizeHint() const {
    const QString text = field_ != nullptr && !field_->text().isEmpty() ? field_->text() : label_;
    // A field keeps two pixels on each side, and room for its cursor.
    const int around = field_ != nullptr ? 8 : 2;
    const int width = std::max(fontMetrics().horizontalAdvance(text) + around,
                               field_ != nullptr ? leastFieldWidth : fontMetrics().averageCharWidth());
    return {gripWidth + width + 2 * textPadding + crossSide + 2, chipHeight};
}

void PatternChip::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    cross_->setGeometry(width() - crossSide - 2, (height() - crossSide) / 2, crossSide, crossSide);
    if (field_ != nullptr) {
        field_->setGeometry(gripWidth + textPadding, 2, cross_->x() - gripWidth - 2 * textPadding, height() - 4);
    }
}

void PatternChip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (faded_) painter.setOpacity(0.4);
    const QColor base = palette().color(QPalette::Base);
    const bool focused = hasFocus() || (field_ != nullptr && field_->hasFocus());
    const QColor ground = isToken_            ? mixed(base, theme_.accent(), 0.20)
                          : field_ != nullptr ? palette().color(QPalette::Window)
                                              : palette().color(QPalette::Button);
    const QColor edge = isToken_ ? mixed(base, theme_.accent(), 0.55) : mixed(base, theme_.dimmed(), 0.6);
    painter.setBrush(ground);
    painter.setPen(QPen(focused ? theme_.accent() : edge, focused ? 2 : 1));
    const qreal inset = focused ? 1 : 0.5;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);

    painter.setPen(Qt::NoPen);
    painter.setBrush(theme_.dimmed());
    for (const int x : {5, 9}) {
        for (const int y : {-4, 0, 4})
            painter.drawEllipse(QPointF(x, height() / 2.0 + y), 0.9, 0.9);
    }
    if (field_ != nullptr) return;
    painter.setPen(palette().color(QPalette::Text));
    const QRect text = rect().adjusted(gripWidth + textPadding, 0, -crossSide - 2 - textPadding, 0);
    painter.drawText(text, int(Qt::AlignVCenter | Qt::AlignHCenter | Qt::TextSingleLine),
                     fontMetrics().elidedText(label_, Qt::ElideRight, text.width()));
}

bool PatternChip::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        const bool arrow = key.key() == Qt::Key_Left || key.key() == Qt::Key_Right;
        if (arrow || isTyping(key) || key.key() == Qt::Key_Delete || key.key() == Qt::Key_Backspace) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

bool PatternChip::handleMove(const QKeyEvent& key) {
    const bool left = key.key() == Qt::Key_Left, right = key.key() == Qt::Key_Right;
    // In a field Ctrl goes from word to word.
    const Qt::KeyboardModifiers moving = field_ != nullptr ? Qt::AltModifier : Qt::AltModifier | Qt::ControlModifier;
    if ((!left && !right) || !(key.modifiers() & moving)) return false;
    emit moveRequested(left ? -1 : 1);
    return true;
}

void PatternChip::keyPressEvent(QKeyEvent* event) {
    if (dragging_ && event->key() == Qt::Key_Escape) {
        cancelDrag();
        return;
    }
    if (handleMove(*event)) return;
    switch (event->key()) {
        case Qt::Key_Left:
        case Qt::Key_Right:
            emit leaveRequested(event->key() == Qt::Key_Left ? -1 : 1, false);
            return;
        case Qt::Key_Home:
        case Qt::Key_End:
            emit leaveRequested(event->key() == Qt::Key_Home ? -1 : 1, true);
            return;
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            emit removeRequested(event->key() == Qt::Key_Delete ? 1 : -1);
            return;
        default:
            if (isTyping(*event)) {
                emit typed(event->text());
            } else {
                QWidget::keyPressEvent(event);
            }
    }
}

bool PatternChip::handleFieldKey(const QKeyEvent& key) {
    if (handleMove(key)) return true;
    if (key.modifiers() & (Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier)) return false;
    const bool empty = field_->text().isEmpty();
    switch (key.key()) {
        case Qt::Key_Left:
            if (field_->cursorPosition() > 0 || field_->hasSelectedText()) return false;
            emit leaveRequested(-1, false);
            return true;
        case Qt::Key_Right:
            if (field_->cursorPosition() < field_->text().size() || field_->hasSelectedText()) return false;
            emit leaveRequested(1, false);
            return true;
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            if (!empty) return false;
            emit removeRequested(key.key() == Qt::Key_Delete ? 1 : -1);
            return true;
        default:
            return false;
    }
}

bool PatternChip::eventFilter(QObject* object, QEvent* event) {
    if (object == field_) {
        if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
        if (event->type() == QEvent::KeyPress) {
            const auto& key = static_cast<QKeyEvent&>(*event);
            if (dragging_ && key.key() == Qt::Key_Escape) {
                cancelDrag();
                return true;
            }
            if (handleFieldKey(key)) return true;
        }
        if (event->type() == QEvent::ShortcutOverride) {
            const auto& key = static_cast<QKeyEvent&>(*event);
            if (key.modifiers() == Qt::AltModifier && (key.key() == Qt::Key_Left || key.key() == Qt::Key_Right))
                event->accept();
        }
    }
    return QWidget::eventFilter(object, event);
}

void PatternChip::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    pressed_ = event->position().toPoint();
    mayDrag_ = true;
    setFocus(Qt::MouseFocusReason);
}

void PatternChip::mouseMoveEvent(QMouseEvent* event) {
    if (!mayDrag_ || !(event->buttons() & Qt::LeftButton)) return;
    const QPoint way = event->position().toPoint() - pressed_;
    if (!dragging_ && way.manhattanLength() < QApplication::startDragDistance()) return;
    if (!dragging_) setCursor(Qt::ClosedHandCursor);
    dragging_ = true;
    emit draggedTo(event->globalPosition().toPoint());
}

void PatternChip::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    mayDrag_ = false;
    if (!dragging_) return;
    dragging_ = false;
    setCursor(Qt::OpenHandCursor);
    emit dropped();
}

void PatternChip::cancelDrag() {
    mayDrag_ = dragging_ = false;
    setCursor(Qt::OpenHandCursor);
    emit dragCancelled();
}

void PatternChip::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void PatternChip::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    if (dragging_) cancelDrag();
    update();
}

}  // namespace dravik
