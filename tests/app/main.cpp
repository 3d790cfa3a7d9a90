#include "app/language.h"

#include <QCoreApplication>
#include <QLocale>

#include <gmock/gmock.h>
#include <spdlog/spdlog.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    spdlog::set_level(spdlog::level::warn);
    QCoreApplication application(argc, argv);
    dravik::installLanguage(application, QLocale(QLocale::English));
    return RUN_ALL_TESTS();
}
