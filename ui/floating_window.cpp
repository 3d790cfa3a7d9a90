#include "ui/floating_window.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QVBoxLayout>

namespace dravik {

FloatingWindow::FloatingWindow(UserDefaults& defaults, const Kind& kind, QWidget* view, QWidget* parent)
    : QWidget(parent, Qt::Window), defaults_(defaults), kind_(kind) {
    setObjectName(QString::fromLatin1(kind.key));
    setWindowTitle(tr(kind.title));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->addWidget(view);
    resize(kind.firstSize);
    restoreGeometry(defaults_.stored(objectName() + QStringLiteral(".geometry")).toByteArray());
    setWindowFlag(Qt::WindowStaysOnTopHint, defaults_.value(kind_.alwaysOnTop));
}

FloatingWindow::~FloatingWindow() {
    if (isVisible()) rememberFrame();
}

void FloatingWindow::rememberFrame() { defaults_.store(objectName() + QStringLiteral(".geometry"), saveGeometry()); }

void FloatingWindow::present() {
    defaults_.set(kind_.visible, true);
    show();
    raise();
    activateWindow();
}

void FloatingWindow::togglePresence() { isVisible() && isActiveWindow() ? static_cast<void>(close()) : present(); }

void FloatingWindow::setStaysOnTop(bool stays) {
    defaults_.set(kind_.alwaysOnTop, stays);
    const QRect frame = geometry();
    setWindowFlag(Qt::WindowStaysOnTopHint, stays);  // which hides it
    setGeometry(frame);
    show();
}

void FloatingWindow::closeEvent(QCloseEvent* event) {
    rememberFrame();
    defaults_.set(kind_.visible, false);
    QWidget::closeEvent(event);
}

void FloatingWindow::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* top = menu->addAction(tr("Always on Top"));
    top->setCheckable(true);
    top->setChecked(defaults_.value(kind_.alwaysOnTop));
    connect(top, &QAction::toggled, this, &FloatingWindow::setStaysOnTop);
    menu->popup(event->globalPos());
}

void FloatingWindow::keyPressEvent(QKeyEvent* event) {
    event->key() == Qt::Key_Escape ? static_cast<void>(close()) : QWidget::keyPressEvent(event);
}

}  // namespace dravik
