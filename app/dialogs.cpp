#include "app/dialogs.h"

namespace dravik {

void showError(Dialogs& dialogs, const QString& title, const QString& text) {
    Alert alert;
    alert.title = title;
    alert.text = text;
    alert.buttons = {QStringLiteral("OK")};
    dialogs.ask(alert, [](AlertAnswer) {});
}

}  // namespace dravik
