#include "app/language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <memory>

namespace dravik {
namespace {

const QString catalogues = QStringLiteral(":/i18n");

/// Asked before those that were installed earlier.
void install(QCoreApplication& application, const QLocale& locale, const QString& name, const QString& folder) {
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(locale, name, QStringLiteral("_"), folder)) return;
    translator->setParent(&application);
    QCoreApplication::installTranslator(translator.release());
}

/// Is there a catalogue of it, rather than of another language that the user also reads?
bool isTranslated(const QLocale& locale) {
    QTranslator translator;
    return translator.load(locale, QStringLiteral("dravik"), QStringLiteral("_"), catalogues) &&
           QLocale(translator.language()).language() == locale.language();
}

}  // namespace

QLocale installLanguage(QCoreApplication& application, const QLocale& wanted) {
    const QLocale english(QLocale::English);
    const QLocale texts = isTranslated(wanted) ? wanted : english;
    // Always: the source texts lack the plural forms, which another catalogue may lack, too.
    install(application, english, QStringLiteral("dravik"), catalogues);
    if (texts.language() != QLocale::English) {
        install(application, texts, QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath));
        install(application, texts, QStringLiteral("dravik"), catalogues);
    }
    QLocale::setDefault(texts);
    return texts;
}

}  // namespace dravik
