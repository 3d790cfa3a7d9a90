#include "app/language.h"

#include "app/text.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

namespace dravik {
namespace {

TEST(Language, WithoutACatalogueOfTheUsersLanguageTextsAndNumbersAreEnglish) {
    const QLocale before;
    // No catalogue will ever be made of it.
    EXPECT_EQ(installLanguage(*QCoreApplication::instance(), QLocale(QStringLiteral("vo"))).language(),
              QLocale::English);
    EXPECT_EQ(counted(1, Noun::file), "1 file");
    EXPECT_EQ(counted(0, Noun::take), "0 takes");
    EXPECT_EQ(counted(1204, Noun::audioFile), "1,204 audio files");
    QLocale::setDefault(before);
}

}  // namespace
}  // namespace dravik
