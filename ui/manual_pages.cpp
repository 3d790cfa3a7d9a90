#include "ui/manual_pages.h"

#include <QFile>
#include <QTextDocument>
#include <algorithm>
#include <stdexcept>

namespace dravik {
namespace {

ManualPage read(const QString& name) {
    QFile file(QStringLiteral(":/manual/%1.md").arg(name));
    if (!file.open(QIODevice::ReadOnly)) throw std::logic_error("a page of the manual is not in the program");
    ManualPage page{name, {}, QString::fromUtf8(file.readAll()), {}};
    QTextDocument document;
    document.setMarkdown(page.text);
    page.seen = document.toPlainText();
    page.title = page.text.section(u'\n', 0, 0).mid(2);  // behind "# "
    return page;
}

/// The pages that a text links to, in its order.
QStringList linked(const QString& text) {
    const QString end = QStringLiteral(".md)");
    QStringList names;
    for (qsizetype at = text.indexOf(end); at >= 0; at = text.indexOf(end, at + end.size())) {
        const qsizetype from = text.lastIndexOf(u'(', at) + 1;
        if (const QString name = text.mid(from, at - from); !names.contains(name)) names << name;
    }
    return names;
}

std::vector<ManualPage> readAll() {
    std::vector<ManualPage> pages{read(QStringLiteral("index"))};
    for (const QString& name : linked(pages.front().text))
        pages.push_back(read(name));
    return pages;
}

}  // namespace

const std::vector<ManualPage>& manualPages() {
    static const std::vector<ManualPage> pages = readAll();
    return pages;
}

bool hasWords(const ManualPage& page, const QStringList& words) {
    return std::all_of(words.begin(), words.end(),
                       [&](const QString& word) { return page.seen.contains(word, Qt::CaseInsensitive); });
}

}  // namespace dravik
