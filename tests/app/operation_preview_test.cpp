#include "app/operation_eligibility.h"
#include "app/operation_request.h"
#include "tests/cli/program.h"
#include "tests/operations/export_stage.h"

#include <gmock/gmock.h>

namespace dravik {
namespace {

/// A report is not previewed here.
class NoPages final : public PdfRenderer {
  public:
    [[nodiscard]] Bytes render(const ReportDocument&, const PageSetup&, const TaskContext&) const override {
        return {};
    }
};

using Line = std::pair<std::string, std::string>;  ///< a new file, or "!" and why there is none; and its note

std::vector<Line> shownBy(const OperationPreview& preview) {
    std::vector<Line> lines;
    for (const OperationPreviewRow& row : preview.rows) {
        lines.emplace_back(row.problem.isEmpty() ? row.target.toStdString() : "!" + row.problem.toStdString(),
                           row.unchanged ? std::string() : row.remark.toStdString());
    }
    return lines;
}

std::vector<Line> toldBy(const test::Ran& ran) {
    std::vector<Line> lines;
    const auto document = ran.json();
    for (const auto& result : document["results"]) {
        const auto message = result["message"].get<std::string>();
        const std::size_t end = message.find(".wav. ");
        const std::string note = end == std::string::npos ? std::string() : message.substr(end + 6);
        if (!result["ok"].get<bool>()) lines.emplace_back("!" + message, "");
        for (const auto& output : result["outputs"])
            lines.emplace_back(std::filesystem::path(output.get<std::string>()).filename().string(), note);
    }
    return lines;
}

/// Two poly takes, one of which carries what an export does not take along, and a mono set that begins unevenly.
class OperationPreviewTest : public testing::Test {
  protected:
    OperationPreviewTest() {
        const test::Ixml named{.take = "3", .tracks = {{1, 1, "Boom"}, {2, 2, "Lav"}}};
        test::WavBuilder().ixml(named).fmt({.channels = 2}).audio(600).write(stage.source() / "poly.wav");
        test::WavBuilder()
            .chunk("iXML", "<MIXER_SETTINGS>")
            .fmt({.channels = 2})
            .audio(600)
            .write(stage.source() / "mixer.wav");
        for (const std::uint64_t number : {1U, 2U}) {
            test::WavBuilder()
                .bext({.timeReference = number})
                .fmt()
                .audio(600)
                .write(stage.source() / ("set_T0" + std::to_string(number) + ".wav"));
        }
        request.destination = stage.out();
        takes = scanFolder(stage.source(), test::FakeCodecs(), true, {});
    }

    [[nodiscard]] OperationPreview shown(OperationsTab tab) {
        request.tab = tab;
        request.groupes.clear();
        request.choices.clear();
        request.fichiers.clear();
        for (const GroupeFichiers& take : takes) {
            if (!isEligible(tab, take)) continue;
            request.groupes.push_back(take);
            TrackChoices& choices =
                request.choices.emplace(take.fichiers.front().url, TrackChoices::standard(take)).first->second;
            choices.supprimes = {0};
            choices.ordre = {1, 0};
            request.fichiers.insert(request.fichiers.end(), take.fichiers.begin(), take.fichiers.end());
        }
        const ExportServices exports = stage.services();
        return previewOf(request, {exports, pages}, {});
    }
    [[nodiscard]] test::Ran told(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--dry-run", "--json", stage.source().string()});
        return test::run(arguments);
    }

    test::ExportStage stage;
    NoPages pages;
    OperationRequest request;
    std::vector<GroupeFichiers> takes;
};

TEST_F(OperationPreviewTest, NamesTheFilesThatADryRunNamesAndRefusesTheSameTakes) {
    const std::string out = stage.out().string();
    const struct {
        OperationsTab tab;
        std::vector<std::string> arguments;
        std::size_t lines;
    } cases[] = {
        {OperationsTab::merge, {"merge", "--dest", out}, 1},
        {OperationsTab::split, {"split", "--dest", out}, 4},
        {OperationsTab::deleteTracks, {"delete-tracks", "--tracks", "1", "--dest", out}, 2},
        {OperationsTab::reorderTracks, {"reorder", "--order", "2,1", "--dest", out}, 4},
        {OperationsTab::export_, {"export", "--format", "wav", "--dest", out}, 3},
    };
    for (const auto& [tab, arguments, lines] : cases) {
        const OperationPreview preview = shown(tab);
        const test::Ran dry = told(arguments);
        EXPECT_EQ(shownBy(preview), toldBy(dry)) << arguments[0];
        EXPECT_EQ(preview.rows.size(), lines) << arguments[0];
        EXPECT_EQ(preview.canRun, dry.exitCode != 3) << arguments[0];
    }
}

TEST_F(OperationPreviewTest, OfARenamingRefusesWhatADryRunRefuses) {
    const std::string blocked = (stage.source() / "poly.wav").string();
    const struct {
        const char* pattern;
        std::string copyTo;
        bool canRun;
    } cases[] = {
        {"{originalName}_{take}", {}, true},
        {"{scene}", {}, false},  // is nothing for one, the same for others
        {"{originalName}", stage.out().string(), true},
        {"{originalName}", (stage.out() / "new" / "deep").string(), true},
        {"{originalName}", blocked, false},
        {"{originalName}", blocked + "/deep", false},
    };
    for (const auto& [pattern, copyTo, canRun] : cases) {
        request.rename.pattern = parsePattern(pattern);
        std::vector<std::string> arguments = {"rename", "--pattern", pattern};
        if (!copyTo.empty()) {
            request.rename.mode = OperationAudioBatchRenameMode::copyAndRename;
            request.rename.destination = copyTo;
            arguments.insert(arguments.end(), {"--copy-to", copyTo});
        }
        const OperationPreview preview = shown(OperationsTab::rename);
        const test::Ran dry = told(arguments);
        EXPECT_EQ(preview.canRun, canRun) << pattern << " " << copyTo;
        EXPECT_EQ(preview.canRun, preview.problems.isEmpty());
        EXPECT_EQ(dry.exitCode, canRun ? 0 : 3) << pattern << " " << copyTo << dry.err;
        if (copyTo.rfind(blocked, 0) == 0) continue;  // is told as the folder's fault alone
        auto expected = shownBy(preview);
        for (auto& line : expected) {
            // A script is told of each file what becomes of it: all or none are renamed.
            if (!canRun && !line.first.starts_with('!')) line = {"!No files were changed.", ""};
        }
        EXPECT_EQ(expected, toldBy(dry)) << pattern;
    }
}

TEST_F(OperationPreviewTest, TellsEveryFolderThatHasNoRoomBesideTheTakesThatCannotBeUsed) {
    stage.ops.free = 10;
    std::filesystem::create_directory(stage.source() / "other");
    std::filesystem::copy_file(stage.source() / "poly.wav", stage.source() / "other" / "poly.wav");
    takes.clear();
    for (const std::filesystem::path& folder : {stage.source(), stage.source() / "other"}) {
        for (GroupeFichiers& take : scanFolder(folder, test::FakeCodecs(), true, {}))
            takes.push_back(std::move(take));
    }
    request.destination.reset();
    const OperationPreview preview = shown(OperationsTab::export_);
    const std::string problems = preview.problems.toStdString();
    EXPECT_THAT(problems, testing::StartsWith("2 takes cannot be used. There is not enough room in “"));
    EXPECT_THAT(problems, testing::HasSubstr("/source”: "));
    EXPECT_THAT(problems, testing::HasSubstr("/source/other”: "));
    EXPECT_FALSE(preview.canRun);
}

}  // namespace
}  // namespace dravik
