#include "editing/metadata_writer.h"

#include "base/paths.h"
#include "base/text.h"
#include "editing/wave_rewrite.h"
#include "model/wave/bext.h"
#include "model/wave/ixml_document.h"

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
bool holdsText(std::string_view payload) { return payload.find_first_not_of(std::string_view(" \0\t\r\n", 5)) != std::string_view::npos; }

/// The document in a chunk as UTF-8 text; the empty document where it holds none.
std::string documentIn(const WaveFile& file, const Chunk& chunk) {
    if (chunk.size > maxIxmlBytes) {
        throw ErreurSauvegarde::xmlInvalide(file.path(), "holds an iXML chunk that is too large to be one.");
    }
    const Bytes payload = file.payload(chunk);
    if (!holdsText(asText(payload))) return std::string(emptyIxmlDocument);
    const std::optional<std::string> text = decodeIxml(asText(payload));
    if (!text) throw ErreurSauvegarde::xmlInvalide(file.path(), "holds an iXML text that cannot be read.");
    return *text;
}

std::string updatedDocument(const WaveFile& file, const std::string& document, const ValeursMetadata& valeurs) {
    try {
        return withPaddingKept(document, mettreAJourIXML(document, valeurs));
    } catch (const IxmlError& error) {
        throw ErreurSauvegarde::xmlInvalide(file.path(), fmt::format("cannot take these values: {}", error.what()));
    }
}

}  // namespace

ErreurSauvegarde ErreurSauvegarde::xmlInvalide(const std::filesystem::path& file, std::string_view why) {
    return {Cas::xmlInvalide, message(file, why)};
}
ErreurSauvegarde ErreurSauvegarde::chunkIXMLIntrouvable(const std::filesystem::path& file) {
    return {Cas::chunkIXMLIntrouvable, message(file, "has no iXML chunk.")};
}
ErreurSauvegarde ErreurSauvegarde::erreurEcriture(const std::filesystem::path& file, std::string_view why) {
    return {Cas::erreurEcriture, message(file, why)};
}

void SauvegardeMetadata::ecrire(const std::filesystem::path& url, const ValeursMetadata& valeurs,
                                const TaskContext& task, FolderSyncs& folders) {
    const std::scoped_lock lock(metadataWrites());
    task.checkCancelled();
    const WaveFile file(resolvedTarget(url));
    if (!file.isRiffWave()) throw ErreurSauvegarde::erreurEcriture(url, "is not a RIFF/WAVE file.");
    const ChunkTable& table = file.table();

    const Chunk* ixml = table.first("iXML");
    if (ixml == nullptr && !canAppendChunk(table)) {
        throw ErreurSauvegarde::erreurEcriture(
            url, "has a damaged last chunk, behind which new metadata would be lost.");
    }
    const std::string document = ixml != nullptr ? documentIn(file, *ixml) : std::string(emptyIxmlDocument);
    const IxmlDocument before(document);
    BextValues bextValues{valeurs, valeurs.circled, valeurs.wild};
    if (ixml != nullptr) {
        // The file's own state, which the two texts then agree on.
        if (!bextValues.circled) bextValues.circled = lireCircled(before);
        if (!bextValues.wild) bextValues.wild = lireWild(before);
    }

    WaveRewrite rewrite(file);
    for (const Chunk& chunk : table.chunks) {
        const bool rewritten = chunk.id == FourCC("iXML") || isUpdatedBext(chunk);
        if (rewritten && chunk.truncated()) {
            throw ErreurSauvegarde::erreurEcriture(url, "ends inside its metadata.");
        }
        if (chunk.id == FourCC("iXML")) {
            rewrite.put(chunk.id, asBytes(updatedDocument(file, &chunk == ixml ? document : documentIn(file, chunk), valeurs)));
        } else if (isUpdatedBext(chunk)) {
            rewrite.put(chunk.id, updatedBext(file.payload(chunk), bextValues));
        } else {
            rewrite.keep(chunk);
        }
    }
    if (ixml == nullptr) rewrite.put("iXML", asBytes(updatedDocument(file, document, valeurs)));

    const std::optional<FilePlan> plan = rewrite.plan();
    if (!plan) throw ErreurSauvegarde::erreurEcriture(url, "would grow beyond the 4 GiB of a RIFF/WAVE file.");
    switch (replaceWith(ops_, file, rewrite, *plan, TempKind::metadata, task, folders)) {
        case RewriteOutcome::done: return;
        case RewriteOutcome::structureMismatch:
            throw ErreurSauvegarde::erreurEcriture(url, "could not be rewritten so that it reads back whole.");
        case RewriteOutcome::sourceChanged:
            throw ErreurSauvegarde::erreurEcriture(url, "was written to by another program during the save.");
    }
}

}  // namespace dravik
