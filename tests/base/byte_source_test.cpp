#include "base/byte_source.h"

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace dravik {
namespace {

using test::TempFolder;

TEST(FileSource, GivesTheBytesOfTheFileHoweverTheReadsLieToItsWindows) {
    const TempFolder folder;
    const Bytes all = test::audioBytes(100'000);
    test::writeFile(folder / "file", all);
    const FileHandle handle = FileHandle::openForReading(folder / "file");
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        const FileSource source(handle);
        const MemorySource memory(all);
        for (int i = 0; i < 50; ++i) {
            const std::uint64_t offset = random() % (all.size() + 5000);
            const std::uint64_t length = random() % 2 == 0 ? random() % 40 : random() % 20'000;
            ASSERT_EQ(source.read(offset, length), memory.read(offset, length)) << offset << " " << length;
        }
        EXPECT_FALSE(source.error());
    }
}

TEST(FileSource, ReadsLittleAroundManySmallLooks) {
    const TempFolder folder;
    test::writeFile(folder / "file", "RIFF");
    std::filesystem::resize_file(folder / "file", 64U * 1024U * 1024U);
    const FileHandle handle = FileHandle::openForReading(folder / "file");
    const FileSource source(handle);
    std::array<std::byte, 8> header{};
    for (std::uint64_t offset = 12; offset < 8000; offset += 100)
        source.readAt(offset, header);
    EXPECT_LE(source.bytesRead(), 8192U) << "the header area comes with one read";
    for (std::uint64_t offset = 1'000'000; offset < 52'000'000; offset += 100'000)
        source.readAt(offset, header);
    EXPECT_LE(source.bytesRead(), 32U * 1024U) << "what is scattered is not read around";
}

TEST(FileSource, KeepsTheHeaderAreaWhileItLooksBehindTheAudio) {
    const TempFolder folder;
    test::writeFile(folder / "file", test::audioBytes(100'000));
    const FileHandle handle = FileHandle::openForReading(folder / "file");
    const FileSource source(handle);
    const auto look = [&](std::uint64_t offset) { return source.read(offset, 100).size(); };
    EXPECT_EQ(look(0) + look(90'000), 200U);
    const std::uint64_t read = source.bytesRead();
    EXPECT_EQ(look(300) + look(90'300) + look(8'000), 300U);
    EXPECT_EQ(source.bytesRead(), read);
}

TEST(FileSource, SeesWhatIsNoRegularFileAsEmptyAndAClosedHandleAsAnError) {
    const TempFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
    for (const std::filesystem::path& path : {folder / "pipe.wav", folder.path()}) {
        const FileHandle handle = FileHandle::tryOpenForReading(path);
        ASSERT_TRUE(handle.isOpen()) << "opening must not wait for a writer";
        EXPECT_EQ(FileSource(handle).size(), 0U);
    }
    const FileHandle none = FileHandle::tryOpenForReading(folder / "nothing");
    EXPECT_TRUE(FileSource(none).error());
}

TEST(FileSource, ReadsShortWithoutErrorWhenTheFileHasShrunk) {
    const TempFolder folder;
    test::writeFile(folder / "file", test::audioBytes(50'000));
    const FileHandle handle = FileHandle::openForReading(folder / "file");
    const FileSource source(handle);
    std::filesystem::resize_file(folder / "file", 20'000);
    EXPECT_EQ(source.read(15'000, 30'000).size(), 5'000U);
    EXPECT_FALSE(source.error());
}

}  // namespace
}  // namespace dravik
