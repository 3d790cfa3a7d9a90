#pragma once

#include "app/workspace.h"
#include "tests/support/temp_folder.h"

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <optional>
#include <vector>

namespace dravik::test {

/// A desktop with one card in it, which may stop to answer. Called on several threads.
class CardWorkspace final : public Workspace {
  public:
    QString open(const QString&) override { return {}; }
    QString reveal(const std::filesystem::path& file) override {
        const std::lock_guard lock(mutex_);
        revealed_.push_back(file);
        return {};
    }
    QString moveToTrash(const std::filesystem::path& file) override {
        if (trashFails) return QStringLiteral("There is no trash.");
        std::filesystem::rename(file, trash.path() / file.filename());
        return {};
    }
    QString eject(const Volume& volume) override {
        std::unique_lock lock(mutex_);
        ejected_.push_back(volume.root);
        answers_.wait(lock, [this] { return !hangs_; });
        if (ejectFails) return QStringLiteral("The card is busy.");
        card_.reset();
        return {};
    }
    std::vector<Volume> volumes() override {
        std::unique_lock lock(mutex_);
        answers_.wait(lock, [this] { return !hangs_; });
        return card_ ? std::vector<Volume>{*card_} : std::vector<Volume>();
    }

    void insert(const Volume& card) {
        const std::lock_guard lock(mutex_);
        card_ = card;
    }
    /// From now on neither volumes nor an eject come back, until this is taken back.
    void setHangs(bool hangs) {
        {
            const std::lock_guard lock(mutex_);
            hangs_ = hangs;
        }
        answers_.notify_all();
    }
    [[nodiscard]] std::vector<std::filesystem::path> ejected() {
        const std::lock_guard lock(mutex_);
        return ejected_;
    }
    [[nodiscard]] std::vector<std::filesystem::path> revealed() {
        const std::lock_guard lock(mutex_);
        return revealed_;
    }

    bool trashFails = false;
    bool ejectFails = false;
    TempFolder trash;

  private:
    std::mutex mutex_;
    std::condition_variable answers_;
    std::optional<Volume> card_;
    std::vector<std::filesystem::path> ejected_, revealed_;
    bool hangs_ = false;
};

}  // namespace dravik::test
