#include "app/folder_listing.h"

#include "app/text.h"
#include "base/abandoned_work.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <QElapsedTimer>
#include <QTest>
#include <chrono>
#include <semaphore>

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace dravik::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;

class FolderListingTest : public testing::Test {
  protected:
    FolderListingTest() {
        QObject::connect(&listing, &FolderListing::rowsRead, &listing,
                         [this](const std::shared_ptr<ReadRows>& read, bool complete) {
                             counts.push_back(read->rows.size());
                             isComplete = complete;
                             rows = read->originals;
                         });
        QObject::connect(&listing, &FolderListing::finished, &listing, [this](bool cancelled) {
            ++readings;
            wasCancelled = cancelled;
        });
        QObject::connect(&listing, &FolderListing::unreachable, &listing, [this] { ++unreachable; });
        // As the window's controller does.
        QObject::connect(&listing, &FolderListing::folderChanged, &listing, [this] {
            ++changes;
            if (again) again();
        });
    }
    void read() {
        again = [this] { listing.readFolder(folder.path(), true, FolderListing::Reuse::unchanged); };
        again();
        ASSERT_TRUE(settles(1));
    }
    /// The reading with this number has ended.
    [[nodiscard]] bool settles(int number) {
        return QTest::qWaitFor([&] { return readings >= number; }, 20'000);
    }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const GroupeFichiers& row : rows)
            all.push_back(row.nom);
        return all;
    }
    /// With a time long gone, as on a card of yesterday.
    void writeOld(const fs::path& file) {
        recorderFile().write(file);
        fs::last_write_time(file, fs::file_time_type::clock::now() - 24h);
    }

    TempFolder folder;
    FaultyFileOps files;
    FakeCodecs codecs;
    Background background;
    FolderListing listing{background, files, codecs, {20ms, 50ms, 5s}};
    std::function<void()> again;
    std::vector<GroupeFichiers> rows;
    std::vector<std::size_t> counts;
    bool isComplete = false, wasCancelled = false;
    int readings = 0, changes = 0, unreachable = 0;
};

TEST_F(FolderListingTest, RowsComeInBatchesOfAllSoFarTheFirstOfThemSmall) {
    for (int at = 0; at < 250; ++at)
        recorderFile().write(folder / fmt::format("T{:03}.wav", at));
    read();
    EXPECT_THAT(counts, ElementsAre(96U, 192U, 250U));
    EXPECT_TRUE(isComplete);
    EXPECT_FALSE(wasCancelled);
}

TEST_F(FolderListingTest, AfterACancelNothingMoreComes) {
    for (int at = 0; at < 300; ++at)
        recorderFile().write(folder / fmt::format("T{:03}.wav", at));
    QObject::connect(&listing, &FolderListing::rowsRead, &listing, &FolderListing::cancel);
    listing.readFolder(folder.path(), true, FolderListing::Reuse::nothing);
    ASSERT_TRUE(settles(1));
    QTest::qWait(300);
    EXPECT_EQ(counts.size(), 1U);
    EXPECT_TRUE(wasCancelled);
    EXPECT_EQ(readings, 1);
    EXPECT_FALSE(listing.isReading());
}

