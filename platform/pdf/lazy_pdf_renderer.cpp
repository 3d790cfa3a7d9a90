#include "platform/pdf/lazy_pdf_renderer.h"

#include "base/error.h"
#include "platform/module.h"

#include <mutex>

namespace dravik {
namespace {

class LazyPdfRenderer final : public PdfRenderer {
  public:
    [[nodiscard]] Bytes render(const ReportDocument& document, const PageSetup& setup,
                               const TaskContext& task) const override {
        std::call_once(loaded_, [this] {
            const ModuleFunction function = moduleFunction("dravik_pdf", "dravikMakePdfRenderer");
            if (function.address != nullptr) real_.reset(reinterpret_cast<MakePdfRenderer>(function.address)());
            reason_ = function.reason;
        });
        if (!real_) throw Error("The PDF cannot be made: " + reason_);
        return real_->render(document, setup, task);
    }

  private:
    mutable std::once_flag loaded_;
    mutable std::unique_ptr<PdfRenderer> real_;
    mutable std::string reason_;
};

}  // namespace

std::unique_ptr<PdfRenderer> makeLazyPdfRenderer() { return std::make_unique<LazyPdfRenderer>(); }

}  // namespace dravik
