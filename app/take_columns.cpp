#include "app/take_columns.h"

#include "app/text.h"
#include "model/audio_metadata.h"
#include "model/wave/timecode.h"

#include <QCoreApplication>
#include <cmath>
#include <numeric>

#include <fmt/format.h>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::TakeColumns)
};

/// The file as a take of its own, so that both are shown by the same rules.
GroupeFichiers alone(const InfoFichier& fichier) {
    GroupeFichiers groupe;
    groupe.nom = fichier.nom;
    groupe.fichiers = {fichier};
    mergeMetadata(groupe);
    return groupe;
}

/// "WAV", "4 × WAV"; "3 of 4 × WAV" when a file of the take cannot be read.
QString formatText(const GroupeFichiers& groupe) {
    const QString kind = toQt(groupe.fichiers.front().format);
    const std::size_t files = groupe.fichiers.size();
    if (const std::size_t lost = groupe.unreadableTracks.size(); lost > 0) {
        return Texts::tr("%1 of %2 × %3", "files of a take that can be read, of all, and their format")
            .arg(files)
            .arg(files + lost)
            .arg(kind);
    }
    return files > 1 ? Texts::tr("%1 × %2", "files of a take, and their format").arg(files).arg(kind) : kind;
}

}  // namespace

QString columnTitle(TakeColumn column) {
    switch (column) {
        case TakeColumn::name:
            return Texts::tr("Name");
        case TakeColumn::circled:
            return Texts::tr("Circled");
        case TakeColumn::wild:
            return Texts::tr("Wild");
        case TakeColumn::scene:
            return Texts::tr("Scene");
        case TakeColumn::take:
            return Texts::tr("Take");
        case TakeColumn::tape:
            return Texts::tr("Tape");
        case TakeColumn::project:
            return Texts::tr("Project");
        case TakeColumn::note:
            return Texts::tr("Note");
        case TakeColumn::startTimecode:
            return Texts::tr("Start TC");
        case TakeColumn::endTimecode:
            return Texts::tr("End TC");
        case TakeColumn::duration:
            return Texts::tr("Duration");
        case TakeColumn::fps:
            return Texts::tr("fps");
        case TakeColumn::tracks:
            return Texts::tr("Tracks");
        case TakeColumn::sampleRate:
            return Texts::tr("Samplerate");
        case TakeColumn::bits:
            return Texts::tr("Bits");
        case TakeColumn::format:
            return Texts::tr("Format");
        case TakeColumn::size:
            return Texts::tr("Size");
        case TakeColumn::date:
            return Texts::tr("Date");
    }
    return {};
}

std::optional<RowField> fieldOf(TakeColumn column) {
    switch (column) {
        case TakeColumn::name:
            return RowField::name;
        case TakeColumn::circled:
            return RowField::circled;
        case TakeColumn::wild:
            return RowField::wild;
        case TakeColumn::scene:
            return RowField::scene;
        case TakeColumn::take:
            return RowField::prise;
        case TakeColumn::tape:
            return RowField::tape;
        case TakeColumn::project:
            return RowField::project;
        case TakeColumn::note:
            return RowField::note;
        case TakeColumn::startTimecode:
            return RowField::timecode;
        case TakeColumn::fps:
            return RowField::framerate;
        default:
            return std::nullopt;
    }
}

bool isFlagColumn(TakeColumn column) { return column == TakeColumn::circled || column == TakeColumn::wild; }

bool isTextColumn(TakeColumn column) { return fieldOf(column) && !isFlagColumn(column); }

bool isNumberColumn(TakeColumn column) {
    return column == TakeColumn::duration || column == TakeColumn::fps || column == TakeColumn::tracks ||
           column == TakeColumn::sampleRate || column == TakeColumn::bits || column == TakeColumn::size;
}

std::string endTimecode(const GroupeFichiers& groupe) {
    const InfoFichier& premier = groupe.fichiers.front();
    if (!groupe.timecode || !groupe.framerate || !(premier.dureeSecondes >= 0) || !(premier.sampleRate > 0)) return {};
    const double length = std::round(premier.dureeSecondes * premier.sampleRate);
    constexpr double longest = 9e15;  // samples; longer than any file, and exact as a double
    if (!(length < longest)) return {};
    const std::uint64_t start = samplesFromTimecode(*groupe.timecode, *groupe.framerate, premier.sampleRate);
    const auto samples = static_cast<std::uint64_t>(length);
    if (start > UINT64_MAX - samples) return {};
    return timecodeFromSamples(start + samples, actualRate(*groupe.framerate), premier.sampleRate).value_or("");
}

