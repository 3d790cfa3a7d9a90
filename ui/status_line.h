#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>

namespace dravik {

/// The line below everything. At the left the counts, always. At the right one message, the first of these there is:
/// the work that runs, with its progress and Cancel; the success or the notice that came last; what the control under
/// the pointer does. A notice that is covered comes back, and goes when there was time to read it. Main thread.
class StatusLine : public QStatusBar {
    Q_OBJECT
  public:
    explicit StatusLine(QWidget* parent = nullptr);

    void setCounts(const QString& text);

    /// Work begins: its time is taken from here.
    void beginWork();
    /// `name`: what is done, to what. Without `all` how much there is to do is not known. Work that has only just begun
    /// and may be over before anybody could read of it is not shown unless `atOnce`.
    void showWork(const QString& name, std::uint64_t done, std::uint64_t all, bool atOnce);
    void endWork();

    /// A notice: a sentence that needs no answer. An empty one takes the last away.
    void tell(const QString& text);
    /// What has come to a good end, until it is taken away.
    void setSuccess(const QString& text);
    void setHint(const QString& text);

    [[nodiscard]] QString counts() const { return counts_->text(); }
    /// What is shown at the right.
    [[nodiscard]] QString message() const { return shown_; }

  signals:
    void cancelRequested();

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void refresh();
    void fit();

    QLabel* counts_;  // children, all of them
    QLabel* message_;
    QProgressBar* progress_;
    QToolButton* cancel_;
    QElapsedTimer working_;
    QTimer told_;
    QString work_, notice_, success_, hint_, shown_;
    bool noticeIsNewer_ = false;  ///< than the success
};

}  // namespace dravik
