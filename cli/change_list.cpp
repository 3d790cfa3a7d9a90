#include "cli/change_list.h"

#include "base/paths.h"

#include <fmt/format.h>

namespace dravik {
namespace {

class Changes {
  public:
    void text(std::string_view field, const std::optional<std::string>& before, const std::string& after) {
        if (before.value_or("") == after) return;
        lines_.push_back(fmt::format("{}: {} -> {}", field, quoted(before), quoted(after)));
    }
    void flag(std::string_view field, bool before, bool after) {
        if (before != after) lines_.push_back(fmt::format("{}: {} -> {}", field, yesNo(before), yesNo(after)));
    }
    void line(std::string text) { lines_.push_back(std::move(text)); }
    [[nodiscard]] std::vector<std::string> lines() && { return std::move(lines_); }

  private:
    static std::string quoted(const std::optional<std::string>& text) {
        return text ? fmt::format("\"{}\"", *text) : std::string("none");
    }
    static std::string_view yesNo(bool value) { return value ? "yes" : "no"; }
    std::vector<std::string> lines_;
};

std::optional<std::string> shownName(const InfoFichier& fichier, int track) {
    const auto found = fichier.nomsPistes.find(track);
    return found == fichier.nomsPistes.end() ? std::nullopt : std::optional(displayName(found->second));
}

}  // namespace

std::vector<std::string> changesOf(const SaveItem& item) {
    const InfoFichier& fichier = item.fichier;
    Changes changes;
    if (item.valeurs) {
        const MetadataValues& valeurs = *item.valeurs;
        if (valeurs.project) changes.text("project", fichier.project, *valeurs.project);
        if (valeurs.scene) changes.text("scene", fichier.scene, *valeurs.scene);
        if (valeurs.prise) changes.text("take", fichier.prise, *valeurs.prise);
        if (valeurs.tape) changes.text("tape", fichier.tape, *valeurs.tape);
        if (valeurs.note) changes.text("note", fichier.notes, *valeurs.note);
        if (valeurs.circled) changes.flag("circled", fichier.circled, *valeurs.circled);
        if (valeurs.wild) changes.flag("wild", fichier.wild, *valeurs.wild);
        if (!valeurs.timecode.empty()) changes.text("timecode", fichier.timecode, valeurs.timecode);
        if (!valeurs.framerate.empty()) changes.text("framerate", fichier.framerate, valeurs.framerate);
        for (const auto& [track, name] : valeurs.nomsPistes) {
            changes.text(fmt::format("track {}", track), shownName(fichier, track), name);
        }
        if (valeurs.soleTrackName) {
            const int key = fichier.nomsPistes.empty() ? 1 : fichier.nomsPistes.begin()->first;
            changes.text("track name", shownName(fichier, key), *valeurs.soleTrackName);
        }
        const auto channel = [&](std::string_view field, std::optional<int> before, int after) {
            const std::string shown = before ? fmt::format("{}", *before) : std::string("none");
            if (before != after) changes.line(fmt::format("{}: {} -> {}", field, shown, after));
        };
        const std::map<int, int>& channels = fichier.numerosTracks;
        for (const auto& [track, number] : valeurs.numerosTracks) {
            const auto own = channels.find(track);
            channel(fmt::format("channel of track {}", track),
                    own == channels.end() ? std::nullopt : std::optional(own->second), number);
        }
        if (valeurs.soleTrackNumber) {
            channel("channel", channels.empty() ? std::nullopt : std::optional(channels.begin()->second),
                    *valeurs.soleTrackNumber);
        }
    }
    if (item.newName && *item.newName != fichier.nom) {
        changes.line(fmt::format("file name: \"{}\" -> \"{}\"", fichier.nom, *item.newName));
    }
    return std::move(changes).lines();
}

}  // namespace dravik