std::string cellText(const GroupeFichiers& groupe, TakeColumn column) {
    const InfoFichier& premier = groupe.fichiers.front();
    switch (column) {
        case TakeColumn::circled:
        case TakeColumn::wild:
            return {};
        case TakeColumn::endTimecode:
            return endTimecode(groupe);
        case TakeColumn::duration:
            return durationText(premier.dureeSecondes);
        case TakeColumn::tracks:
            return fmt::format("{}", tracksOfGroup(groupe).size());
        case TakeColumn::sampleRate:
            return sampleRateText(premier.sampleRate);
        case TakeColumn::bits:
            return premier.bits > 0 ? fmt::format("{}", premier.bits) : std::string();
        case TakeColumn::format:
            return formatText(groupe).toStdString();
        case TakeColumn::size:
            return sizeText(
                std::accumulate(groupe.fichiers.begin(), groupe.fichiers.end(), std::uint64_t{0},
                                [](std::uint64_t sum, const InfoFichier& fichier) { return sum + fichier.taille; }));
        case TakeColumn::date: {
            const std::optional<RecordingDate> date = groupe.recordingDate();
            return date ? formatRecordingDate(*date) : std::string();
        }
        default: {
            const std::optional<RowField> field = fieldOf(column);
            return field ? textOf(groupe, *field) : std::string();
        }
    }
}

std::string memberText(const GroupeFichiers& groupe, std::size_t member, TakeColumn column) {
    const InfoFichier& fichier = groupe.fichiers.at(member);
    if (column == TakeColumn::name) {
        const std::vector<Piste> pistes = tracksOfGroup(groupe);
        const std::string track = member < pistes.size() ? pistes[member].nom : std::string();
        return track.empty() ? fichier.nom : fichier.nom + "  \u2013  " + track;
    }
    const bool tells = !fieldOf(column) || isMixedCell(groupe, column);
    if (!tells || column == TakeColumn::endTimecode || column == TakeColumn::tracks) return {};
    const GroupeFichiers own = alone(fichier);
    if (isFlagColumn(column)) return flagOf(own, column) ? "yes" : "no";
    return cellText(own, column);
}

bool isMixedCell(const GroupeFichiers& groupe, TakeColumn column) {
    if (column == TakeColumn::date) {
        return groupe.recordingDateStatus() == GroupeFichiers::RecordingDateStatus::mixed;
    }
    const std::optional<RowField> field = fieldOf(column);
    return field && isMixed(groupe, *field);
}

bool flagOf(const GroupeFichiers& groupe, TakeColumn column) {
    return column == TakeColumn::circled ? groupe.circled : column == TakeColumn::wild && groupe.wild;
}

QString whyNot(const GroupeFichiers& groupe, TakeColumn column, const QString& text) {
    const std::optional<RowField> field = fieldOf(column);
    if (!field) return Texts::tr("This column cannot be edited.");
    GroupeFichiers tried = groupe;
    if (isFlagColumn(column) || setText(tried, *field, text.toStdString())) return {};
    switch (column) {
        case TakeColumn::startTimecode:
            return groupe.framerate ? Texts::tr("Invalid Timecode")
                                    : Texts::tr("Invalid Timecode: choose a frame rate first, which it is counted in.");
        case TakeColumn::name:
            if (text.isEmpty()) return Texts::tr("A name cannot be empty.");
            if (text.contains(QLatin1Char('/'))) return Texts::tr("A name cannot contain \"/\".");
            if (text.startsWith(QLatin1Char('.'))) {
                return Texts::tr("A name cannot start with a dot: the file would be hidden.");
            }
            return Texts::tr("No file can have this name, or it differs from the present one only in case.");
        case TakeColumn::fps:
            return Texts::tr("This frame rate cannot be written.");
        default:
            return Texts::tr("This text cannot be written.");
    }
}

bool isDamaged(const InfoFichier& fichier) { return fichier.channels == 0 || fichier.missingAudioBytes > 0; }

bool isDamaged(const GroupeFichiers& groupe) {
    return !groupe.unreadableTracks.empty() || groupe.filesNotThere > 0 ||
           std::any_of(groupe.fichiers.begin(), groupe.fichiers.end(),
                       [](const InfoFichier& fichier) { return isDamaged(fichier); });
}

QString whatIsWrong(const InfoFichier& fichier) {
    const QString name = toQt(fichier.url.filename());
    if (fichier.channels == 0) return Texts::tr("%1 cannot be read as audio.").arg(name);
    if (fichier.missingAudioBytes == 0) return {};
    return Texts::tr("%1 is cut off: %2 of its audio is missing.").arg(name, toQt(sizeText(fichier.missingAudioBytes)));
}

