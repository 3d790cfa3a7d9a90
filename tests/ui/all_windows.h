#pragma once

#include "tests/ui/window_stage.h"
#include "ui/pictures.h"
#include "ui/preferences_window.h"

#include <QAbstractScrollArea>
#include <QContextMenuEvent>
#include <QEventLoop>
#include <QMenu>

#include <gtest/gtest.h>

namespace dravik::test {

/// Shows every window, dialog and context menu of the program to a visitor, over a day with something of everything.
/// Whatever a user has written in its files begins with "zz".
class AllWindows : public WindowStage {
  public:
    AllWindows() {
        for (int i = 1; i <= 2; ++i) {
            const std::string n = std::to_string(i);
            // They do not agree on the note.
            recorderFile({.project = "zzFilm",
                          .scene = "zz1",
                          .tape = "zzR1",
                          .note = "zznote" + n,
                          .tracks = {{i, 1, "zzMic" + n}}},
                         {}, 48000, static_cast<unsigned>(i))
                .write(folder / ("zzA_T0" + n + ".wav"));
        }
        for (const std::string name : {"zzB", "zzC", "zzD"}) {
            recorderFile({.project = "zzFilm",
                          .scene = name,
                          .tape = "zzR1",
                          .note = "zznote",
                          .circled = "TRUE",
                          .tracks = {{1, 1, "zzMid"}, {2, 2, "zzSide"}, {3, 3, "zzLav"}, {4, 4, ""}}},
                         {.channels = 4}, 48000)
                .cues({{.number = 1, .frame = 12000, .label = "zzcue"}, {.number = 2, .frame = 24000}})
                .write(folder / (name + ".wav"));
        }
        std::filesystem::create_directory(folder / "zzfolder");
    }

    /// False when the windows could not all be opened, or the visitor said so of one.
    bool visit(const WindowVisitor& look) {
        const Windows opened{*window, *content, preferences, asking, *playback, {"zznews", "zzmore"}};
        const WindowVisitor each = [&](QWidget& one, const QString& name) {
            bool ok = look(one, name);
            if (name == QLatin1String("main") || name == QLatin1String("floating-transport"))
                ok = menus(one, look) && ok;
            return ok;
        };
        QEventLoop loop;
        bool all = false;
        visitAllWindows(opened, folder.path(), each, [&](bool ok) {
            all = ok;
            loop.quit();
        });
        loop.exec();
        return all;
    }

    PreferencesWindow preferences{settings, commands, theme};

  private:
    /// The menu of every part of the window that has one.
    bool menus(QWidget& of, const WindowVisitor& look) {
        bool ok = true;
        for (QWidget* part : of.findChildren<QWidget*>()) {
            if (!part->isVisible() || part->focusPolicy() == Qt::NoFocus) continue;
            const QPoint place = part->rect().center();
            QContextMenuEvent event(QContextMenuEvent::Keyboard, place, part->mapToGlobal(place));
            QApplication::sendEvent(part, &event);
            for (QMenu* menu :
                 QApplication::activeWindow() != nullptr ? part->window()->findChildren<QMenu*>() : QList<QMenu*>()) {
                if (!menu->isVisible()) continue;
                ok = look(*menu, QStringLiteral("a context menu")) && ok;
                menu->close();
            }
        }
        return ok;
    }
};

}  // namespace dravik::test
