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

bool isTranslated(const QLocale& locale) {
    QTranslator translator;
    return translator.load(locale, QStringLiteral("dravik"), QStringLiteral("_"), catalogues) &&
           QLocale(translator.language()).language() == locale.language();
}

/// The first of the languages that the user reads, by preference, of which there is a catalogue.
QLocale localeOfTexts(const QLocale& wanted, const QLocale& english) {
    for (const QString& name : wanted.uiLanguages()) {
        const QLocale one(name);
        if (one.language() == QLocale::English) return english;
        if (isTranslated(one)) return one.language() == wanted.language() ? wanted : one;
    }
    return english;
}

}  // namespace

QLocale installLanguage(QCoreApplication& application, const QLocale& wanted) {
    const QLocale english(QLocale::English);
    const QLocale texts = localeOfTexts(wanted, english);
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
