#pragma once

#include "base/bytes.h"
#include "base/file_ops.h"
#include "base/progress.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace dravik::test {

/// What the contract suites run over: every writer of recordings (the operations) on every kind of file (the subjects).
/// A new writer or a new kind of damage is one more entry here, and is held to all contracts at once.

/// A file: built, or a sample's copy.
struct Subject {
    std::string name;
    Bytes bytes;
};
[[nodiscard]] std::vector<Subject> builtSubjects();
/// The real WAV files; empty where they are absent.
[[nodiscard]] std::vector<Subject> sampleSubjects();

/// A writer at work on the file "take.wav" of a folder.
struct Operation {
    std::string name;
    /// Throws what the writer throws.
    std::function<void(FileOps&, const std::filesystem::path& folder, const TaskContext&)> run;
    bool writesMetadata = false;
    bool writesCues = false;
    bool renames = false;  ///< to "new.wav"
};
[[nodiscard]] const std::vector<Operation>& operations();

/// The states a file may be in after an operation, whole or stopped: as before, or as after each of its steps. The last
/// is the finished one.
struct Outcomes {
    std::vector<Bytes> contents;
    bool refused = false;  ///< the operation, or one of its steps, does not take this file: it stays as it is
    [[nodiscard]] bool allow(const Bytes& bytes) const;
};
[[nodiscard]] Outcomes outcomesOf(const Operation& operation, const Subject& subject);

}  // namespace dravik::test
