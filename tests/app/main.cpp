#include <QCoreApplication>

#include <gmock/gmock.h>
#include <spdlog/spdlog.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    spdlog::set_level(spdlog::level::warn);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
