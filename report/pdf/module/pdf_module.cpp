// The module that a program without windows loads for its first PDF.
#include "report/pdf/pdf_report.h"

#include <QGuiApplication>
#include <array>

namespace dravik {
namespace {

/// Fonts need an application. This one knows no display, whether there is one or not. It lives until the process ends:
/// what Qt keeps for itself goes before anything of ours would take the application down.
void makeApplication() {
    if (QCoreApplication::instance() != nullptr) return;
    static std::array<char, 7> name = {"dravik"};
    static std::array<char, 10> option = {"-platform"};
    static std::array<char, 10> platform = {"offscreen"};
    static std::array<char*, 4> arguments = {name.data(), option.data(), platform.data(), nullptr};
    static int count = 3;
    static const QGuiApplication* const application =
        std::make_unique<QGuiApplication>(count, arguments.data()).release();
    static_cast<void>(application);
}

class WithApplication final : public PdfRenderer {
  public:
    WithApplication() {
        // Standard error is the program's.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        makeApplication();
        pages_ = makePdfRenderer();
    }
    [[nodiscard]] Bytes render(const ReportDocument& document, const PageSetup& setup,
                               const TaskContext& task) const override {
        return pages_->render(document, setup, task);
    }

  private:
    std::unique_ptr<PdfRenderer> pages_;
};

}  // namespace
}  // namespace dravik

extern "C" dravik::PdfRenderer* dravikMakePdfRenderer() { return new dravik::WithApplication; }  // NOLINT: its owner
