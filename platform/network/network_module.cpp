// The module that is loaded when a server is asked.
#include "platform/network/qt_http_fetcher.h"

#include <QCoreApplication>
#include <array>

namespace dravik {
namespace {

/// A program without windows has no application. This one lives until the process ends: what Qt keeps for itself goes
/// before anything of ours would take the application down.
void makeApplication() {
    if (QCoreApplication::instance() != nullptr) return;
    // Qt's messages must not mix with ours on standard error.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    static std::array<char, 7> name = {"dravik"};
    static std::array<char*, 2> arguments = {name.data(), nullptr};
    static int count = 1;
    static const QCoreApplication* const application =
        std::make_unique<QCoreApplication>(count, arguments.data()).release();
    static_cast<void>(application);
}

}  // namespace
}  // namespace dravik

extern "C" dravik::HttpFetcher* dravikMakeHttpFetcher() {
    dravik::makeApplication();
    return dravik::makeQtHttpFetcher().release();
}
