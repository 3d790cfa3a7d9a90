#include "cli/show_command.h"

#include "base/paths.h"
#include "cli/cue_table.h"
#include "cli/display_text.h"
#include "cli/json_output.h"
#include "cli/opened_folder.h"
#include "editing/cue_writer.h"
#include "model/audio_metadata.h"
#include "model/probe.h"
#include "model/wave/walked_file.h"

#include <algorithm>

#include <fmt/format.h>

namespace dravik {
namespace {

/// Prints a chunk of any size without holding it.
constexpr std::uint64_t printBlockBytes = 1024U * 1024U;

/// A file and the chunks it is made of.
struct ShownFile {
    InfoFichier info;
    std::vector<Chunk> chunks;
    std::vector<CueMarker> cues;
};

std::vector<Chunk> chunksOf(const std::filesystem::path& file) {
    const WalkedFile opened(FileHandle::tryOpenForReading(file));
    return opened.table() ? opened.table()->chunks : std::vector<Chunk>();
}

class Page {
  public:
    Page(const ShownFile& file, const Console& console)
        : file_(file), width_(console.outputWidth()), colour_(console.outputHasColour()) {}

    std::string text() {
        out_ = styled(printable(fileNameText(file_.info.url)), Style::strong, colour_) + "\n\n";
        fields();
        tracks();
        chunks();
        cues();
        return std::move(out_);
    }

  private:
    void line(std::string_view label, std::string_view value) {
        if (value.empty()) return;
        constexpr int labelCells = 10;
        const std::string title = styled(fmt::format("{:<{}}", label, labelCells), Style::dim, colour_);
        out_ += fmt::format("  {}  {}\n", title, printable(value));
    }
    void section(std::string_view title, const Table& table) {
        const std::optional<int> inner = width_ ? std::optional(*width_ - 2) : std::nullopt;
        std::string body = table.render(inner, colour_);
        if (body.empty()) return;
        out_ += fmt::format("\n{}\n", styled(title, Style::strong, colour_));
        std::string_view rest = body;
        while (!rest.empty()) {
            const std::size_t end = rest.find('\n') + 1;
            out_.append("  ").append(rest.substr(0, end));
            rest.remove_prefix(end);
        }
    }

    void fields() {
        const InfoFichier& info = file_.info;
        line("Project", info.project.value_or(""));
        line("Scene", info.scene.value_or(""));
        line("Take", info.prise.value_or(""));
        line("Tape", info.tape.value_or(""));
        line("Note", info.notes.value_or(""));
        line("Circled", info.circled ? "yes" : "no");
        line("Wild", info.wild ? "yes" : "no");
        line("Start", info.timecode.value_or(""));
        line("Frame rate", info.framerate.value_or(""));
        if (info.recordingDate) line("Recorded", formatRecordingDate(*info.recordingDate));
        if (info.channels > 0) {
            line("Length", durationText(info.dureeSecondes));
            std::string audio =
                counted(static_cast<std::size_t>(info.channels), "channel") + ", " + sampleRateText(info.sampleRate);
            if (info.bits > 0) audio += fmt::format(", {} bit", info.bits);
            line("Audio", audio);
        }
        line("Format", info.format);
        line("Size", fmt::format("{} ({} bytes)", sizeText(info.taille), info.taille));
        line("Family", info.familleUID.value_or(""));
    }
    void tracks() {
        using enum Table::Align;
        Table table({{"#", 3, right, {}}, {"Channel", 1, right, {}}, {"Name", 2, left, 8}});
        GroupeFichiers alone;
        alone.fichiers = {file_.info};
        alone.estPoly = file_.info.channels > 1;
        bool worthTelling = false;
        for (const Piste& piste : tracksOfGroup(alone)) {
            worthTelling = worthTelling || piste.numeroTrack || !piste.nom.empty();
            table.add({{fmt::format("{}", piste.numero)},
                       {piste.numeroTrack ? fmt::format("{}", *piste.numeroTrack) : ""},
                       {piste.nom, Style::strong}});
        }
        if (worthTelling) section("Tracks", table);
    }
    void chunks() {
        using enum Table::Align;
        Table table({{"Id", 3, left, {}}, {"Offset", 1, right, {}}, {"Size", 2, right, {}}, {"", 0, left, {}}});
        for (const Chunk& chunk : file_.chunks) {
            table.add({{escapedId(chunk.id.view()), Style::strong},
                       {fmt::format("{}", chunk.offset)},
                       {fmt::format("{}", chunk.size)},
                       {chunk.truncated() ? fmt::format("cut off: claims {}", chunk.claimedSize) : "", Style::bad}});
        }
        section("Chunks", table);
    }
    void cues() { section("Cues", cueTable(file_.cues, file_.info.sampleRate)); }

    const ShownFile& file_;
    std::optional<int> width_;
    bool colour_;
    std::string out_;
};

ExitCode printIxml(const std::filesystem::path& file, Services& services) {
    const WalkedFile opened(FileHandle::openForReading(file));
    const FileSource& source = opened.source();
    const Chunk* ixml = opened.table() ? opened.table()->first("iXML") : nullptr;
    if (ixml == nullptr) {
        services.console.message(shown(file) + ": has no iXML chunk.");
        return ExitCode::someFailed;
    }
    for (std::uint64_t done = 0; done < ixml->size;) {
        const Bytes block = source.read(ixml->payload() + done, std::min(printBlockBytes, ixml->size - done));
        if (block.empty()) throw std::filesystem::filesystem_error("cannot read", file, source.error());
        services.console.print(asText(block));
        done += block.size();
    }
    return ExitCode::done;
}

}  // namespace

ExitCode runShow(const ShowOptions& options, Services& services) {
    if (const std::string problem = fileProblem(options.file); !problem.empty()) {
        services.console.message(problem);
        return ExitCode::someFailed;
    }
    if (options.ixml) return printIxml(options.file, services);
    const ShownFile file{analyserFichier(options.file, services.codecs), chunksOf(options.file),
                         lireCues(options.file)};
    services.console.print(options.json ? showJson(file.info, file.chunks, file.cues)
                                        : Page(file, services.console).text());
    if (file.info.channels > 0) return ExitCode::done;
    services.console.message(shown(options.file) + ": cannot be read as audio.");
    return ExitCode::someFailed;
}

}  // namespace dravik
