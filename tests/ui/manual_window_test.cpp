#include "ui/manual_window.h"

#include "tests/ui/window_stage.h"
#include "ui/manual_pages.h"

#include <QTextBrowser>

#include <gmock/gmock.h>

namespace dravik {
namespace {

TEST(ManualPages, EveryLinkAndPictureIsThereAndEveryPageIsLinked) {
    const QDir folder(QStringLiteral(":/manual"));
    QStringList names;
    for (const ManualPage& page : manualPages()) {
        names << page.name + QStringLiteral(".md");
        EXPECT_FALSE(page.title.isEmpty()) << page.name.toStdString();
        for (qsizetype at = page.text.indexOf(QStringLiteral("](")); at >= 0;
             at = page.text.indexOf(QStringLiteral("]("), at + 1)) {
            const QString to = page.text.mid(at + 2, page.text.indexOf(u')', at) - at - 2);
            EXPECT_TRUE(folder.exists(to)) << page.name.toStdString() << " leads to " << to.toStdString();
        }
    }
    EXPECT_THAT(folder.entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name),
                testing::UnorderedElementsAreArray(names));
}

class Manual : public testing::Test, public test::WindowStage {
  protected:
    ManualWindow& manual = window->manualWindow();
    QListWidget* list = manual.findChild<QListWidget*>();
    QTextBrowser* page = manual.findChild<QTextBrowser*>();
    QLineEdit* search = manual.findChild<QLineEdit*>();

    void open() {
        QTest::keyClick(window.get(), Qt::Key_F1, Qt::ShiftModifier);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&manual));
    }
    [[nodiscard]] QStringList shown() const {
        QStringList titles;
        for (int at = 0; at < list->count(); ++at)
            if (!list->item(at)->isHidden()) titles << list->item(at)->text();
        return titles;
    }
};

TEST_F(Manual, IsReadFromPageToPageWithTheKeyboard) {
    open();
    EXPECT_EQ(manual.currentPage(), QStringLiteral("index"));
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(manual.currentPage(), QStringLiteral("open"));
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(page, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(manual.currentPage(), QStringLiteral("open"));
    EXPECT_EQ(list->currentRow(), 1);
    emit page->anchorClicked(QUrl(QStringLiteral("edit.md")));
    EXPECT_EQ(manual.currentPage(), QStringLiteral("edit"));
    emit page->anchorClicked(QUrl(QStringLiteral("https://dravik.test/")));
    EXPECT_THAT(workspace.opened, testing::ElementsAre(QStringLiteral("https://dravik.test/")));
    QTest::keyClick(page, Qt::Key_Escape);
    EXPECT_FALSE(manual.isVisible());
}

TEST_F(Manual, ASearchKeepsThePagesWithAllItsWordsAndMarksThem) {
    open();
    QTest::keyClick(&manual, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(search, QStringLiteral("dither CLIPPED"));
    EXPECT_EQ(shown(), QStringList(QStringLiteral("Export WAV, MP3 and AAC")));
    EXPECT_EQ(manual.currentPage(), QStringLiteral("export"));
    EXPECT_FALSE(page->extraSelections().isEmpty());
    search->setText(QStringLiteral("no page has this"));
    EXPECT_THAT(shown(), testing::IsEmpty());
    QTest::keyClick(search, Qt::Key_Escape);
    EXPECT_EQ(shown().size(), static_cast<qsizetype>(manualPages().size()));
    EXPECT_TRUE(manual.isVisible());
}

}  // namespace
}  // namespace dravik
