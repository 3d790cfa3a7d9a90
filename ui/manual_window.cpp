#include "ui/manual_window.h"

#include "ui/manual_page_view.h"
#include "ui/manual_pages.h"
#include "ui/metrics.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QShortcut>
#include <QVBoxLayout>

namespace dravik {
namespace {

const QString& geometryKey() {
    static const QString key = QStringLiteral("manual.geometry");
    return key;
}
QUrl addressOf(const QString& name) { return QUrl(QStringLiteral("qrc:/manual/%1.md").arg(name)); }

}  // namespace

ManualWindow::ManualWindow(const Services& services, QWidget* parent)
    : QWidget(parent, Qt::Window),
      services_(services),
      search_(new QLineEdit(this)),
      list_(new QListWidget(this)),
      page_(new ManualPageView(services.theme, this)),
      split_(new QSplitter(this)) {
    setObjectName(QStringLiteral("manual"));
    setWindowTitle(tr("Dravik Manual"));
    search_->setPlaceholderText(tr("Search the manual"));
    search_->setAccessibleName(tr("Search the manual"));
    search_->setClearButtonEnabled(true);
    list_->setAccessibleName(tr("Pages"));
    list_->setFrameShape(QFrame::NoFrame);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setTextElideMode(Qt::ElideRight);
    list_->setSpacing(3);
    page_->setAccessibleName(tr("Page"));
    for (const ManualPage& one : manualPages()) {
        auto* item = new QListWidgetItem(one.title, list_);
        item->setData(Qt::UserRole, one.name);
        item->setToolTip(one.title);
    }

    auto* left = new QWidget;
    auto* column = new QVBoxLayout(left);
    column->setContentsMargins(metrics::panelMargin, metrics::panelMargin, metrics::panelMargin, metrics::panelMargin);
    auto* ways = new QHBoxLayout;
    // Arrows point away from the page that is left, whichever side that is.
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    const QString back = QStringLiteral("nudge_back"), forward = QStringLiteral("nudge_forward");
    ways->addWidget(historyButton(mirrored ? forward : back, tr("Back"), &QTextBrowser::backward,
                                  &QTextBrowser::backwardAvailable));
    ways->addWidget(historyButton(mirrored ? back : forward, tr("Forward"), &QTextBrowser::forward,
                                  &QTextBrowser::forwardAvailable));
    ways->addWidget(search_);
    column->addLayout(ways);
    column->addWidget(list_);
    split_->addWidget(left);
    split_->addWidget(page_);
    split_->setStretchFactor(1, 1);
    split_->setSizes({270, ManualPageView::columnWidth + 30});
    split_->setChildrenCollapsible(false);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->addWidget(split_);
    resize(1000, 740);
    restoreGeometry(services_.settings.stored(geometryKey()).toByteArray());

    connect(list_, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
        if (item != nullptr) showPage(item->data(Qt::UserRole).toString());
    });
    connect(page_, &QTextBrowser::anchorClicked, this, &ManualWindow::follow);
    connect(page_, &QTextBrowser::sourceChanged, this, [this](const QUrl& source) {
        // The view has not taken the address over yet: the list would have it opened once more.
        const QSignalBlocker quiet(list_);
        for (int at = 0; at < list_->count(); ++at) {
            if (addressOf(list_->item(at)->data(Qt::UserRole).toString()) == source) list_->setCurrentRow(at);
        }
        markWords();
    });
    connect(search_, &QLineEdit::textChanged, this, &ManualWindow::narrow);
    const auto onReturn = [this] {
        const QStringList all = words();
        if (all.isEmpty()) return;
        if (!page_->find(all.front())) {
            page_->moveCursor(QTextCursor::Start);
            page_->find(all.front());
        }
    };
    connect(search_, &QLineEdit::returnPressed, this, onReturn);
    const std::pair<QKeySequence::StandardKey, std::function<void()>> keys[] = {
        {QKeySequence::Find, [this] { search_->setFocus(); }},
        {QKeySequence::Back, [this] { page_->backward(); }},
        {QKeySequence::Forward, [this] { page_->forward(); }},
        {QKeySequence::ZoomIn, [this] { page_->zoomIn(); }},
        {QKeySequence::ZoomOut, [this] { page_->zoomOut(); }}};
    for (const auto& [key, run] : keys) {
        auto* shortcut = new QShortcut(this);
        shortcut->setKeys(key);  // every key that the system has for it
        connect(shortcut, &QShortcut::activated, this, run);
    }
    list_->setCurrentRow(0);
}

/// Leads through the pages that were seen; to be had while there are some.
QToolButton* ManualWindow::historyButton(const QString& icon, const QString& name, void (QTextBrowser::*go)(),
                                         void (QTextBrowser::*available)(bool)) {
    auto* button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setAccessibleName(name);
    button->setToolTip(name);
    button->setEnabled(false);
    const auto draw = [this, button, icon] { button->setIcon(services_.theme.icon(icon)); };
    connect(&services_.theme, &Theme::changed, button, draw);
    draw();
    connect(button, &QToolButton::clicked, page_, go);
    connect(page_, available, button, &QWidget::setEnabled);
    return button;
}

ManualWindow::~ManualWindow() {
    if (isVisible()) rememberFrame();
}

void ManualWindow::present() {
    show();
    raise();
    activateWindow();
    page_->setFocus();
}

void ManualWindow::showPage(const QString& name) {
    for (const ManualPage& one : manualPages()) {
        if (one.name == name && page_->source() != addressOf(name))
            page_->setSource(addressOf(name), QTextDocument::MarkdownResource);
    }
}

QString ManualWindow::currentPage() const { return page_->source().fileName().section(u'.', 0, 0); }

void ManualWindow::follow(const QUrl& link) {
    const QUrl whole = page_->source().resolved(link);
    if (whole.scheme() == QStringLiteral("qrc")) {
        search_->clear();  // which may hide the page
        showPage(whole.fileName().section(u'.', 0, 0));
        return;
    }
    const QString complaint = services_.workspace.open(whole.toString());
    if (!complaint.isEmpty()) showError(services_.dialogs, tr("The Link Could Not Be Opened"), complaint);
}

QStringList ManualWindow::words() const { return search_->text().split(u' ', Qt::SkipEmptyParts); }

/// Only pages with the words, and one of them shown.
void ManualWindow::narrow() {
    const QStringList all = words();
    int first = -1;
    for (int at = 0; at < list_->count(); ++at) {
        const bool fits = hasWords(manualPages()[static_cast<std::size_t>(at)], all);
        list_->item(at)->setHidden(!fits);
        if (fits && first < 0) first = at;
    }
    if (first >= 0 && (list_->currentItem() == nullptr || list_->currentItem()->isHidden()))
        list_->setCurrentRow(first);
    markWords();
}

void ManualWindow::markWords() {
    QColor mark = services_.theme.accent();
    mark.setAlphaF(0.4F);
    QList<QTextEdit::ExtraSelection> marks;
    for (const QString& word : words()) {
        QTextCursor at(page_->document());
        while (!(at = page_->document()->find(word, at)).isNull()) {
            QTextEdit::ExtraSelection one;
            one.cursor = at;
            one.format.setBackground(mark);
            marks.append(one);
        }
    }
    page_->setExtraSelections(marks);
}

void ManualWindow::rememberFrame() { services_.settings.store(geometryKey(), saveGeometry()); }

void ManualWindow::closeEvent(QCloseEvent* event) {
    rememberFrame();
    QWidget::closeEvent(event);
}

void ManualWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
    if (search_->text().isEmpty()) {
        close();
    } else {
        search_->clear();
    }
}

}  // namespace dravik
