#pragma once

#include "base/error.h"
#include "model/wave/metadata_values.h"

#include <string>
#include <string_view>

namespace dravik {

/// Editing an iXML document as text: an edit changes the matched span and nothing else, so that unknown elements,
/// comments, indentation and attributes survive byte for byte. Documents are UTF-8 (any bytes are accepted). Pure
/// functions of any thread, linear in the length of the document; none throws but mettreAJourIXML.

/// The document of a file that has none yet.
inline constexpr std::string_view emptyIxmlDocument =
    "<BWFXML>\n<PROJECT></PROJECT>\n<SCENE></SCENE>\n<TAPE></TAPE>\n<TAKE></TAKE>\n<NOTE></NOTE>\n"
    "<CIRCLED>FALSE</CIRCLED>\n</BWFXML>";

/// What an edit cannot do.
class IxmlError : public Error {
  public:
    using Error::Error;
};

/// The first element of that name with another value; attributes stay. Unchanged when there is none.
[[nodiscard]] std::string remplacerValeurTag(std::string_view document, std::string_view name, std::string_view value);
/// A new element on a line of its own: behind "</TAKE>", else behind "</SCENE>", else in front of "</BWFXML>", else in
/// front of "</IXML>" (the first of each, case ignored), else at the end.
[[nodiscard]] std::string insererTag(std::string_view document, std::string_view name, std::string_view value);
/// Replaces the value of the first element, or inserts one. TIMECODE_RATE, TIMECODE_FLAG and the two
/// TIMESTAMP_SAMPLES_SINCE_MIDNIGHT elements get a second copy when the only one already holds that very value; where
/// there are several, in SPEED or not, all get the value.
[[nodiscard]] std::string definirTag(std::string_view document, std::string_view name, std::string_view value);
/// What is left when the first element and the blanks, tabs, line feeds and carriage returns directly behind it are
/// removed until there is none.
[[nodiscard]] std::string supprimerTags(std::string_view document, std::string_view name);
/// The value of the first such child inside the first such parent; both are added where they are missing.
[[nodiscard]] std::string definirSousTag(std::string_view document, std::string_view parent, std::string_view child,
                                         std::string_view value);
/// Writes one track's name (escaped: "&" only) into TRACK_LIST and brings TRACK_COUNT up to date, which is put first
/// into a TRACK_LIST that has none. The track is the one with that key (IxmlTrack), of several the last, which readers
/// show; a new one when there is none. A number below 1 changes nothing.
[[nodiscard]] std::string setTrackName(std::string_view document, int track, std::string_view name);
/// Writes the recorder's channel number of the track at an interleave position into its CHANNEL_INDEX, whose digits
/// alone change. Of several tracks at that position it is the last with a number, which readers show, else the last. A
/// track that has its key from elsewhere (IxmlTrack) gets the INTERLEAVE_INDEX without which its number is not read,
/// and so keeps key and name; where there is no track, a new one without a name is made. Below 1 nothing changes.
[[nodiscard]] std::string setTrackNumber(std::string_view document, int position, int number);

/// Applies all the values in their fixed order. The note is written where it is read (IxmlDocument::literalValue): tags
/// inside the first SPEED element are passed over. An empty tag ("<NOTE/>") of an element that is written is first
/// spelled out as an opening and a closing one. The result is UTF-8. Throws IxmlError when the document or the result
/// is above maxIxmlBytes or the result is not UTF-8.
[[nodiscard]] std::string mettreAJourIXML(std::string_view document, const MetadataValues& values);

/// Names UTF-8 where the document's first line declares another encoding and the text has letters beyond ASCII: a text
/// that is UTF-8 is misread by every other program that believes the declaration.
void declareUtf8(std::string& document);

/// The edited document at the byte length of the original where the original ended in padding (at least 16 NUL bytes or
/// spaces) that can give or take the difference and keep a byte, so that the chunks behind it need not move; else as it
/// is.
[[nodiscard]] std::string withPaddingKept(std::string_view original, std::string edited);

}  // namespace dravik
