#include "ui/waveform_view.h"

#include "app/text.h"
#include "ui/shortcuts.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>
#include <cmath>

namespace dravik {
namespace {

constexpr int overviewHeight = 34;
constexpr int smallestLane = 22;
constexpr int laneGap = 3;
constexpr int cueReach = 5;  ///< pixels beside a marker that still take hold of it
constexpr double largestGain = 256;
constexpr double gainStep = 1.5;  ///< of one press of a key

double secondsOf(std::int64_t frame, double sampleRate) { return static_cast<double>(frame) / sampleRate; }

}  // namespace

WaveformView::WaveformView(ContentView& content, TakePlayback& playback, TakeWaveform& waveform, UserDefaults& defaults,
                           const Theme& theme, QWidget* parent)
    : QAbstractScrollArea(parent),
      content_(content),
      playback_(playback),
      waveform_(waveform),
      defaults_(defaults),
      theme_(theme) {
    setAccessibleName(tr("Waveform"));
    setLayoutDirection(Qt::LeftToRight);  // time runs so in every language
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMinimumHeight(rulerHeight + overviewHeight + 3 * smallestLane);
    viewport()->setMouseTracking(true);
    const auto update = [this] { viewport()->update(); };
    const LecteurCoreAudio& player = playback_.player();
    connect(&waveform_, &TakeWaveform::takeChanged, this, &WaveformView::onTakeChanged);
    connect(&waveform_, &TakeWaveform::grown, this, &WaveformView::onGrown);
    connect(&player, &LecteurCoreAudio::positionChanged, this, &WaveformView::onPosition);
    connect(&player, &LecteurCoreAudio::selectionChanged, viewport(), update);
    connect(&player, &LecteurCoreAudio::pretChanged, this, &WaveformView::redraw);
    connect(&player, &LecteurCoreAudio::volumeParCanalChanged, this, &WaveformView::redraw);
    connect(&playback_, &TakePlayback::stateChanged, viewport(), update);
    connect(&content_, &ContentView::cueMarkersChanged, viewport(), update);
    connect(&content_, &ContentView::takeChanged, viewport(), update);
    connect(&theme_, &Theme::changed, this, [this] {
        overviewDue_ = true;
        redraw();
    });
    connect(&defaults_, &UserDefaults::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::counterShowsElapsedTime.key)) viewport()->update();
    });
}

// --- Geometry ------------------------------------------------------------------------------------------------------

QRect WaveformView::rulerArea() const { return {namesWidth, 0, viewport()->width() - namesWidth, rulerHeight}; }

QRect WaveformView::lanesArea() const {
    return {namesWidth, rulerHeight, viewport()->width() - namesWidth,
            std::max(0, viewport()->height() - rulerHeight - overviewHeight)};
}

QRect WaveformView::overviewArea() const {
    return {namesWidth, viewport()->height() - overviewHeight + 4, viewport()->width() - namesWidth,
            overviewHeight - 6};
}

double WaveformView::laneX(double x) const { return x - namesWidth; }
double WaveformView::xOfFrame(double frame) const { return namesWidth + view_.xOf(frame); }

std::int64_t WaveformView::frameTotal() const {
    if (const TakePeaks* peaks = waveform_.peaks()) return peaks->frameTotal();
    return playback_.player().frameTotal();
}

double WaveformView::sampleRate() const {
    const int row = content_.selectedRow();
    if (row < 0) return 0;
    return content_.rows().groupesOriginauxTableau().at(static_cast<std::size_t>(row)).fichiers.front().sampleRate;
}

int WaveformView::laneHeight() const {
    const TakePeaks* peaks = waveform_.peaks();
    const int count = peaks == nullptr ? 1 : std::max(1, peaks->nbCanaux());
    return std::max(smallestLane, lanesArea().height() / count);
}

