// The module that a program without windows loads for its first PDF.
#include "report/pdf/pdf_report.h"

#include <QGuiApplication>
#include <array>

namespace dravik {
namespace {

/// Fonts need an application. This one knows no display, whether there is one or not, and says nothing: standard error
/// is the program's.
class WithApplication final : public PdfRenderer {
  public:
    WithApplication() {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        if (QCoreApplication::instance() == nullptr) {
            application_ = std::make_unique<QGuiApplication>(count_, arguments_.data());
        }
    }
    [[nodiscard]] Bytes render(const ReportDocument& document, const PageSetup& setup,
                               const TaskContext& task) const override {
        return pages_->render(document, setup, task);
    }

  private:
    std::array<char, 7> name_ = {"dravik"};
    std::array<char, 10> option_ = {"-platform"};
    std::array<char, 10> platform_ = {"offscreen"};
    std::array<char*, 4> arguments_ = {name_.data(), option_.data(), platform_.data(), nullptr};
    int count_ = 3;
    std::unique_ptr<QGuiApplication> application_;
    std::unique_ptr<PdfRenderer> pages_ = makePdfRenderer();
};

}  // namespace
}  // namespace dravik

extern "C" dravik::PdfRenderer* dravikMakePdfRenderer() { return new dravik::WithApplication; }  // NOLINT: its owner
