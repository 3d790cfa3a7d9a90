#include "base/folder_recovery.h"
#include "editing/save_transaction.h"
#include "operations/batch_rename.h"
#include "platform/native_file_ops.h"
#include "tests/support/child.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::FaultyFileOps;
using test::namesIn;
using test::readFile;
using test::TempFolder;
using testing::IsEmpty;

using Contents = std::map<std::string, Bytes>;

/// A folder of recordings, and a save that gives each a new scene, markers and the name of another. Deterministic: what
/// it makes of the folder is known beforehand.
class Scene {
  public:
    Scene(int files, std::size_t frames) : files_(files) {
        for (int i = 0; i < files; ++i) {
            originals_[name(i)] = test::recorderFile({}, {}, frames, static_cast<unsigned>(i) + 1).bytes();
        }
        const TempFolder folder;
        fill(folder.path());
        FaultyFileOps ops;
        ops.syncing = false;
        for (const bool markers : {false, true}) {
            EXPECT_FALSE(runSave(ops, items(folder.path(), false, markers), {}).failed());
            for (int i = 0; i < files; ++i)
                states_[i].push_back(readFile(folder / name(i)));
        }
    }

    void fill(const std::filesystem::path& folder) const {
        for (const auto& [file, bytes] : originals_)
            test::writeFile(folder / file, bytes);
        test::writeFile(folder / ".metadata-mine.tmp", "a file of the user");
    }
    [[nodiscard]] SaveReport save(FileOps& ops, const std::filesystem::path& folder) const {
        return runSave(ops, items(folder, true, true), {});
    }
    /// Every recording once, whole, all under their old names or all under their new ones; nothing else.
    void expectWhole(const std::filesystem::path& folder) const {
        const std::vector<std::string> names = namesIn(folder);
        std::vector<std::string> old = {".metadata-mine.tmp"};
        std::vector<std::string> renamed = old;
        for (int i = 0; i < files_; ++i) {
            old.push_back(name(i));
            renamed.push_back(newName(i));
        }
        const bool isRenamed = testing::Matches(testing::UnorderedElementsAreArray(renamed))(names);
        EXPECT_TRUE(isRenamed || testing::Matches(testing::UnorderedElementsAreArray(old))(names))
            << testing::PrintToString(names);
        if (testing::Test::HasFailure()) return;
        for (int i = 0; i < files_; ++i) {
            const Bytes content = readFile(folder / (isRenamed ? newName(i) : name(i)));
            const bool asBefore = content == originals_.at(name(i));
            const bool asAfter =
                isRenamed && std::find(states_.at(i).begin(), states_.at(i).end(), content) != states_.at(i).end();
            EXPECT_TRUE(asBefore || asAfter) << name(i);
        }
    }

  private:
    static std::string name(int i) { return "take " + std::to_string(i) + ".wav"; }
    /// The first two swap their names, the others get new ones.
    static std::string newName(int i) { return i < 2 ? name(1 - i) : "renamed " + std::to_string(i) + ".wav"; }

    [[nodiscard]] std::vector<SaveItem> items(const std::filesystem::path& folder, bool rename, bool markers) const {
        std::vector<SaveItem> all;
        for (int i = 0; i < files_; ++i) {
            SaveItem item;
            item.fichier.url = folder / name(i);
            item.fichier.taille = originals_.at(name(i)).size();
            item.valeurs.emplace().scene = "Scene " + std::to_string(i);
            if (markers) item.cues = {{{}, 100, "slate"}};
            if (rename) item.newName = std::filesystem::path(newName(i)).stem();
            all.push_back(item);
        }
        return all;
    }

    int files_;
    Contents originals_;
    std::map<int, std::vector<Bytes>> states_;  ///< a file's contents after each of its writes
};

/// Does the work in a child that is killed at its n-th system call, after another one failed. False when it ended
/// before.
template <typename Work>
bool killedAtCall(int nth, Work work, int failing = 0) {
    return test::inChild([&] {
               FaultyFileOps ops;
               ops.syncing = false;  // what a power cut loses cannot be tested this way
               ops.failAt({.nth = failing});
               ops.before([&](test::Call, int count) {
                   if (count == nth) ::raise(SIGKILL);
               });
               work(ops);
               return 0;
           }) == -SIGKILL;
}

TEST(Kill, AtEverySystemCallOfASaveAndOfItsRecoveryLosesNothing) {
    const Scene scene(3, 200);
    const auto native = makeNativeFileOps();
    int calls = 0;
    for (bool killed = true; killed;) {
        ++calls;
        ASSERT_LT(calls, 500);
        int recoveryCalls = 0;
        for (bool recoveryKilled = true; recoveryKilled;) {
            ++recoveryCalls;
            SCOPED_TRACE("killed at call " + std::to_string(calls) + ", the recovery at " +
                         std::to_string(recoveryCalls));
            const TempFolder folder;
            scene.fill(folder.path());
            killed = killedAtCall(calls, [&](FileOps& ops) { static_cast<void>(scene.save(ops, folder.path())); });
            recoveryKilled = killedAtCall(recoveryCalls,
                                          [&](FileOps& ops) { static_cast<void>(recoverFolder(ops, folder.path())); });
            const Recovery recovery = recoverFolder(*native, folder.path());
            EXPECT_THAT(recovery.failures, IsEmpty());
            scene.expectWhole(folder.path());
            EXPECT_TRUE(recoverFolder(*native, folder.path()).empty()) << "there is nothing left to put right";
            if (HasFailure()) return;
        }
    }
    EXPECT_GT(calls, 60);
}