std::vector<WaveformLane> WaveformView::lanes() const {
    const TakePeaks* peaks = waveform_.peaks();
    if (peaks == nullptr) return {};
    const LecteurCoreAudio& player = playback_.player();
    std::vector<WaveformLane> all;
    const int height = laneHeight();
    for (int canal = 0; canal < peaks->nbCanaux(); ++canal) {
        const int top = canal * height - verticalScrollBar()->value();
        const auto at = static_cast<std::size_t>(canal);
        const bool silenced = at < player.volumeParCanal().size() && player.volumeParCanal()[at] <= 0;
        all.push_back({canal, QRect(0, top, lanesArea().width(), height - laneGap), silenced});
    }
    return all;
}

QRect WaveformView::playheadRect(std::int64_t frame) const {
    const int x = static_cast<int>(std::floor(xOfFrame(static_cast<double>(frame))));
    return {x - 6, 0, 13, viewport()->height()};
}

void WaveformView::arrange() {
    view_.setWidth(std::max(1, lanesArea().width()));
    const TakePeaks* peaks = waveform_.peaks();
    const int all = peaks == nullptr ? 0 : peaks->nbCanaux() * laneHeight();
    verticalScrollBar()->setRange(0, std::max(0, all - lanesArea().height()));
    verticalScrollBar()->setPageStep(lanesArea().height());
    verticalScrollBar()->setSingleStep(laneHeight());
}

void WaveformView::redraw() {
    pictureDue_ = true;
    viewport()->update();
}

// --- What has changed ----------------------------------------------------------------------------------------------

void WaveformView::onTakeChanged() {
    drag_ = Drag::none;
    view_.setTake(0);
    playhead_ = 0;
    verticalScrollBar()->setValue(0);
    overviewDue_ = true;
    arrange();
    redraw();
}

void WaveformView::onGrown() {
    if (view_.frameTotal() != frameTotal()) view_.setTake(frameTotal());
    arrange();
    overviewDue_ = true;
    redraw();
}

void WaveformView::onPosition() {
    const LecteurCoreAudio& player = playback_.player();
    const std::int64_t before = std::exchange(playhead_, player.frameCourante());
    if (playhead_ == before) return;
    const double x = view_.xOf(static_cast<double>(playhead_));
    if (!player.enLecture() || (x >= 0 && x < view_.width())) follows_ = true;
    if (follows_ && drag_ == Drag::none) {
        const WaveformViewport shown = view_;
        if (player.enLecture() && playback_.scrollsWithPlayhead()) {
            view_.scrollTo(static_cast<double>(playhead_) - view_.visibleFrames() / 2);
        } else {
            view_.pageTo(playhead_);
        }
        if (view_ != shown) {
            redraw();
            return;
        }
    }
    viewport()->update(playheadRect(before));
    viewport()->update(playheadRect(playhead_));
    viewport()->update(overviewArea());
}

void WaveformView::zoomAtPlayhead(double factor) {
    const double x = view_.xOf(static_cast<double>(playhead_));
    const bool inSight = x >= 0 && x <= view_.width();
    view_.zoom(factor, inSight ? x : view_.width() / 2.0);
    redraw();
}

void WaveformView::zoomVertically(double factor) {
    gain_ = std::clamp(gain_ * factor, 1.0, largestGain);
    redraw();
}

void WaveformView::showWhole() {
    view_.showWhole();
    redraw();
}

void WaveformView::zoomToSelection() {
    const LecteurCoreAudio& player = playback_.player();
    if (!player.selectionDebut() || !player.selectionFin()) return;
    view_.showRange(std::llround(*player.selectionDebut() * player.sampleRate()),
                    std::llround(*player.selectionFin() * player.sampleRate()));
    redraw();
}

void WaveformView::lookAround() {
    const double x = view_.xOf(static_cast<double>(playhead_));
    follows_ = !playback_.player().enLecture() || (x >= 0 && x < view_.width());
    redraw();
}

void WaveformView::goInOverview(double x) {
    const double middle = x / overviewArea().width() * static_cast<double>(view_.frameTotal());
    view_.scrollTo(middle - view_.visibleFrames() / 2);
    lookAround();
}

// --- For those who hear instead of see -----------------------------------------------------------------------------

QString WaveformView::spokenValue() const {
    if (const QString text = message(); !text.isEmpty()) return text;
    const LecteurCoreAudio& player = playback_.player();
    return toQt(defaults_.value(settings::counterShowsElapsedTime) ? player.timecodeMillis()
                                                                   : player.timecodeCourant());
}

