#include "ui/operations/pattern_row.h"

#include "app/text.h"
#include "ui/list_looks.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFrame>
#include <algorithm>

namespace dravik {
namespace {

constexpr int margin = 6;
constexpr int gap = 4;
/// Room for two lines of blocks, so that what is below does not move with the first few.
constexpr int leastHeight = 2 * 26 + gap + 2 * margin;

QString emptyText() { return PatternRow::tr("Click tokens below to put a name together, or type"); }

/// What is typed outside of a field: its separators are blocks of their own, as on their buttons.
BlocRenommage blockOf(const QString& text) {
    if (text == QLatin1String("_")) return newBlock(PaletteRenommage::separator);
    if (text == QLatin1String("-")) return newBlock(PaletteRenommage::dash);
    return BlocRenommage::texte(text.toStdString());
}

}  // namespace

PatternRow::PatternRow(const Theme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme), flow_(new FlowLayout(gap, gap, this)) {
    setAccessibleName(tr("Pattern of the new names"));
    setFocusPolicy(Qt::StrongFocus);
    setMinimumHeight(leastHeight);
    setLayoutDirection(Qt::LeftToRight);  // as the names that it makes are read
    flow_->setContentsMargins(margin, margin, margin, margin);
    connect(&theme_, &Theme::changed, this, [this] { update(); });
}

PatternRow::~PatternRow() { stopListeningToChildren(*this); }

void PatternRow::setPattern(const RenamePattern& pattern) {
    pattern_ = pattern;
    rebuild();
}

QString PatternRow::spokenValue() const {
    if (chips_.empty()) return emptyText();
    QStringList blocks;
    for (const PatternChip* chip : chips_)
        blocks << chip->spokenValue();
    return blocks.join(QLatin1Char(' '));
}

PatternChip* PatternRow::makeChip(const BlocRenommage& block) {
    auto* chip = new PatternChip(block, theme_, this);
    flow_->addWidget(chip);
    connect(chip, &PatternChip::textTyped, this, [this, chip](const QString& text) {
        pattern_[placeOf(*chip)].contenu = BlocRenommage::Texte{text.toStdString()};
        emit patternChanged();
    });
    connect(chip, &PatternChip::removeRequested, this, [this, chip](int direction) { remove(*chip, direction); });
    connect(chip, &PatternChip::typed, this, [this, chip](const QString& text) { type(placeOf(*chip) + 1, text); });
    connect(chip, &PatternChip::moveRequested, this, [this, chip](int by) {
        const std::size_t place = placeOf(*chip);
        if (by < 0 && place > 0) move(place, place - 1);
        if (by > 0 && place + 1 < pattern_.size()) move(place, place + 1);
    });
    connect(chip, &PatternChip::leaveRequested, this, [this, chip](int direction, bool far) {
        const auto last = static_cast<std::ptrdiff_t>(chips_.size()) - 1;
        const auto next = static_cast<std::ptrdiff_t>(placeOf(*chip)) + direction;
        focusPlace(far ? (direction < 0 ? 0 : last) : std::clamp<std::ptrdiff_t>(next, 0, last), direction);
    });
    connect(chip, &PatternChip::draggedTo, this, [this, chip](const QPoint& global) {
        dragged_ = chip;
        chip->setDragged(true);
        dragPosition_ = mapFromGlobal(global);
        update();
    });
    connect(chip, &PatternChip::dragCancelled, this, &PatternRow::endDrag);
    connect(chip, &PatternChip::dropped, this, [this, chip] {
        const std::size_t from = placeOf(*chip);
        const std::size_t before = gapAt(dragPosition_.value_or(chip->geometry().center()));
        endDrag();
        move(from, before > from ? before - 1 : before);
    });
    return chip;
}

void PatternRow::rebuild() {
    std::vector<PatternChip*> before = std::exchange(chips_, {});
    for (const BlocRenommage& block : pattern_) {
        const auto known =
            std::find_if(before.begin(), before.end(), [&](const PatternChip* one) { return one->id() == block.id; });
        // An identity stands for what the block is, but for its text.
        const auto* text = std::get_if<BlocRenommage::Texte>(&block.contenu);
        if (known == before.end()) {
            chips_.push_back(makeChip(block));
        } else {
            chips_.push_back(*known);
            before.erase(known);
        }
        if (text != nullptr) chips_.back()->setText(toQt(text->text));
        chips_.back()->show();
    }
    for (PatternChip* gone : before) {
        if (gone == dragged_) endDrag();
        gone->disconnect(this);
        gone->hide();
        flow_->removeWidget(gone);
        gone->deleteLater();  // it may be the one that asked for it
    }
    QWidget* previous = this;
    int place = 0;
    for (PatternChip* chip : chips_) {
        chip->setPlace(place++, static_cast<int>(chips_.size()));
        setTabOrder(previous, chip);
        previous = chip;
    }
    flow_->arrange({chips_.begin(), chips_.end()});
    // With blocks in it, the row itself is where a click into its empty part goes.
    setFocusPolicy(chips_.empty() ? Qt::StrongFocus : Qt::ClickFocus);
    updateGeometry();
    update();
}

std::size_t PatternRow::placeOf(const PatternChip& chip) const {
    return static_cast<std::size_t>(std::find(chips_.begin(), chips_.end(), &chip) - chips_.begin());
}

void PatternRow::insert(std::size_t at, const BlocRenommage& block) {
    pattern_.insert(pattern_.begin() + static_cast<std::ptrdiff_t>(at), block);
    rebuild();
    if (chips_[at]->field() != nullptr) chips_[at]->enter(-1);
    emit patternChanged();
}

void PatternRow::type(std::size_t at, const QString& text) {
    insert(at, blockOf(text));
    if (chips_[at]->field() == nullptr) chips_[at]->enter(1);
}

void PatternRow::remove(const PatternChip& chip, int direction) {
    const std::size_t place = placeOf(chip);
    const bool hadKeys = chip.hasFocus() || (chip.field() != nullptr && chip.field()->hasFocus());
    pattern_.erase(pattern_.begin() + static_cast<std::ptrdiff_t>(place));
    const auto next = static_cast<std::ptrdiff_t>(place) - (direction < 0 ? 1 : 0);
    if (hadKeys && pattern_.empty()) setFocus();
    rebuild();
    if (hadKeys && !chips_.empty()) {
        const auto last = static_cast<std::ptrdiff_t>(chips_.size()) - 1;
        focusPlace(std::clamp<std::ptrdiff_t>(next, 0, last), direction);
    }
    emit patternChanged();
}

void PatternRow::move(std::size_t from, std::size_t to) {
    if (from == to) return;
    const auto at = [this](std::size_t place) { return pattern_.begin() + static_cast<std::ptrdiff_t>(place); };
    from < to ? std::rotate(at(from), at(from + 1), at(to + 1)) : std::rotate(at(to), at(from), at(from + 1));
    rebuild();
    emit patternChanged();
}

void PatternRow::focusPlace(std::ptrdiff_t place, int direction) {
    if (place >= 0 && place < static_cast<std::ptrdiff_t>(chips_.size()))
        chips_[static_cast<std::size_t>(place)]->enter(direction);
}

std::size_t PatternRow::gapAt(const QPoint& position) const {
    for (std::size_t at = 0; at < chips_.size(); ++at) {
        const QRect chip = chips_[at]->geometry();
        if (position.y() > chip.bottom() + gap / 2) continue;  // a line further down
        // The line of the position, or the first below it.
        if (position.x() < chip.center().x()) return at;
        const bool lastOfLine = at + 1 == chips_.size() || chips_[at + 1]->geometry().top() > chip.bottom();
        if (lastOfLine) return at + 1;
    }
    return chips_.size();
}

QRect PatternRow::markAt(std::size_t before) const {
    constexpr int thickness = 2;
    // At the end of a line rather than at the beginning of the next one, when the mouse is there.
    const bool behind = before > 0 && (before == chips_.size() ||
                                       chips_[before - 1]->geometry().bottom() + gap / 2 >= dragPosition_->y());
    const QRect beside = chips_[behind ? before - 1 : before]->geometry();
    const int x = behind ? beside.right() + 1 + gap / 2 : beside.left() - gap / 2;
    return {x - thickness / 2, beside.top() - 1, thickness, beside.height() + 2};
}

void PatternRow::endDrag() {
    if (dragged_ != nullptr) dragged_->setDragged(false);
    dragged_ = nullptr;
    dragPosition_.reset();
    update();
}

bool PatternRow::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        if (PatternChip::isTyping(key)) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void PatternRow::keyPressEvent(QKeyEvent* event) {
    if (PatternChip::isTyping(*event)) {
        type(pattern_.size(), event->text());
    } else if (!chips_.empty() && (event->key() == Qt::Key_Left || event->key() == Qt::Key_Backspace)) {
        chips_.back()->enter(-1);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void PatternRow::mousePressEvent(QMouseEvent* event) {
    QWidget::mousePressEvent(event);
    setFocus(Qt::MouseFocusReason);
    update();
}

void PatternRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.lineWidth = 1;
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &frame, &painter, this);
    if (chips_.empty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect().adjusted(2 * margin, 0, -2 * margin, 0), int(Qt::AlignVCenter | Qt::TextWordWrap),
                         emptyText());
    } else if (hasFocus() && !dragPosition_) {
        // Where typed text would begin.
        const QRect last = chips_.back()->geometry();
        painter.fillRect(QRect(last.right() + gap, last.top() + 4, 1, last.height() - 8),
                         palette().color(QPalette::Text));
    }
    if (dragPosition_ && !chips_.empty()) painter.fillRect(markAt(gapAt(*dragPosition_)), theme_.accent());
}

}  // namespace dravik