TEST(Kill, AtEverySystemCallOnTheWayBackFromAFailedRenameLosesNothing) {
    const Scene scene(3, 200);
    const auto native = makeNativeFileOps();
    constexpr int callsOfARename = 20;
    int kills = 0;
    for (int failing = 1; failing <= callsOfARename; ++failing) {
        bool killed = true;
        for (int calls = failing + 1; killed && calls < failing + 40; ++calls) {
            SCOPED_TRACE("failed at call " + std::to_string(failing) + ", killed at " + std::to_string(calls));
            const TempFolder folder;
            scene.fill(folder.path());
            const auto save = [&](FileOps& ops) { static_cast<void>(scene.save(ops, folder.path())); };
            killed = killedAtCall(calls, save, failing);
            kills += killed ? 1 : 0;
            EXPECT_THAT(recoverFolder(*native, folder.path()).failures, IsEmpty());
            scene.expectWhole(folder.path());
            if (HasFailure()) return;
        }
    }
    EXPECT_GT(kills, callsOfARename);
}

TEST(Kill, AtEverySystemCallOfABatchRenameAndOfItsRecoveryLosesNothing) {
    const std::vector<std::pair<std::string, std::string>> names = {
        {"a.wav", "b.wav"}, {"b.wav", "c.wav"}, {"c.wav", "a.wav"}, {"D.wav", "d.wav"}, {"e.wav", "new.wav"}};
    // "name=content": whole, and all under their old names or all under their new ones.
    const auto picture = [](const std::filesystem::path& folder) {
        std::vector<std::string> lines;
        for (const std::string& name : namesIn(folder))
            lines.push_back(name + "=" + std::string(asText(readFile(folder / name))));
        return lines;
    };
    std::vector<std::string> old;
    std::vector<std::string> renamed;
    for (const auto& [from, to] : names) {
        old.push_back(from + "=" + from);
        renamed.push_back(to + "=" + from);
    }
    const auto native = makeNativeFileOps();
    int calls = 0;
    int finished = 0;
    for (bool killed = true; killed;) {
        ++calls;
        ASSERT_LT(calls, 200);
        int recoveryCalls = 0;
        for (bool recoveryKilled = true; recoveryKilled;) {
            ++recoveryCalls;
            SCOPED_TRACE("killed at call " + std::to_string(calls) + ", the recovery at " +
                         std::to_string(recoveryCalls));
            const TempFolder folder;
            std::vector<OperationAudioBatchRenameItem> items;
            for (const auto& [from, to] : names) {
                test::writeFile(folder / from, from);
                InfoFichier file;
                file.url = folder / from;
                items.push_back({file, to});
            }
            killed = killedAtCall(calls, [&](FileOps& ops) {
                static_cast<void>(
                    OperationsAudio::runBatchRename(ops, items, OperationAudioBatchRenameMode::renameInPlace, {}, {}));
            });
            recoveryKilled = killedAtCall(recoveryCalls,
                                          [&](FileOps& ops) { static_cast<void>(recoverFolder(ops, folder.path())); });
            EXPECT_THAT(recoverFolder(*native, folder.path()).failures, IsEmpty());
            const std::vector<std::string> now = picture(folder.path());
            const bool isRenamed = testing::Matches(testing::UnorderedElementsAreArray(renamed))(now);
            finished += isRenamed ? 1 : 0;
            EXPECT_TRUE(isRenamed || testing::Matches(testing::UnorderedElementsAreArray(old))(now))
                << testing::PrintToString(now);
            EXPECT_TRUE(recoverFolder(*native, folder.path()).empty()) << "there is nothing left to put right";
            if (HasFailure()) return;
        }
    }
    EXPECT_GT(calls, 25);
    EXPECT_GT(finished, 5);
}

TEST(Kill, AtRandomInstantsLosesNothing) {
    constexpr int rounds = 60;
    const Scene scene(6, 100'000);
    const auto native = makeNativeFileOps();
    const auto clean = [&](const std::filesystem::path& folder) {
        return scene.save(*native, folder).failed() ? 1 : 0;
    };
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    {
        const TempFolder folder;
        scene.fill(folder.path());
        ASSERT_EQ(test::inChild([&] { return clean(folder.path()); }), 0);
    }
    const auto length = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin).count();
    std::mt19937 random(20240307);
    int killed = 0;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        const TempFolder folder;
        scene.fill(folder.path());
        const pid_t child = test::startChild([&] { return clean(folder.path()); });
        std::this_thread::sleep_for(
            std::chrono::microseconds(std::uniform_int_distribution<std::int64_t>(0, length)(random)));
        ::kill(child, SIGKILL);
        if (test::waitForChild(child) == -SIGKILL) ++killed;
        EXPECT_THAT(recoverFolder(*native, folder.path()).failures, IsEmpty());
        scene.expectWhole(folder.path());
        if (HasFailure()) return;
    }
    EXPECT_GT(killed, rounds / 4) << "too many ended before they were killed";
}

}  // namespace
}  // namespace dravik