std::optional<SpokenControl::Range> WaveformView::spokenRange() const {
    const double rate = sampleRate();
    if (rate <= 0) return Range{0, 0, 0};
    return Range{secondsOf(playhead_, rate), 0, secondsOf(frameTotal(), rate)};
}

void WaveformView::setSpokenNumber(double seconds) {
    LecteurCoreAudio& player = playback_.player();
    if (player.pret()) player.setFrame(std::llround(seconds * player.sampleRate()));
}

// --- Drawing -------------------------------------------------------------------------------------------------------

// --- Events --------------------------------------------------------------------------------------------------------

void WaveformView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    arrange();
    pictureDue_ = true;
}

void WaveformView::scrollContentsBy(int, int) { redraw(); }

std::optional<CueMarker> WaveformView::cueAt(const QPoint& place) const {
    if (place.x() < namesWidth) return std::nullopt;
    std::optional<CueMarker> found;
    std::size_t number = 0;
    // Of those over each other the one that is drawn last.
    for (const CueMarker& marker : content_.cueMarkers()) {
        const QRectF flag = cueFlag(marker, ++number).adjusted(-cueReach, -rulerHeight, 0, 0);
        if (flag.contains(place)) found = marker;
    }
    return found;
}

void WaveformView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || frameTotal() == 0) return;
    pressedAt_ = event->pos();
    const double x = laneX(event->position().x());
    if (overviewArea().adjusted(0, -4, 0, 4).contains(event->pos())) {
        drag_ = Drag::overview;
        goInOverview(x);
        return;
    }
    if (event->pos().x() < namesWidth) return;
    if (const std::optional<CueMarker> cue = cueAt(event->pos())) {
        drag_ = Drag::cue;
        content_.cues().beginDrag(cue->id);
        return;
    }
    const LecteurCoreAudio& player = playback_.player();
    drag_ = Drag::pressed;
    anchor_ = view_.frameAt(x);
    if (event->modifiers() & Qt::ShiftModifier) {
        // The end that is further away stays.
        const double rate = player.sampleRate();
        const std::int64_t debut =
            player.selectionDebut() ? std::llround(*player.selectionDebut() * rate) : player.frameCourante();
        const std::int64_t fin = player.selectionFin() ? std::llround(*player.selectionFin() * rate) : debut;
        anchor_ = std::abs(anchor_ - debut) > std::abs(anchor_ - fin) ? debut : fin;
        drag_ = Drag::selecting;
        mouseMoveEvent(event);
    }
}

void WaveformView::mouseMoveEvent(QMouseEvent* event) {
    const double x = laneX(event->position().x());
    switch (drag_) {
        case Drag::none:
            viewport()->setCursor(cueAt(event->pos()) ? Qt::SizeHorCursor : Qt::ArrowCursor);
            break;
        case Drag::overview:
            goInOverview(x);
            break;
        case Drag::cue:
            content_.cues().drag(view_.frameAt(x));
            break;
        case Drag::pressed:
            if ((event->pos() - pressedAt_).manhattanLength() < QApplication::startDragDistance()) break;
            drag_ = Drag::selecting;
            [[fallthrough]];
        case Drag::selecting: {
            if (x < 0 || x > view_.width()) {
                view_.scrollBy(x < 0 ? x : x - view_.width());
                redraw();
            }
            const std::int64_t frame = view_.frameAt(x);
            LecteurCoreAudio& player = playback_.player();
            if (!player.pret()) break;
            const double rate = player.sampleRate();
            player.setSelection(secondsOf(std::min(frame, anchor_), rate), secondsOf(std::max(frame, anchor_), rate));
            break;
        }
    }
}

void WaveformView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    LecteurCoreAudio& player = playback_.player();
    switch (std::exchange(drag_, Drag::none)) {
        case Drag::pressed:
            player.clearSelection();
            player.setFrame(anchor_);
            break;
        case Drag::selecting:
            // What was selected is what one wants to hear.
            if (player.selectionDebut()) player.setFrame(std::llround(*player.selectionDebut() * player.sampleRate()));
            break;
        case Drag::cue:
            content_.cues().endDrag();
            break;
        case Drag::none:
        case Drag::overview:
            break;
    }
}

