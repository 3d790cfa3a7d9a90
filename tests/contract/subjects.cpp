#include "tests/contract/subjects.h"

#include "editing/cue_writer.h"
#include "editing/metadata_writer.h"
#include "editing/save_transaction.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/samples.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <algorithm>

namespace dravik::test {
namespace {

using Pad = WavBuilder::Pad;

MetadataValues edited() {
    MetadataValues values;
    values.scene = "Contract 7";
    values.note = "new note";
    values.circled = true;
    values.sampleRate = 48000;
    return values;
}

std::vector<CueMarker> markers() { return {{{}, 900, "slate"}, {{}, 10, std::nullopt}}; }

void save(FileOps& ops, const std::filesystem::path& folder, const TaskContext& task, bool rename, bool cues) {
    SaveItem item;
    item.fichier.url = folder / "take.wav";
    item.fichier.taille = std::filesystem::file_size(item.fichier.url);
    item.valeurs = edited();
    if (rename) item.newName = "new";
    if (cues) item.cues = markers();
    const SaveReport report = runSave(ops, {item}, task);
    if (report.cancelled) throw Cancelled();
    report.throwIfFailed();
}

}  // namespace

std::vector<Subject> builtSubjects() {
    const Ixml ixml{.note = "wind & rain", .wild = "TRUE"};
    const Bytes audio = audioBytes(999);
    const std::vector<Cue> cues = {{4, 100, "old"}, {9, 50, std::nullopt}};
    std::vector<Subject> all;
    const auto add = [&](const char* name, const WavBuilder& file) { all.push_back({name, file.bytes()}); };
    add("as a recorder writes it", recorderFile(ixml));
    add("iXML behind the audio", WavBuilder().bext().fmt().audio(333).ixml(ixml).chunk("iXTC", "1234"));
    add("no iXML", WavBuilder().bext().fmt().audio(333).chunk("abcd", "12345"));
    add("no bext", WavBuilder().ixml(ixml).fmt({.channels = 2, .bits = 16}).audio(100));
    add("float, many tracks",
        WavBuilder().fmt({.channels = 12, .bits = 32, .isFloat = true, .extensible = true}).audio(50));
    add("odd audio without pad byte at the end", WavBuilder().ixml(ixml).fmt().chunk("data", audio, Pad::missing));
    add("odd iXML without pad byte in the middle",
        WavBuilder().fmt().chunk("iXML", "<BWFXML><SCENE>1</SCENE>\n</BWFXML>", Pad::missing).chunk("data", audio));
    add("pad byte that is not zero",
        WavBuilder().ixml(ixml).fmt().chunk("abcd", "123", Pad::notZero).chunk("data", audio));
    add("bytes behind the last chunk", WavBuilder().ixml(ixml).fmt().audio(100).raw("tail"));
    add("bytes behind the last chunk, no iXML", WavBuilder().fmt().audio(100).raw("tail"));
    add("wrong form size", WavBuilder().ixml(ixml).fmt().audio(100).riffSize(12345));
    add("markers with and without names",
        WavBuilder().ixml(ixml).cues(cues).fmt().audio(100).chunk("LIST", "INFOinfo"));
    add("label list in lower case",
        WavBuilder().fmt().audio(100).chunk("cue ", cuePayload(cues)).chunk("list", adtlPayload(cues)));
    add("padded iXML", WavBuilder().chunk("iXML", ixmlText(ixml) + std::string(3000, '\0')).fmt().audio(333));
    add("iXML in Latin-1", WavBuilder().ixml({.note = "\xE9t\xE9"}).fmt().audio(100));
    add("iXML twice", WavBuilder().ixml(ixml).fmt().audio(100).ixml({.scene = "other"}));
    add("empty iXML", WavBuilder().chunk("iXML", "").fmt().audio(100));
    add("iXML that is none", WavBuilder().chunk("iXML", audioBytes(301)).fmt().audio(100));
    add("many chunks of the same name",
        WavBuilder().fmt().chunk("JUNK", "1").chunk("JUNK", "").chunk("JUNK", "22").audio(9));
    add("short bext", WavBuilder().bext({.bytes = 100}).ixml(ixml).fmt().audio(100));
    add("interrupted recording", WavBuilder().bext().ixml(ixml).fmt().chunkClaiming("data", audio, 5'000'000));
    add("interrupted recording without iXML", WavBuilder().fmt().chunkClaiming("data", audio, 5'000'000));
    add("cut inside the iXML",
        WavBuilder().fmt().chunk("data", audio).chunkClaiming("iXML", asBytes(ixmlText(ixml)), 90'000));
    add("header alone", WavBuilder());
    add("RF64", WavBuilder("RF64").ds64(999).ixml(ixml).fmt().chunkClaiming("data", audio, 0xFFFFFFFF));
    all.push_back({"no RIFF file", toBytes("ID3 and much else that is no recording at all")});
    all.push_back({"empty", {}});
    return all;
}

std::vector<Subject> sampleSubjects() {
    std::vector<Subject> all;
    for (const std::filesystem::path& path : samplesOf(".wav"))
        all.push_back({path.filename().string(), readFile(path)});
    return all;
}

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = {
        {.name = "metadata",
         .run = [](FileOps& ops, const auto& folder,
                   const TaskContext& task) { save(ops, folder, task, false, false); },
         .writesMetadata = true},
        {.name = "markers",
         .run =
             [](FileOps& ops, const auto& folder, const TaskContext& task) {
                 FolderSyncs folders;
                 CueWriter(ops).ecrireCues(folder / "take.wav", markers(), task, folders);
                 folders.syncAll(ops);
             },
         .writesCues = true},
        {.name = "metadata, markers and name",
         .run = [](FileOps& ops, const auto& folder, const TaskContext& task) { save(ops, folder, task, true, true); },
         .writesMetadata = true,
         .writesCues = true,
         .renames = true},
    };
    return all;
}

bool Outcomes::allow(const Bytes& bytes) const {
    return std::find(contents.begin(), contents.end(), bytes) != contents.end();
}

Outcomes outcomesOf(const Operation& operation, const Subject& subject) {
    Outcomes outcomes{{subject.bytes}};
    const TempFolder folder;
    const std::filesystem::path path = folder / "take.wav";
    writeFile(path, subject.bytes);
    FaultyFileOps ops;
    ops.syncing = false;
    FolderSyncs folders;
    try {
        if (operation.writesMetadata) {
            SauvegardeMetadata(ops).ecrire(path, edited(), {}, folders);
            outcomes.contents.push_back(readFile(path));
        }
        if (operation.writesCues) {
            CueWriter(ops).ecrireCues(path, markers(), {}, folders);
            outcomes.contents.push_back(readFile(path));
        }
    } catch (const Error&) {
        // Refused in one of its steps, an operation does none of them.
        return {{subject.bytes}, true};
    }
    return outcomes;
}

}  // namespace dravik::test
