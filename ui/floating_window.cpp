#include "ui/floating_window.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QVBoxLayout>

namespace dravik {

FloatingWindow::FloatingWindow(UserDefaults& defaults, const QString& key, const QString& title, QWidget* view,
                               QSize firstSize, QWidget* parent)
    : QWidget(parent, Qt::Window), defaults_(defaults), key_(key) {
    setObjectName(key);
    setWindowTitle(title);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->addWidget(view);
    resize(firstSize);
    restoreGeometry(defaults_.stored(key_ + QStringLiteral(".geometry")).toByteArray());
    setWindowFlag(Qt::WindowStaysOnTopHint, staysOnTop());
}

FloatingWindow::~FloatingWindow() {
    if (isVisible()) rememberFrame();
}

bool FloatingWindow::staysOnTop() const {
    return defaults_.stored(key_ + QStringLiteral(".alwaysOnTop")).toString() == QLatin1String("true");
}

void FloatingWindow::rememberFrame() { defaults_.store(key_ + QStringLiteral(".geometry"), saveGeometry()); }

void FloatingWindow::present() {
    show();
    raise();
    activateWindow();
}

void FloatingWindow::togglePresence() { isVisible() && isActiveWindow() ? static_cast<void>(close()) : present(); }

void FloatingWindow::setStaysOnTop(bool stays) {
    defaults_.store(key_ + QStringLiteral(".alwaysOnTop"), stays);
    const QRect frame = geometry();
    setWindowFlag(Qt::WindowStaysOnTopHint, stays);  // which hides it
    setGeometry(frame);
    show();
}

void FloatingWindow::closeEvent(QCloseEvent* event) {
    rememberFrame();
    QWidget::closeEvent(event);
}

void FloatingWindow::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* top = menu->addAction(QStringLiteral("Always on Top"));
    top->setCheckable(true);
    top->setChecked(staysOnTop());
    connect(top, &QAction::toggled, this, &FloatingWindow::setStaysOnTop);
    menu->popup(event->globalPos());
}

void FloatingWindow::keyPressEvent(QKeyEvent* event) {
    event->key() == Qt::Key_Escape ? static_cast<void>(close()) : QWidget::keyPressEvent(event);
}

}  // namespace dravik
