#include "base/text.h"
#include "editing/metadata_writer.h"
#include "model/probe.h"
#include "model/wave/bext.h"
#include "model/wave/chunk_walk.h"
#include "model/wave/cue_bytes.h"
#include "tests/contract/subjects.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/samples.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using test::FaultyFileOps;
using test::Operation;
using test::Outcomes;
using test::readFile;
using test::Subject;
using test::TempFolder;
using test::writeFile;

/// A chunk that the operation has no business with, as it must be found again.
struct Untouched {
    std::string id, payload;
    std::uint64_t claimedSize = 0;
    friend bool operator==(const Untouched&, const Untouched&) = default;
};

std::string_view payloadOf(const Bytes& file, const Chunk& chunk) {
    return asText(ByteSpan(file).subspan(chunk.payload(), chunk.size));
}

std::vector<Untouched> untouched(const Bytes& file, const ChunkTable& table, const Operation& operation) {
    std::vector<Untouched> out;
    for (const Chunk& chunk : table.chunks) {
        const std::string id(chunk.id.view());
        const std::string_view payload = payloadOf(file, chunk);
        const bool isCue = id == "cue " || ((id == "LIST" || id == "list") && payload.starts_with("adtl"));
        if (operation.writesCues && isCue) continue;
        if (operation.writesMetadata && id == "iXML") continue;
        if (operation.writesMetadata && id == "bext" && chunk.size >= bext::descriptionBytes) {
            // The Description is ours to change, the rest is not. (No start timecode is given.)
            out.push_back({id, std::string(payload.substr(bext::descriptionBytes)), chunk.claimedSize});
            continue;
        }
        out.push_back({id, std::string(payload), chunk.claimedSize});
    }
    return out;
}

void expectPreserved(const Bytes& before, const Bytes& after, const Operation& operation) {
    const auto old = walkChunks(MemorySource(before));
    const auto now = walkChunks(MemorySource(after));
    ASSERT_TRUE(old && now);
    EXPECT_EQ(untouched(before, *old, operation), untouched(after, *now, operation));
    EXPECT_EQ(asText(ByteSpan(before).last(old->bytesBehind())), asText(ByteSpan(after).last(now->bytesBehind())));
    EXPECT_EQ(readLE<std::uint32_t>(after.data() + 4), after.size() - 8);
    for (const Chunk& chunk : now->chunks) {
        EXPECT_TRUE(chunk.size % 2 == 0 || chunk.padInFile || chunk.truncated()) << "unpadded: " << chunk.id.view();
    }
    EXPECT_EQ(now->first("iXML") != nullptr, operation.writesMetadata || old->first("iXML") != nullptr);
}

void holdPreservation(const std::vector<Subject>& subjects, const std::set<std::string>& refused) {
    for (const Subject& subject : subjects) {
        for (const Operation& operation : test::operations()) {
            SCOPED_TRACE(operation.name + ": " + subject.name);
            const Outcomes outcomes = outcomesOf(operation, subject);
            const bool taken =
                !refused.contains(subject.name) && !refused.contains(subject.name + ": " + operation.name);
            ASSERT_EQ(outcomes.refused, !taken);
            if (taken) expectPreserved(subject.bytes, outcomes.contents.back(), operation);
        }
    }
}

TEST(Preservation, OfAudioAndOfEveryUntouchedChunkInBuiltFiles) {
    holdPreservation(test::builtSubjects(),
                     {"RF64", "no RIFF file", "empty", "interrupted recording without iXML", "cut inside the iXML",
                      "interrupted recording: markers", "interrupted recording: metadata, markers and name"});
}

TEST(Preservation, OfAudioAndOfEveryUntouchedChunkInRealRecordings) {
    DRAVIK_NEEDS_SAMPLES();
    holdPreservation(test::sampleSubjects(), {"rf64_small.wav", "rifx_big_endian.wav", "id3_before_riff.wav"});
}

