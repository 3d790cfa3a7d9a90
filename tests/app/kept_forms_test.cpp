#include "app/rename_patterns.h"
#include "app/report_defaults.h"
#include "tests/support/temp_folder.h"

#include <QStringList>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;

class KeptForms : public testing::Test {
  protected:
    test::TempFolder folder;
    const std::filesystem::path file = folder / "settings.ini";

    static std::vector<QString> names(const UserDefaults& settings) {
        std::vector<QString> all;
        for (const NamedRenamePattern& one : savedRenamePatterns(settings))
            all.push_back(one.name);
        return all;
    }
};

TEST_F(KeptForms, RenamePatternsComeBackWhateverStandsInThem) {
    const RenamePattern hostile = {BlocRenommage::texte("a, \"b\"; c=\\d {} é\n"), BlocRenommage::separateur("_"),
                                   BlocRenommage::token(TokenRenommage::scene), BlocRenommage::texte(" ")};
    {
        UserDefaults settings(file);
        saveRenamePattern(settings, QStringLiteral("  Day, \"two\" "), hostile);
        saveRenamePattern(settings, QStringLiteral("alpha"), parsePattern("{scene}"));
        saveRenamePattern(settings, QStringLiteral("  "), hostile);
        saveRenamePattern(settings, QStringLiteral("no blocks"), {});
        rememberRenamePattern(settings, hostile);
    }
    const UserDefaults later(file);
    EXPECT_THAT(names(later), ElementsAre(QStringLiteral("alpha"), QStringLiteral("Day, \"two\"")));
    EXPECT_TRUE(isSamePattern(savedRenamePatterns(later).back().pattern, hostile));
    EXPECT_TRUE(isSamePattern(rememberedRenamePattern(later), hostile));
}

TEST_F(KeptForms, APatternUnderTheSameNameIsReplacedAndAnUnreadableOneIsLeftAlone) {
    UserDefaults settings(file);
    settings.store(QStringLiteral("renamePatterns"),
                   QStringList{QStringLiteral("of a later version"), QStringLiteral("{slate}")});
    saveRenamePattern(settings, QStringLiteral("Editorial"), parsePattern("{scene}"));
    saveRenamePattern(settings, QStringLiteral("EDITORIAL"), parsePattern("{take}"));
    EXPECT_THAT(names(settings), ElementsAre(QStringLiteral("EDITORIAL")));
    EXPECT_TRUE(isSamePattern(savedRenamePatterns(settings).front().pattern, parsePattern("{take}")));
    removeRenamePattern(settings, QStringLiteral("editorial"));
    EXPECT_THAT(names(settings), ElementsAre());
    EXPECT_TRUE(settings.stored(QStringLiteral("renamePatterns")).toStringList().contains(QStringLiteral("{slate}")));
    settings.store(QStringLiteral("renamePattern"), QStringLiteral("{slate}"));
    EXPECT_TRUE(rememberedRenamePattern(settings).empty());
}

TEST_F(KeptForms, ReportDefaultsComeBackUnderTheirKeys) {
    ReportForm form;
    form.production = "Long, \"quoted\" & é";
    form.referenceMode = customChoice;
    form.referenceAutre = "-23 LUFS";
    form.bitDepthMode = "24 bit";
    form.notesGlobales = "two\nlines";
    form.inclureCSV = false;
    form.colonnes.circled = false;
    form.colonnes.format = true;
    {
        UserDefaults settings(file);
        EXPECT_EQ(reportDefaults(settings), ReportForm());
        saveReportDefaults(settings, form);
        EXPECT_EQ(settings.stored(QStringLiteral("rapportReferenceMode")).toString(), QStringLiteral("custom"));
        EXPECT_EQ(settings.stored(QStringLiteral("rapportColCircled")).toString(), QStringLiteral("false"));
    }
    EXPECT_EQ(reportDefaults(UserDefaults(file)), form);
}

TEST_F(KeptForms, ReportDefaultsOfTheWrongKindCountAsNeverKept) {
    UserDefaults settings(file);
    settings.store(QStringLiteral("rapportInclurePDF"), QStringLiteral("perhaps"));
    settings.store(QStringLiteral("rapportColFormat"), 17);
    EXPECT_EQ(reportDefaults(settings), ReportForm());
}

}  // namespace
}  // namespace dravik
