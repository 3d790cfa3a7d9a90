#pragma once

#include "model/info_fichier.h"

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace dravik {

/// The files of a take: a list that does not change once it is made, so that copies of a take share it. A value; copies
/// may be read from several threads at once. To change a file is to put another list in the place of this one (`edit`).
class Fichiers {
  public:
    using value_type = InfoFichier;
    using const_iterator = std::vector<InfoFichier>::const_iterator;

    Fichiers() : files_(none()) {}
    Fichiers(std::vector<InfoFichier> files)  // NOLINT(google-explicit-constructor): it is that list
        : files_(std::make_shared<const std::vector<InfoFichier>>(std::move(files))) {}
    Fichiers(std::initializer_list<InfoFichier> files) : Fichiers(std::vector<InfoFichier>(files)) {}
    // To move is to share: a list that was moved from is still whole.
    Fichiers(const Fichiers&) = default;
    Fichiers& operator=(const Fichiers&) = default;
    ~Fichiers() = default;

    [[nodiscard]] std::size_t size() const noexcept { return files_->size(); }
    [[nodiscard]] bool empty() const noexcept { return files_->empty(); }
    [[nodiscard]] const_iterator begin() const noexcept { return files_->begin(); }
    [[nodiscard]] const_iterator end() const noexcept { return files_->end(); }
    [[nodiscard]] const InfoFichier& operator[](std::size_t at) const noexcept { return (*files_)[at]; }
    [[nodiscard]] const InfoFichier& at(std::size_t at) const { return files_->at(at); }
    [[nodiscard]] const InfoFichier& front() const noexcept { return files_->front(); }
    [[nodiscard]] const InfoFichier& back() const noexcept { return files_->back(); }

    /// The very same list? Two equal lists made apart are not.
    [[nodiscard]] bool isSharedWith(const Fichiers& other) const noexcept { return files_ == other.files_; }

    /// Changes a copy of the list, `change(std::vector<InfoFichier>&)`, and takes its place.
    template <typename Change>
    void edit(Change change) {
        std::vector<InfoFichier> copy = *files_;
        change(copy);
        *this = Fichiers(std::move(copy));
    }

  private:
    [[nodiscard]] static const std::shared_ptr<const std::vector<InfoFichier>>& none() {
        static const auto empty = std::make_shared<const std::vector<InfoFichier>>();
        return empty;
    }

    std::shared_ptr<const std::vector<InfoFichier>> files_;  ///< never null
};

}  // namespace dravik
