#include "editing/metadata_writer.h"

#include "base/paths.h"
#include "base/text.h"
#include "editing/save_values.h"
#include "model/info_fichier.h"
#include "model/wave/bext.h"
#include "model/wave/ixml_check.h"
#include "model/wave/ixml_document.h"
#include "model/wave/ixml_editor.h"

#include <algorithm>
#include <mutex>

#include <fmt/format.h>

namespace dravik {
namespace {

std::mutex& metadataWrites() {
    static std::mutex lock;
    return lock;
}

std::string message(const std::filesystem::path& file, std::string_view why) {
    return fmt::format("{} {} The file was not changed.", fileNameText(file), why);
}

bool isUpdatedBext(const Chunk& chunk) { return chunk.id == FourCC("bext") && chunk.size >= bext::descriptionBytes; }

/// A chunk that holds nothing but padding is as good as none.
bool holdsText(std::string_view payload) {
    return payload.find_first_not_of(std::string_view(" \0\t\r\n", 5)) != std::string_view::npos;
}

/// The document in a chunk as UTF-8 text; the empty document where it holds none.
std::string documentIn(const WaveView& file, const Chunk& chunk) {
    if (chunk.size > maxIxmlBytes) {
        throw ErreurSauvegarde::xmlInvalide(file.url, "holds an iXML chunk that is too large to be one.");
    }
    const Bytes payload = file.payload(chunk);
    if (!holdsText(asText(payload))) return std::string(emptyIxmlDocument);
    const std::optional<std::string> text = decodeIxml(asText(payload));
    if (!text) throw ErreurSauvegarde::xmlInvalide(file.url, "holds an iXML text that cannot be read.");
    return *text;
}

std::string updatedDocument(const WaveView& file, const std::string& document, const MetadataValues& valeurs) {
    if (!holdsOnlyText(valeurs)) {
        throw ErreurSauvegarde::xmlInvalide(
            file.url, "cannot take these values: one of them holds a control character, which no iXML reader takes.");
    }
    std::string edited;
    try {
        edited = mettreAJourIXML(document, valeurs);
    } catch (const IxmlError& error) {
        throw ErreurSauvegarde::xmlInvalide(file.url, fmt::format("cannot take these values: {}", error.what()));
    }
    if (!editIsClean(document, edited, valeurs)) {
        throw ErreurSauvegarde::xmlInvalide(
            file.url, "cannot take these values: a tag in one of them, or in its iXML, would hide other fields.");
    }
    return withPaddingKept(document, std::move(edited));
}

}  // namespace

ErreurSauvegarde ErreurSauvegarde::xmlInvalide(const std::filesystem::path& file, std::string_view why) {
    return {Reason::xmlInvalide, message(file, why)};
}
ErreurSauvegarde ErreurSauvegarde::chunkIXMLIntrouvable(const std::filesystem::path& file) {
    return {Reason::chunkIXMLIntrouvable, message(file, "has no iXML chunk.")};
}
ErreurSauvegarde ErreurSauvegarde::erreurEcriture(const std::filesystem::path& file, std::string_view why) {
    return {Reason::erreurEcriture, message(file, why)};
}

PlannedRewrite planMetadata(const WaveView& file, const MetadataValues& valeurs) {
    const std::filesystem::path& url = file.url;
    if (!isEditable(url)) throw ErreurSauvegarde::erreurEcriture(url, onlyWavAndBwf);
    if (!file.isRiffWave()) throw ErreurSauvegarde::erreurEcriture(url, "is not a RIFF/WAVE file.");
    const ChunkTable& table = *file.table;

    const Chunk* ixml = table.first("iXML");
    if (const std::string_view problem = appendProblem(table); ixml == nullptr && !problem.empty()) {
        throw ErreurSauvegarde::erreurEcriture(url, problem);
    }
    const std::string document = ixml != nullptr ? documentIn(file, *ixml) : std::string(emptyIxmlDocument);
    MetadataValues toWrite = valeurs;
    if (ixml != nullptr) {
        // The file's own state, which its two texts then agree on.
        const IxmlDocument before(document);
        if (!toWrite.circled) toWrite.circled = lireCircled(before);
    } else if (const Chunk* description = table.first("bext"); description != nullptr && isUpdatedBext(*description)) {
        // A new iXML document says what the recorder's description said.
        const DescriptionFlags flags = descriptionFlags(file.payload(*description));
        if (!toWrite.circled) toWrite.circled = flags.circled;
        if (!toWrite.wild) toWrite.wild = flags.wild;
    }
    BextValues bextValues{toWrite, toWrite.circled, toWrite.wild};
    if (ixml != nullptr && !bextValues.wild) bextValues.wild = lireWild(IxmlDocument(document));

    WaveRewrite rewrite(table);
    for (const Chunk& chunk : table.chunks) {
        const bool rewritten = chunk.id == FourCC("iXML") || isUpdatedBext(chunk);
        if (rewritten && chunk.truncated()) {
            throw ErreurSauvegarde::erreurEcriture(url, "ends inside its metadata.");
        }
        if (chunk.id == FourCC("iXML")) {
            rewrite.put(chunk.id,
                        asBytes(updatedDocument(file, &chunk == ixml ? document : documentIn(file, chunk), toWrite)));
        } else if (isUpdatedBext(chunk)) {
            rewrite.put(chunk.id, updatedBext(file.payload(chunk), bextValues));
        } else {
            rewrite.keep(chunk);
        }
    }
    if (ixml == nullptr) rewrite.put("iXML", asBytes(updatedDocument(file, document, toWrite)));

    std::optional<PlannedRewrite> planned = rewrite.plan();
    if (const std::string_view problem = planProblem(file.source, planned); !problem.empty()) {
        throw ErreurSauvegarde::erreurEcriture(url, problem);
    }
    return std::move(*planned);
}

void SauvegardeMetadata::ecrire(const std::filesystem::path& url, const MetadataValues& valeurs,
                                const TaskContext& task, FolderSyncs& folders) {
    const std::scoped_lock lock(metadataWrites());
    task.checkCancelled();
    WaveFile file(ops_, resolvedTarget(url));
    const PlannedRewrite planned = planMetadata(file.viewAs(url), valeurs);
    const std::string_view problem =
        outcomeProblem(replaceWith(ops_, file, planned, TempKind::metadata, task, folders));
    if (!problem.empty()) throw ErreurSauvegarde::erreurEcriture(url, problem);
}

}  // namespace dravik
