#include "app/dialogs.h"

#include <QCoreApplication>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::Dialogs)
};

}  // namespace

void showError(Dialogs& dialogs, const QString& title, const QString& text) {
    Alert alert;
    alert.title = title;
    alert.text = text;
    alert.buttons = {Texts::tr("OK")};
    dialogs.ask(alert, [](AlertAnswer) {});
}

}  // namespace dravik
