#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace dravik {

/// A page of the manual, as it lies in the program.
struct ManualPage {
    QString name;   ///< "edit"; the page is at ":/manual/edit.md"
    QString title;  ///< its heading
    QString text;   ///< all of it, Markdown
    QString seen;   ///< all of it, as it is read
};

/// Every page, the overview ("index") first, then in the order in which it names them. Main thread.
[[nodiscard]] const std::vector<ManualPage>& manualPages();

/// Does the page have every one of the words, in any letter case?
[[nodiscard]] bool hasWords(const ManualPage& page, const QStringList& words);

}  // namespace dravik
