#pragma once

#include "base/progress.h"
#include "model/audio_file_reader.h"
#include "model/groupe_fichiers.h"

#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

namespace dravik {

/// A folder as takes. Three steps, each usable alone: list, probe, group. Keeps no state.

/// Of the files that a folder is searched for: ".wav" and the others, in lower case.
[[nodiscard]] std::span<const std::string_view> listedExtensions() noexcept;
/// Does the extension, in any case, belong to them?
[[nodiscard]] bool isListed(const std::filesystem::path& file);

/// The folder's audio files, in natural order of their names: direct children, hidden ones left out. An unreadable
/// folder gives an empty list.
[[nodiscard]] std::vector<std::filesystem::path> listerFichiers(const std::filesystem::path& dossier);

/// Probes the files on several threads (a cold disk answers several questions at once), or as many of them as the
/// system gives; the result keeps the order. Progress counts files, not bytes. Throws Cancelled.
[[nodiscard]] std::vector<InfoFichier> probeFiles(const std::vector<std::filesystem::path>& fichiers,
                                                  const AudioFileReader& codecs, const TaskContext& task);

/// The takes, in natural order of their names. With `regrouperFichiersMono` mono files of one folder are one take when
/// their names carry different track numbers behind the same base name, and they agree in sample rate, in whether they
/// can be edited, and in start timecode and FAMILY_UID where both have one; endings that mean a track only within a
/// family need the same FAMILY_UID (mono_name.h). A file that cannot be read is a take of its own, and named in the one
/// that lacks it.
[[nodiscard]] std::vector<GroupeFichiers> construireGroupes(std::vector<InfoFichier> fichiers,
                                                            bool regrouperFichiersMono);

/// Fills `filesWritten` and `filesNotThere` of the mono sets, by what their recorder says (iXML FAMILY_UID,
/// TOTAL_FILES, FILE_SET_INDEX). Only for groups of all files of their folders. Silent about a set that is down to one
/// file, and about files that were split off another; a damaged file may be any of those that seem to lack.
void countFilesNotThere(std::vector<GroupeFichiers>& groupes);

/// All of it, for a folder.
[[nodiscard]] std::vector<GroupeFichiers> scanFolder(const std::filesystem::path& dossier,
                                                     const AudioFileReader& codecs, bool regrouperFichiersMono,
                                                     const TaskContext& task);

/// Most files probed at the same time.
inline constexpr unsigned probeThreads = 8;

}  // namespace dravik
