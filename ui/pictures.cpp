#include "ui/pictures.h"

#include "app/table_edits.h"
#include "ui/about_windows.h"
#include "ui/preferences_window.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QTimer>
#include <deque>
#include <memory>

namespace dravik {
namespace {

constexpr int pollMilliseconds = 30;
/// Layouts and delayed repaints come to rest.
constexpr int restMilliseconds = 250;

void whenIdle(QObject* context, ContentView& content, std::function<void()> then) {
    if (content.listing().isReading() || content.enChargement() || content.sauvegardeEnCours()) {
        QTimer::singleShot(pollMilliseconds, context,
                           [context, &content, then = std::move(then)] { whenIdle(context, content, then); });
        return;
    }
    QTimer::singleShot(restMilliseconds, context, then);
}

bool draw(QWidget& widget, const QString& file) { return widget.grab().save(file, "PNG"); }

/// Steps that each need the event loop to run before the next.
struct Sequence : std::enable_shared_from_this<Sequence> {
    std::deque<std::function<bool()>> steps;
    std::function<void(bool)> ended;
    bool ok = true;

    void next() {
        if (steps.empty()) {
            ended(ok);
            return;
        }
        const std::function<bool()> step = std::move(steps.front());
        steps.pop_front();
        ok = step() && ok;
        QTimer::singleShot(restMilliseconds, qApp, [self = shared_from_this()] { self->next(); });
    }
};

}  // namespace

void drawMainWindow(MainWindow& window, ContentView& content, const QString& file, std::function<void(bool)> drawn) {
    whenIdle(&window, content, [&window, &content, file, drawn = std::move(drawn)] {
        if (content.selectedRow() < 0 && !content.rows().groupesTableau().empty()) content.selectionnerLigne(0);
        whenIdle(&window, content, [&window, file, drawn] { drawn(draw(window, file)); });
    });
}

void drawAllWindows(MainWindow& window, ContentView& content, PreferencesWindow& preferences, const QString& folder,
                    std::function<void(bool)> drawn) {
    if (!QDir().mkpath(folder)) {
        drawn(false);
        return;
    }
    const auto file = [folder](const QString& name) { return QStringLiteral("%1/%2.png").arg(folder, name); };
    const auto sequence = std::make_shared<Sequence>();
    sequence->ended = std::move(drawn);
    auto& steps = sequence->steps;
    const auto top = [file](const QString& name) {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* dialog = qobject_cast<QDialog*>(widget);
            if (dialog == nullptr || !dialog->isVisible()) continue;
            const bool ok = draw(*dialog, file(name));
            dialog->reject();
            return ok;
        }
        return false;
    };
    steps.emplace_back([&content] {
        if (!content.rows().groupesTableau().empty()) content.selectionnerLigne(0);
        return true;
    });
    steps.emplace_back([&window, file] { return draw(window, file(QStringLiteral("main"))); });
    steps.emplace_back([&content] {
        std::vector<int> rows;
        for (int row = 1; row < 4 && row < static_cast<int>(content.rows().groupesTableau().size()); ++row)
            rows.push_back(row);
        setField(content.rows(), rows, RowField::scene, QStringLiteral("12B"));
        setField(content.rows(), {0}, RowField::note, QStringLiteral("Plane over the end of the take"));
        setFlagField(content.rows(), rows, RowField::circled, true);
        return true;
    });
    steps.emplace_back([&window, file] { return draw(window, file(QStringLiteral("main-pending"))); });
    steps.emplace_back([&content] {
        content.gererActionProtegee(QuitterApp{});
        return true;
    });
    steps.emplace_back([top] { return top(QStringLiteral("unsaved")); });
    steps.emplace_back([&preferences] {
        preferences.present();
        return true;
    });
    steps.emplace_back([&preferences, file] {
        const bool ok = draw(preferences, file(QStringLiteral("preferences")));
        preferences.reject();
        return ok;
    });
    steps.emplace_back([&window] {
        showShortcuts(window);
        return true;
    });
    steps.emplace_back([top] { return top(QStringLiteral("shortcuts")); });
    steps.emplace_back([&window] {
        showAbout(window);
        return true;
    });
    steps.emplace_back([top] { return top(QStringLiteral("about")); });
    steps.emplace_back([&window] {
        showLicences(window);
        return true;
    });
    steps.emplace_back([top] { return top(QStringLiteral("licences")); });
    steps.emplace_back([&content] {
        content.rows().discardAll();
        return true;
    });
    whenIdle(&window, content, [sequence] { sequence->next(); });
}

}  // namespace dravik
