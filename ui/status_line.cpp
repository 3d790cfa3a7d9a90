#include "ui/status_line.h"

#include "app/time_left.h"
#include "ui/metrics.h"

#include <QEvent>
#include <algorithm>
#include <chrono>
#include <cmath>

namespace dravik {
namespace {

using namespace std::chrono_literals;

constexpr auto noticeTime = 8s;
/// Work that is over before anybody could read its progress shows none.
constexpr qint64 showWorkAfterMilliseconds = 250;

}  // namespace

StatusLine::StatusLine(QWidget* parent)
    : QStatusBar(parent),
      counts_(new QLabel(this)),
      message_(new QLabel(this)),
      progress_(new QProgressBar(this)),
      cancel_(new QToolButton(this)) {
    counts_->setContentsMargins(metrics::panelMargin, 0, 0, 0);
    counts_->setTextFormat(Qt::PlainText);
    message_->setTextFormat(Qt::PlainText);  // names of files may look like markup
    message_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // A long name must not widen the window.
    message_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    message_->setContentsMargins(metrics::panelMargin, 0, metrics::panelMargin, 0);
    progress_->setFixedSize(160, 10);
    progress_->setTextVisible(false);
    progress_->setAccessibleName(tr("Progress"));
    cancel_->setText(tr("Cancel"));
    cancel_->setAutoRaise(true);
    connect(cancel_, &QToolButton::clicked, this, &StatusLine::cancelRequested);
    setSizeGripEnabled(false);
    addWidget(counts_);
    addWidget(message_, 1);
    addWidget(progress_);
    addWidget(cancel_);
    message_->installEventFilter(this);
    told_.setSingleShot(true);
    told_.setInterval(noticeTime);
    connect(&told_, &QTimer::timeout, this, [this] { tell({}); });
    endWork();
}

void StatusLine::setCounts(const QString& text) { counts_->setText(text); }

void StatusLine::beginWork() { working_.start(); }

void StatusLine::showWork(const QString& name, std::uint64_t done, std::uint64_t all, bool atOnce) {
    if (!working_.isValid()) working_.start();
    if (!atOnce && work_.isEmpty() && working_.elapsed() < showWorkAfterMilliseconds) return;
    const double fraction = all == 0 ? 0 : static_cast<double>(done) / static_cast<double>(all);
    progress_->setRange(0, all == 0 ? 0 : 1000);
    progress_->setValue(static_cast<int>(fraction * 1000));
    const QString left = timeLeft(working_.elapsed(), fraction);
    work_ = left.isEmpty() ? name : QStringLiteral("%1 – %2").arg(name, left);
    refresh();
}

void StatusLine::endWork() {
    working_.invalidate();
    work_.clear();
    refresh();
}

void StatusLine::tell(const QString& text) {
    notice_ = text;
    noticeIsNewer_ = true;
    told_.stop();
    refresh();
}

void StatusLine::setSuccess(const QString& text) {
    success_ = text;
    noticeIsNewer_ = text.isEmpty();
    refresh();
}

void StatusLine::setHint(const QString& text) {
    hint_ = text;
    refresh();
}

void StatusLine::refresh() {
    const bool noticeFirst = noticeIsNewer_ && !notice_.isEmpty();
    shown_ = !work_.isEmpty()      ? work_
             : noticeFirst         ? notice_
             : !success_.isEmpty() ? success_
             : !notice_.isEmpty()  ? notice_
                                   : hint_;
    // The time of a notice is the time in which it can be read.
    const bool readable = work_.isEmpty() && !notice_.isEmpty() && (noticeFirst || success_.isEmpty());
    if (!readable) {
        told_.stop();
    } else if (!told_.isActive()) {
        told_.start();
    }
    progress_->setVisible(!work_.isEmpty());
    cancel_->setVisible(!work_.isEmpty());
    fit();
}

void StatusLine::fit() {
    const int room = message_->width() - 2 * metrics::panelMargin;
    const QString fits = message_->fontMetrics().elidedText(shown_, Qt::ElideMiddle, std::max(0, room));
    message_->setText(fits);
    message_->setToolTip(fits == shown_ ? QString() : shown_);
    message_->setAccessibleName(shown_);
}

bool StatusLine::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Resize) fit();
    return QStatusBar::eventFilter(object, event);
}

}  // namespace dravik