QString whatIsWrong(const GroupeFichiers& groupe) {
    QStringList sentences;
    for (const InfoFichier& fichier : groupe.fichiers)
        sentences << whatIsWrong(fichier);
    for (const UnreadableTrack& track : groupe.unreadableTracks)
        sentences << Texts::tr("%1, a track of this take, cannot be read.").arg(toQt(track.url.filename()));
    if (groupe.filesNotThere > 0) {
        sentences << Texts::tr("%Ln file(s) of this take not in the folder: the recorder says that it wrote %1.",
                               nullptr, groupe.filesNotThere)
                         .arg(groupe.filesWritten);
    }
    sentences.removeAll(QString());
    return sentences.join(QLatin1Char('\n'));
}

QString whyReadOnly(const GroupeFichiers& groupe) {
    for (const InfoFichier& fichier : groupe.fichiers) {
        if (isEditable(fichier.url)) {
            if (fichier.channels > 0 && fichier.estRiff) continue;
            if (fichier.channels > 0) {
                return Texts::tr("%1 is not a RIFF/WAVE file inside: Dravik can open it, but not change it.")
                    .arg(toQt(fichier.url.filename()));
            }
            return Texts::tr("%1 cannot be read as audio, and cannot be changed.").arg(toQt(fichier.url.filename()));
        }
        const QString format = fichier.format.empty() ? Texts::tr("this file") : toQt(fichier.format);
        return Texts::tr("Dravik can open %1 files, but changes cannot be saved to this format.").arg(format);
    }
    return {};
}

QString warningOf(const TakeRows& rows, int row) {
    const GroupeFichiers& groupe = rows.groupesTableau().at(static_cast<std::size_t>(row)).groupe;
    const QString readOnly = whyReadOnly(rows, row);
    // A WAV file that cannot be read is read-only for that reason, which has been said.
    const InfoFichier& first = groupe.fichiers.front();
    if (!isDamaged(groupe) || (first.channels == 0 && isEditable(first.url))) return readOnly;
    const QString wrong = whatIsWrong(groupe);
    return readOnly.isEmpty() ? wrong : readOnly + QLatin1Char('\n') + wrong;
}

QString whyReadOnly(const TakeRows& rows, int row) {
    if (rows.isMissing(row)) {
        return Texts::tr(
            "The files of this take are not in the folder any more. Its unsaved changes are kept until the files are "
            "back, or until you discard them.");
    }
    return whyReadOnly(rows.groupesTableau().at(static_cast<std::size_t>(row)).groupe);
}

std::string clipboardText(const GroupeFichiers& groupe, TakeColumn column) {
    if (isFlagColumn(column)) return flagOf(groupe, column) ? "yes" : "";
    return cellText(groupe, column);
}

QString spreadsheetLine(const QStringList& cells) {
    QStringList quoted;
    for (QString cell : cells) {
        const bool special = cell.contains(QLatin1Char('\t')) || cell.contains(QLatin1Char('\n')) ||
                             cell.contains(QLatin1Char('\r')) || cell.startsWith(QLatin1Char('"'));
        if (special) cell = QLatin1Char('"') + cell.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
        quoted << cell;
    }
    return quoted.join(QLatin1Char('\t'));
}

QStringList firstSpreadsheetColumn(const QString& text) {
    QStringList lines;
    const qsizetype end = text.size();
    for (qsizetype at = 0; at < end;) {
        QString cell;
        const bool quoted = text.at(at) == QLatin1Char('"') && text.indexOf(QLatin1Char('"'), at + 1) > 0;
        const qsizetype start = at;
        if (quoted) {
            for (++at; at < end; ++at) {
                if (text.at(at) == QLatin1Char('"')) {
                    if (at + 1 >= end || text.at(at + 1) != QLatin1Char('"')) break;
                    ++at;
                }
                cell += text.at(at);
            }
            ++at;
            const bool closed = at >= end || text.at(at) == QLatin1Char('\t') || text.at(at) == QLatin1Char('\n') ||
                                text.at(at) == QLatin1Char('\r');
            if (!closed) {
                // The quotes are part of a text, as in: "Quiet" please
                cell.clear();
                at = start;
            }
        }
        const bool taken = quoted && at != start;
        bool first = true;
        for (; at < end && text.at(at) != QLatin1Char('\n') && text.at(at) != QLatin1Char('\r'); ++at) {
            first = first && text.at(at) != QLatin1Char('\t');
            if (first && !taken) cell += text.at(at);
        }
        if (at < end && text.at(at) == QLatin1Char('\r') && at + 1 < end && text.at(at + 1) == QLatin1Char('\n')) ++at;
        ++at;
        lines << cell;
    }
    return lines;
}

}  // namespace dravik
