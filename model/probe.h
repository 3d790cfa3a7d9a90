#pragma once

#include "model/audio_file_reader.h"
#include "model/info_fichier.h"
#include "model/wave/chunk_walk.h"

#include <filesystem>
#include <optional>
#include <string>

namespace dravik {

/// Turns one file into its record. Reads the header area and the iXML chunk, never the audio. Never throws for a file
/// it cannot read: fields stay at their defaults. Blocking; different files may be probed by different threads.
/// `codecs` is asked for what is not a linear WAV file.
[[nodiscard]] InfoFichier analyserFichier(const std::filesystem::path& file, const AudioFileReader& codecs);

/// The recording date of the first bext chunk that is large enough to hold one. RIFF and RF64 only.
[[nodiscard]] std::optional<RecordingDate> lireDateEnregistrement(const std::filesystem::path& file);
/// The first iXML chunk's text (UTF-8, or what was ISO Latin-1). RIFF and RF64 only; chunks behind an RF64 audio chunk
/// whose 32-bit size is the placeholder are not looked for.
[[nodiscard]] std::optional<std::string> lireChunkIXML(const std::filesystem::path& file);

/// The same on bytes, for a file that is open already.
[[nodiscard]] std::optional<RecordingDate> recordingDateIn(const ByteSource& source, const ChunkTable& table);
[[nodiscard]] std::optional<std::string> ixmlTextIn(const ByteSource& source, const ChunkTable& table);
/// Format and length of linear audio, out of `fmt ` and `data`; absent for anything else.
[[nodiscard]] std::optional<AudioFormat> linearFormatIn(const ByteSource& source, const ChunkTable& table);
/// Bytes of linear audio that its chunk claims beyond the file's end, where whole frames are missing. 0 also where the
/// claim only says that the length was not known.
[[nodiscard]] std::uint64_t missingAudioBytesIn(const ByteSource& source, const ChunkTable& table);
/// Fills the record's production metadata from an iXML text; `info.sampleRate` must be set.
void fillFromIxml(InfoFichier& info, std::string_view ixml);

}  // namespace dravik
