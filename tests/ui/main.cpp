#include "app/language.h"
#include "ui/main_thread_watch.h"

#include <QFontInfo>
#include <QLocale>
#include <cstdio>

#include <gmock/gmock.h>
#include <spdlog/spdlog.h>

int main(int argc, char** argv) {
    // Listing the tests needs no screen, and the build does it on machines without one.
    qputenv("QT_QPA_PLATFORM", qEnvironmentVariableIsSet("QT_QPA_PLATFORM") ? qgetenv("QT_QPA_PLATFORM") : "offscreen");
    testing::InitGoogleMock(&argc, argv);
    spdlog::set_level(spdlog::level::warn);
    dravik::WatchedApplication application(argc, argv);
    application.startWatch();
    dravik::installLanguage(application, QLocale(QLocale::English));
    if (QFontInfo(QApplication::font()).family().isEmpty()) {
        std::fputs("There is no font: install fonts-dejavu-core.\n", stderr);
        return 1;
    }
    return RUN_ALL_TESTS();
}
