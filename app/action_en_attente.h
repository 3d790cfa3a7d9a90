#pragma once

#include <filesystem>
#include <optional>
#include <variant>
#include <vector>

namespace dravik {

/// The protected actions: what would replace the loaded take or end the program's work, and so is asked about first
/// when something is unsaved.
struct OuvrirFichier {
    std::filesystem::path fichier;
};
/// Another row of the table: its files.
struct OuvrirGroupe {
    std::vector<std::filesystem::path> fichiers;
};
struct OuvrirDossier {
    std::filesystem::path dossier;
};
/// Files that were dropped or came from outside, with the folder they belong to.
struct OuvrirDepotFichiers {
    std::vector<std::filesystem::path> fichiers;
    std::optional<std::filesystem::path> dossier;
};
struct QuitterApp {};

using ActionEnAttente = std::variant<OuvrirFichier, OuvrirGroupe, OuvrirDossier, OuvrirDepotFichiers, QuitterApp>;

}  // namespace dravik
