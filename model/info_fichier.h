#pragma once

#include "base/uuid.h"
#include "model/wave/bext.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace dravik {

/// One audio file on disk as the probe read it. A value; what could not be read is at its default. Texts are UTF-8 and
/// as they stand in the file ("&amp;" is still "&amp;").
struct InfoFichier {
    Uuid id;  ///< made anew by each probe
    std::filesystem::path url;
    std::string nom;  ///< file name without extension
    std::optional<std::string> project, scene, tape;
    std::optional<std::string> prise;  ///< the take
    std::optional<std::string> notes;  ///< absent when empty
    bool circled = false;
    bool wild = false;
    int channels = 0;
    double dureeSecondes = 0;
    std::optional<std::string> timecode;  ///< start, "HH:MM:SS:FF"
    std::optional<RecordingDate> recordingDate;
    std::optional<std::string> framerate;   ///< label, "29.97 DF"
    double sampleRate = 0;                  ///< Hz
    bool forcerSauvegardeMetadata = false;  ///< write even when nothing differs; set by editing code
    int bits = 0;                           ///< per channel
    bool estRiff = true;                    ///< false for a WAV file that is RF64, or no RIFF/WAVE from its first byte
    std::uint64_t taille = 0;               ///< bytes
    std::string format;                     ///< extension, upper-cased
    std::map<int, std::string> nomsPistes;  ///< track number (from 1) -> name
    std::map<int, int> numerosTracks;       ///< interleave position (from 1) -> recorder's channel number
    std::optional<std::string> familleUID;  ///< iXML FAMILY_UID, not empty: shared by the files of one take
    std::optional<int> filesOfFamily;       ///< iXML TOTAL_FILES: how many files the recorder says it wrote of them
    std::optional<std::string> indexInFamily;  ///< iXML FILE_SET_INDEX, not empty: which of them this is
    /// Bytes of linear audio that a WAV file's header promises beyond the end of the file. Such a file is cut off: it
    /// was not copied whole, or is being written.
    std::uint64_t missingAudioBytes = 0;
};

/// Can this file be written by the metadata and cue writers ("wav" and "bwf" only)?
[[nodiscard]] bool isEditable(const std::filesystem::path& file);

/// "&amp;" as "&": how names are shown and edited. (The writer escapes them again.)
[[nodiscard]] std::string displayName(std::string_view stored);

}  // namespace dravik
