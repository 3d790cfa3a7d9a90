#include "ui/theme.h"

#include "ui/colours.h"
#include "ui/house_style.h"

#include <QApplication>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>
#include <QToolTip>
#include <memory>
#include <utility>

/// The drawings lie in a static library, which nobody else would have them linked from. (Not inside a namespace.)
static void initIcons() { Q_INIT_RESOURCE(resources); }

namespace dravik {
namespace {

/// Draws an SVG in a colour of the palette, at whatever size and scale it is asked for.
class TintedIcon final : public QIconEngine {
  public:
    TintedIcon(QByteArray svg, bool dark) : svg_(std::move(svg)), dark_(dark) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        QColor colour = dark_ ? QColor(0xC9, 0xCF, 0xD8) : QColor(0x3C, 0x43, 0x4E);
        if (mode == QIcon::Disabled) colour.setAlphaF(0.35F);
        QByteArray svg = svg_;
        svg.replace("#808080", colour.name().toUtf8());
        QSvgRenderer renderer(svg);
        painter->save();
        painter->setOpacity(painter->opacity() * colour.alphaF());
        renderer.render(painter, QRectF(rect));
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    [[nodiscard]] QIconEngine* clone() const override { return std::make_unique<TintedIcon>(*this).release(); }

  private:
    QByteArray svg_;
    bool dark_;
};

struct Shades {
    QColor window, base, alternate, button, text, dim, line, tip;
};

Shades shades(bool dark) {
    if (dark) {
        return {QColor(0x1F, 0x22, 0x27), QColor(0x18, 0x1B, 0x1F), QColor(0x1D, 0x20, 0x25), QColor(0x2B, 0x2F, 0x36),
                QColor(0xE4, 0xE7, 0xEB), QColor(0x8F, 0x97, 0xA3), QColor(0x33, 0x38, 0x40), QColor(0x2F, 0x34, 0x3C)};
    }
    return {QColor(0xF2, 0xF3, 0xF5), QColor(0xFF, 0xFF, 0xFF), QColor(0xF7, 0xF8, 0xFA), QColor(0xE7, 0xE9, 0xED),
            QColor(0x1D, 0x22, 0x29), QColor(0x6A, 0x71, 0x7C), QColor(0xD3, 0xD7, 0xDD), QColor(0xFF, 0xFF, 0xFF)};
}

QPalette palette(bool dark, const QColor& accent) {
    const Shades of = shades(dark);
    QPalette palette;
    palette.setColor(QPalette::Window, of.window);
    palette.setColor(QPalette::WindowText, of.text);
    palette.setColor(QPalette::Base, of.base);
    palette.setColor(QPalette::AlternateBase, of.alternate);
    palette.setColor(QPalette::Text, of.text);
    palette.setColor(QPalette::PlaceholderText, of.dim);
    palette.setColor(QPalette::Button, of.button);
    palette.setColor(QPalette::ButtonText, of.text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, of.tip);
    palette.setColor(QPalette::ToolTipText, of.text);
    palette.setColor(QPalette::Mid, of.line);
    palette.setColor(QPalette::Midlight, of.line);
    palette.setColor(QPalette::Dark, dark ? of.base.darker(130) : of.line);
    palette.setColor(QPalette::Light, dark ? of.button.lighter(115) : QColor(Qt::white));
    palette.setColor(QPalette::Highlight, accent);
    // Text on the accent colour, whichever the user has chosen.
    palette.setColor(QPalette::HighlightedText,
                     qGray(accent.rgb()) > 140 ? QColor(0x16, 0x18, 0x1B) : QColor(Qt::white));
    palette.setColor(QPalette::Link, accent);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, of.dim.darker(dark ? 130 : 90));
    }
    QColor faded = accent;
    faded.setAlphaF(0.45F);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, faded);
    return palette;
}

}  // namespace

Theme::Theme(UserDefaults& settings, std::function<bool()> systemIsDark)
    : settings_(settings), askSystem_(std::move(systemIsDark)), systemIsDark_(askSystem_()) {
    initIcons();
    qApp->installEventFilter(this);
    QApplication::setStyle(std::make_unique<HouseStyle>(settings_.value(settings::NSInitialToolTipDelay))
                               .release());  // the application takes it over
    apply();
    connect(&settings_, &UserDefaults::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::appearance.key) || key == QLatin1String(settings::couleurAccent.key)) {
            apply();
        }
    });
}

bool Theme::systemPaletteIsDark() { return QApplication::palette().color(QPalette::Window).lightness() < 128; }

bool Theme::eventFilter(QObject* object, QEvent* event) {
    // Each window is told; the first one is enough, when all have been.
    if (event->type() == QEvent::ThemeChange && !std::exchange(followDue_, true)) {
        QMetaObject::invokeMethod(this, &Theme::followSystem, Qt::QueuedConnection);
    }
    return QObject::eventFilter(object, event);
}

void Theme::followSystem() {
    followDue_ = false;
    // Our palette covers the system's, which shows as soon as there is none of ours.
    QApplication::setPalette(QPalette());
    systemIsDark_ = askSystem_();
    apply();
}

void Theme::apply() {
    const QString appearance = settings_.value(settings::appearance);
    dark_ = appearance == QLatin1String("dark") || (appearance != QLatin1String("light") && systemIsDark_);
    const QColor chosen(settings_.value(settings::couleurAccent));
    accent_ = chosen.isValid() ? chosen : QColor(settings::couleurAccent.standard);
    QApplication::setPalette(palette(dark_, accent_));
    QToolTip::setPalette(QApplication::palette());
    pendingText_ = accent_;
    for (const QPalette::ColorRole ground : {QPalette::Window, QPalette::Base, QPalette::AlternateBase})
        pendingText_ = legibleOn(QApplication::palette().color(ground), pendingText_);
    emit changed();
}

QIcon Theme::icon(const QString& name) const {
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly)) return {};
    // QIcon takes the engine over.
    return QIcon(std::make_unique<TintedIcon>(file.readAll(), dark_).release());
}

}  // namespace dravik