void WaveformView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (const std::optional<CueMarker> cue = cueAt(event->pos())) {
        content_.cues().rename(cue->id);
    } else if (overviewArea().contains(event->pos())) {
        showWhole();
    } else {
        mousePressEvent(event);
    }
}

void WaveformView::wheelEvent(QWheelEvent* event) {
    constexpr double notch = 120.0;
    const QPoint angle = event->angleDelta();
    const double turned = (std::abs(angle.y()) >= std::abs(angle.x()) ? angle.y() : angle.x()) / notch;
    const Qt::KeyboardModifiers keys = event->modifiers();
    constexpr double zoomPerNotch = 1.3;
    if ((keys & Qt::ControlModifier) && (keys & Qt::ShiftModifier)) {
        zoomVertically(std::pow(zoomPerNotch, turned));
    } else if (keys & Qt::ControlModifier) {
        view_.zoom(std::pow(zoomPerNotch, turned), laneX(event->position().x()));
        lookAround();
    } else if (std::abs(angle.x()) > std::abs(angle.y()) || (keys & Qt::ShiftModifier) ||
               verticalScrollBar()->maximum() == 0) {
        constexpr double pixelsPerNotch = 80;
        view_.scrollBy(-turned * pixelsPerNotch);
        lookAround();
    } else {
        QAbstractScrollArea::wheelEvent(event);
    }
    event->accept();
}

void WaveformView::keyPressEvent(QKeyEvent* event) {
    using Direction = LecteurCoreAudio::Direction;
    const std::optional<KeyId> key = keyIn(KeyContext::waveform, *event);
    if (key == KeyId::zoomIn) {
        zoomIn();
    } else if (key == KeyId::zoomOut) {
        zoomOut();
    } else if (key == KeyId::tallerWaveform) {
        zoomVertically(gainStep);
    } else if (key == KeyId::flatterWaveform) {
        zoomVertically(1 / gainStep);
    } else if (key == KeyId::showWholeTake) {
        showWhole();
    } else if (key == KeyId::nudgeLeft) {
        playback_.nudge(Direction::backward);
    } else if (key == KeyId::nudgeRight) {
        playback_.nudge(Direction::forward);
    } else if (key == KeyId::clearSelection && playback_.player().selectionDebut()) {
        playback_.player().clearSelection();
    } else if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
        // The table's: the next take is heard without leaving the waveform.
        emit otherTakeAsked(event->key() == Qt::Key_Up ? -1 : 1);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void WaveformView::contextMenuEvent(QContextMenuEvent* event) {
    if (frameTotal() == 0) return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint place = viewport()->mapFromGlobal(event->globalPos());
    if (const std::optional<CueMarker> cue = byKey ? std::nullopt : cueAt(place)) {
        connect(menu->addAction(tr("Edit Cue Name...")), &QAction::triggered, this,
                [this, id = cue->id] { content_.cues().rename(id); });
        connect(menu->addAction(tr("Delete Cue")), &QAction::triggered, this,
                [this, id = cue->id] { content_.cues().remove(id); });
        menu->addSeparator();
    }
    const std::int64_t frame = byKey ? playhead_ : view_.frameAt(laneX(place.x()));
    QAction* add = menu->addAction(tr("Add Cue"));
    connect(add, &QAction::triggered, this, [this, frame] { content_.cues().add(frame); });
    add->setEnabled(content_.rows().canEdit(content_.selectedRow()));
    menu->addSeparator();
    QAction* selection = menu->addAction(tr("Zoom to Selection"));
    selection->setEnabled(playback_.player().selectionDebut().has_value());
    connect(selection, &QAction::triggered, this, &WaveformView::zoomToSelection);
    connect(menu->addAction(tr("Show Whole Take")), &QAction::triggered, this, &WaveformView::showWhole);
    menu->popup(event->globalPos());
}

bool WaveformView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const std::optional<CueMarker> cue = cueAt(help->pos());
        if (cue && cue->label) QToolTip::showText(help->globalPos(), toQt(*cue->label), this);
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

}  // namespace dravik