TEST_F(FolderListingTest, WhatComesAndGoesIsReadAndWhatStayedIsNotProbedAnew) {
    writeOld(folder / "A.wav");
    writeFile(folder / "B.mp3", "for the codecs");
    fs::last_write_time(folder / "B.mp3", fs::file_time_type::clock::now() - 24h);
    read();
    EXPECT_THAT(names(), ElementsAre("A", "B"));
    const int asked = codecs.asked;
    writeOld(folder / "C.wav");
    ASSERT_TRUE(QTest::qWaitFor([&] { return names() == std::vector<std::string>{"A", "B", "C"}; }, 20'000));
    EXPECT_EQ(codecs.asked, asked);
    fs::remove(folder / "A.wav");
    ASSERT_TRUE(QTest::qWaitFor([&] { return names() == std::vector<std::string>{"B", "C"}; }, 20'000));
    EXPECT_EQ(codecs.asked, asked);

    // Who asks for a reading wants one.
    const int before = readings;
    listing.readFolder(folder.path(), true, FolderListing::Reuse::nothing);
    ASSERT_TRUE(settles(before + 1));
    EXPECT_GT(codecs.asked, asked);
}

TEST_F(FolderListingTest, AFileThatGrowsIsProbedAgainWheneverItHasGrown) {
    recorderFile().write(folder / "A.wav");
    writeOld(folder / "B.wav");
    const Bytes whole = readFile(folder / "A.wav");
    const std::size_t end = whole.size();
    for (const std::size_t size : {end / 4, end / 2})
        writeFile(folder / "A.wav", ByteSpan(whole).first(size));
    read();
    const auto length = [&] { return rows.empty() ? 0U : rows.front().fichiers.front().taille; };
    EXPECT_EQ(length(), end / 2);
    for (const std::size_t size : {end - 40, end}) {
        fs::resize_file(folder / "A.wav", 0);
        writeFile(folder / "A.wav", ByteSpan(whole).first(size));
        ASSERT_TRUE(QTest::qWaitFor([&] { return length() == size; }, 20'000)) << size;
    }
    EXPECT_THAT(names(), ElementsAre("A", "B"));
}

TEST_F(FolderListingTest, AnOldTimeDoesNotHideThatAFileGrows) {
    writeOld(folder / "A.wav");
    const std::uint64_t size = fs::file_size(folder / "A.wav");
    read();
    appendToFile(folder / "A.wav", "more");
    fs::last_write_time(folder / "A.wav", fs::file_time_type::clock::now() - 24h);
    ASSERT_TRUE(QTest::qWaitFor([&] { return rows.front().fichiers.front().taille == size + 4; }, 20'000));
}

TEST_F(FolderListingTest, OwnWritingIsNotReportedAsAChange) {
    writeOld(folder / "A.wav");
    read();
    listing.setQuiet(true);
    writeOld(folder / "B.wav");
    appendToFile(folder / "A.wav", "more");
    QTest::qWait(400);
    EXPECT_EQ(changes, 0);
}

TEST_F(FolderListingTest, FilesOfSeveralFoldersAreAllWatched) {
    const TempFolder other;
    writeOld(folder / "A.wav");
    writeOld(other / "B.wav");
    again = [&] { listing.readFiles({folder / "A.wav", other / "B.wav"}, true, FolderListing::Reuse::unchanged); };
    again();
    ASSERT_TRUE(settles(1));
    EXPECT_THAT(names(), ElementsAre("A", "B"));
    fs::remove(other / "B.wav");
    ASSERT_TRUE(QTest::qWaitFor([&] { return names() == std::vector<std::string>{"A"}; }, 20'000));
    writeOld(other / "B.wav");
    ASSERT_TRUE(QTest::qWaitFor([&] { return names() == std::vector<std::string>{"A", "B"}; }, 20'000));
    // A folder that is gone is no reason to take its rows away: it may be a card that comes back.
    fs::rename(other.path(), other.path().string() + "-away");
    ASSERT_TRUE(QTest::qWaitFor([&] { return unreachable == 1; }, 20'000));
    EXPECT_THAT(names(), ElementsAre("A", "B"));
    fs::rename(other.path().string() + "-away", other.path());
}

TEST_F(FolderListingTest, AFolderThatComesBackIsReadAgain) {
    writeOld(folder / "A.wav");
    read();
    const fs::path away = folder.path().string() + "-away";
    fs::rename(folder.path(), away);
    ASSERT_TRUE(QTest::qWaitFor([&] { return unreachable == 1; }, 20'000));
    const std::size_t before = counts.size();
    writeOld(away / "B.wav");
    fs::rename(away, folder.path());
    ASSERT_TRUE(QTest::qWaitFor([&] { return counts.size() > before; }, 10'000));
    EXPECT_THAT(names(), ElementsAre("A", "B"));
}

/// A file whose volume does not answer.
class SilentCodecs final : public AudioFileReader {
  public:
    [[nodiscard]] std::optional<AudioFormat> format(const fs::path&) const noexcept override {
        asked.release();
        answer.acquire();
        return {};
    }
    mutable std::binary_semaphore asked{0}, answer{0};
};

TEST_F(FolderListingTest, AReadingThatHangsIsLeftBehind) {
    writeFile(folder / "A.mp3", "for the codecs");
    const SilentCodecs silent;
    auto hung = std::make_unique<FolderListing>(background, files, silent);
    hung->readFolder(folder.path(), true, FolderListing::Reuse::nothing);
    silent.asked.acquire();
    QElapsedTimer closing;
    closing.start();
    hung.reset();
    EXPECT_LT(closing.elapsed(), 10'000);
    EXPECT_FALSE(waitForAbandonedWork(0ms));
    silent.answer.release();
    EXPECT_TRUE(waitForAbandonedWork(20s));
}

}  // namespace
}  // namespace dravik::test