/// All that the probe reads, but for identity and size.
bool sameMetadata(const InfoFichier& a, const InfoFichier& b) {
    return a.project == b.project && a.scene == b.scene && a.tape == b.tape && a.prise == b.prise &&
           a.notes == b.notes && a.circled == b.circled && a.wild == b.wild && a.channels == b.channels &&
           a.dureeSecondes == b.dureeSecondes && a.timecode == b.timecode && a.recordingDate == b.recordingDate &&
           a.framerate == b.framerate && a.sampleRate == b.sampleRate && a.bits == b.bits &&
           a.nomsPistes == b.nomsPistes && a.numerosTracks == b.numerosTracks && a.familleUID == b.familleUID;
}

/// The iXML but for white space, which moves around the flags that every save writes anew, and for padding.
std::string withoutBlanks(const Bytes& file) {
    std::string text = ixmlTextIn(MemorySource(file), *walkChunks(MemorySource(file))).value_or("none");
    std::erase_if(text, [](char c) { return isAsciiSpace(c) || c == '\0'; });
    return text;
}

TEST(Preservation, OfEveryValueWhenASaveIsForcedWithoutAnEdit) {
    std::vector<Subject> subjects = test::builtSubjects();
    for (Subject& sample : test::sampleSubjects())
        subjects.push_back(std::move(sample));
    for (const Subject& subject : subjects) {
        const TempFolder folder;
        const auto path = folder / "take.wav";
        writeFile(path, subject.bytes);
        const InfoFichier before = analyserFichier(path, test::FakeCodecs());
        FaultyFileOps ops;
        ops.syncing = false;
        FolderSyncs folders;
        const auto save = [&] { SauvegardeMetadata(ops).ecrire(path, {}, {}, folders); };
        try {
            save();
        } catch (const ErreurSauvegarde&) {
            continue;
        }
        const bool hadIxml = lireChunkIXML(path) && before.project;
        const InfoFichier after = analyserFichier(path, test::FakeCodecs());
        if (hadIxml) {
            EXPECT_TRUE(sameMetadata(before, after)) << subject.name;
        }
        const std::string once = withoutBlanks(readFile(path));
        save();
        EXPECT_TRUE(withoutBlanks(readFile(path)) == once)
            << subject.name << ": a second save has nothing left to change";
    }
}

/// The bytes between the places in which the two differ first and last.
std::string_view difference(std::string_view text, std::string_view other) {
    const auto begin = static_cast<std::size_t>(
        std::mismatch(text.begin(), text.end(), other.begin(), other.end()).first - text.begin());
    std::size_t same = 0;
    while (same < std::min(text.size(), other.size()) - begin &&
           text[text.size() - 1 - same] == other[other.size() - 1 - same])
        ++same;
    return text.substr(begin, text.size() - same - begin);
}

TEST(Preservation, OfAllButTheDigitsWhenANumberOfARecordersFileIsEdited) {
    DRAVIK_NEEDS_SAMPLES();
    std::size_t edited = 0;
    for (const Subject& subject : test::sampleSubjects()) {
        const TempFolder folder;
        const auto path = folder / "take.wav";
        writeFile(path, subject.bytes);
        FaultyFileOps ops;
        ops.syncing = false;
        FolderSyncs folders;
        const auto save = [&](const MetadataValues& valeurs) {
            SauvegardeMetadata(ops).ecrire(path, valeurs, {}, folders);
        };
        try {
            save({});
        } catch (const ErreurSauvegarde&) {
            continue;
        }
        const InfoFichier before = analyserFichier(path, test::FakeCodecs());
        if (before.numerosTracks.empty()) continue;
        const std::string text = withoutBlanks(readFile(path));
        for (const auto& [position, number] : before.numerosTracks) {
            MetadataValues valeurs;
            valeurs.numerosTracks = {{position, 777}};
            save(valeurs);
            InfoFichier expected = before;
            expected.numerosTracks[position] = 777;
            EXPECT_TRUE(sameMetadata(expected, analyserFichier(path, test::FakeCodecs()))) << subject.name;
            const std::string after = withoutBlanks(readFile(path));
            const std::string_view changed = difference(after, text);
            EXPECT_TRUE(!changed.empty() && changed.find_first_not_of('7') == std::string_view::npos)
                << subject.name << ": " << changed;
            valeurs.numerosTracks = {{position, number}};
            save(valeurs);
            EXPECT_EQ(withoutBlanks(readFile(path)), text) << subject.name;
            ++edited;
        }
    }
    EXPECT_GT(edited, 10U);
}

}  // namespace
}  // namespace dravik
