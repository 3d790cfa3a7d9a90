#include "base/folder_recovery.h"
#include "base/paths.h"
#include "platform/native_file_ops.h"
#include "tests/contract/subjects.h"
#include "tests/support/child.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/samples.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dravik {
namespace {

using test::Call;
using test::FaultyFileOps;
using test::namesIn;
using test::Operation;
using test::Outcomes;
using test::readFile;
using test::Subject;
using test::TempFolder;
using test::writeFile;

enum class Ending { done, failed, cancelled };

/// One operation on one subject in a folder of its own.
struct Attempt {
    TempFolder folder;
    FaultyFileOps ops;

    explicit Attempt(const Subject& subject) {
        ops.syncing = false;
        writeFile(folder / "take.wav", subject.bytes);
    }
    Ending run(const Operation& operation, const TaskContext& task = {}) {
        try {
            operation.run(ops, folder.path(), task);
            return Ending::done;
        } catch (const Cancelled&) {
            return Ending::cancelled;
        } catch (const std::exception&) {
            return Ending::failed;
        }
    }
    /// One whole file under one of its names and nothing else; gives its content.
    Bytes expectWhole(const Operation& operation, const Outcomes& outcomes) {
        const std::vector<std::string> names = namesIn(folder.path());
        EXPECT_EQ(names.size(), 1U) << testing::PrintToString(names);
        if (names.size() != 1) return {};
        EXPECT_TRUE(names.front() == "take.wav" || (operation.renames && names.front() == "new.wav")) << names.front();
        Bytes content = readFile(folder / names.front());
        EXPECT_TRUE(outcomes.allow(content)) << "neither as before nor as after";
        return content;
    }
    void expectFinished(const Operation& operation, const Outcomes& outcomes) {
        EXPECT_TRUE(expectWhole(operation, outcomes) == outcomes.contents.back());
        const bool renamed = operation.renames && !outcomes.refused;
        EXPECT_EQ(namesIn(folder.path()).front(), renamed ? "new.wav" : "take.wav");
    }
};

/// Runs every operation on every subject with the n-th fault, for n from 1 until it is not met any more.
template <typename Fail>
void forEveryFault(const std::vector<Subject>& subjects, Fail fail) {
    for (const Subject& subject : subjects) {
        for (const Operation& operation : test::operations()) {
            const Outcomes outcomes = outcomesOf(operation, subject);
            for (int nth = 1;; ++nth) {
                SCOPED_TRACE(operation.name + ": " + subject.name + ", fault " + std::to_string(nth));
                ASSERT_LT(nth, 200);
                Attempt attempt(subject);
                if (!fail(attempt, operation, outcomes, nth)) break;
                if (testing::Test::HasFailure()) return;
            }
        }
    }
}

/// A few of the real ones: failures do not depend on which bytes are copied.
std::vector<Subject> subjectsToFail() {
    std::vector<Subject> subjects = test::builtSubjects();
    const std::set<std::string> chosen = {"A101_1_1.WAV", "Sr001-2C-01_01.WAV", "ixml_odd_size_without_pad.wav",
                                          "umid.wav"};
    for (Subject& sample : test::sampleSubjects()) {
        if (chosen.contains(sample.name)) subjects.push_back(std::move(sample));
    }
    return subjects;
}

TEST(Failure, OfAnySystemCallLeavesTheFileAsBeforeOrAsAfter) {
    std::set<Call> met;
    forEveryFault(subjectsToFail(),
                  [&](Attempt& attempt, const Operation& operation, const Outcomes& outcomes, int nth) {
                      Call failed = Call::create;
                      int throwing = 0;
                      attempt.ops.before([&](Call call, int) {
                          if (call != Call::lock && call != Call::share && ++throwing == nth) failed = call;
                      });
                      attempt.ops.failAt({.nth = nth});
                      const Ending ending = attempt.run(operation);
                      attempt.ops.before({});
                      const bool wasMet = attempt.ops.failures() > 0;
                      attempt.ops.failAt({.nth = 0});
                      if (!wasMet) {
                          EXPECT_EQ(ending, outcomes.refused ? Ending::failed : Ending::done);
                          attempt.expectFinished(operation, outcomes);
                          return false;
                      }
                      met.insert(failed);
                      if (failed == Call::remove || failed == Call::syncFolder) {
                          // The file may be done already; a journal that was not removed is left for the next opening
                          // of the folder.
                          EXPECT_TRUE(recoverFolder(attempt.ops, attempt.folder.path()).failures.empty());
                          attempt.expectWhole(operation, outcomes);
                          return true;
                      }
                      EXPECT_EQ(ending, Ending::failed);
                      const Bytes content = attempt.expectWhole(operation, outcomes);
                      if (!operation.renames) {
                          EXPECT_TRUE(content == outcomes.contents.front());
                      }
                      return true;
                  });
    EXPECT_THAT(met, testing::IsSupersetOf({Call::create, Call::write, Call::copy, Call::attributes, Call::sync,
                                            Call::rename, Call::renameNoReplace, Call::syncFolder, Call::remove}));
}

TEST(Failure, OfEveryCallFromOneOnStillLeavesTheFileWhole) {
    // A volume that is pulled out: nothing works any more, not even the clean-up. What is left is put right when it is
    // back.
    forEveryFault(test::builtSubjects(),
                  [&](Attempt& attempt, const Operation& operation, const Outcomes& outcomes, int nth) {
                      attempt.ops.failAt({.nth = nth, .allLater = true, .errorNumber = ENODEV});
                      static_cast<void>(attempt.run(operation));
                      const bool wasMet = attempt.ops.failures() > 0;
                      attempt.ops.failAt({.nth = 0});
                      if (!wasMet) return false;
                      EXPECT_TRUE(recoverFolder(attempt.ops, attempt.folder.path()).failures.empty());
                      attempt.expectWhole(operation, outcomes);
                      return true;
                  });
}

TEST(Failure, OfAFullDiskLeavesTheFileAsItWas) {
    const std::set<Call> needRoom = {Call::create,   Call::write,      Call::copy,
                                     Call::truncate, Call::attributes, Call::sync};
    forEveryFault(test::builtSubjects(),
                  [&](Attempt& attempt, const Operation& operation, const Outcomes& outcomes, int nth) {
                      attempt.ops.failAt({.kinds = needRoom, .nth = nth, .allLater = true, .errorNumber = ENOSPC});
                      const Ending ending = attempt.run(operation);
                      if (attempt.ops.failures() == 0) return false;
                      EXPECT_EQ(ending, Ending::failed);
                      const Bytes content = attempt.expectWhole(operation, outcomes);
                      if (!operation.renames) {
                          EXPECT_TRUE(content == outcomes.contents.front());
                      }
                      return true;
                  });
}

TEST(Failure, ForWantOfRoomComesBeforeTheFirstByte) {
    for (const Subject& subject : test::builtSubjects()) {
        for (const Operation& operation : test::operations()) {
            SCOPED_TRACE(operation.name + ": " + subject.name);
            Attempt attempt(subject);
            attempt.ops.free = subject.bytes.size() / 2;
            EXPECT_EQ(attempt.run(operation), Ending::failed);
            EXPECT_EQ(attempt.ops.calls(Call::write) + attempt.ops.calls(Call::copy), 0);
            EXPECT_EQ(namesIn(attempt.folder.path()), std::vector<std::string>{"take.wav"});
            EXPECT_TRUE(readFile(attempt.folder / "take.wav") == subject.bytes);
        }
    }
}

TEST(Failure, OfACancelAtAnyProgressReportLeavesTheFileAsBeforeOrAsAfter) {
    std::vector<Subject> subjects = test::builtSubjects();
    subjects.push_back({"longer than a copy step", test::recorderFile({}, {}, 4'000'000).bytes()});
    forEveryFault(subjects, [&](Attempt& attempt, const Operation& operation, const Outcomes& outcomes, int nth) {
        CancellationToken token;
        int reports = 0;
        TaskContext task{&token, [&](const Progress&) {
                             if (++reports == nth) token.cancel();
                         }};
        const Ending ending = attempt.run(operation, task);
        const Bytes content = attempt.expectWhole(operation, outcomes);
        if (ending == Ending::cancelled && !operation.renames) {
            EXPECT_TRUE(content == outcomes.contents.front());
        }
        return reports >= nth;
    });
}

TEST(Failure, InAReadOnlyFolderChangesNothing) {
    const Subject subject{"recording", test::recorderFile().bytes()};
    for (const Operation& operation : test::operations()) {
        SCOPED_TRACE(operation.name);
        Attempt attempt(subject);
        const std::filesystem::path path = attempt.folder / "take.wav";
        ASSERT_EQ(::chown(path.c_str(), test::userWithoutRights(), static_cast<gid_t>(-1)), 0);
        ASSERT_EQ(::chmod(attempt.folder.path().c_str(), 0555), 0);
        EXPECT_EQ(test::inChildWithoutRights([&] {
                      const auto ops = makeNativeFileOps();
                      try {
                          operation.run(*ops, attempt.folder.path(), {});
                      } catch (const std::exception& error) {
                          return std::string(error.what()).find("Permission denied") == std::string::npos &&
                                         systemText(error) != "Permission denied"
                                     ? 2
                                     : 0;
                      }
                      return 1;
                  }),
                  0);
        ASSERT_EQ(::chmod(attempt.folder.path().c_str(), 0755), 0);
        EXPECT_EQ(namesIn(attempt.folder.path()), std::vector<std::string>{"take.wav"});
        EXPECT_TRUE(readFile(path) == subject.bytes);
    }
}

}  // namespace
}  // namespace dravik
