#pragma once

#include "model/wave/take_flags.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// Reading an iXML document (iXML specification 3.x) as text. Never a tree: an element is what the pattern
/// "<NAME\b[^>]*>(.*?)</NAME>" (ASCII case ignored, the dot matches line ends, bytes not characters) finds first, so
/// that damaged and hostile documents read the same way everywhere. Element names consist of ASCII letters, digits and
/// '_'; \b is the end of such a word, and bytes above 127 belong to none. Every function is linear in the document's
/// length: the first opening tag is the only one that counts, since no later one can have a closing tag that it lacks.
/// Nothing here throws (but std::bad_alloc); a missing element is an absent value.

/// Largest document that is accepted: readers give their defaults above it, the editor refuses. Real ones hold a few
/// kilobytes; the cap keeps a damaged size field from filling the memory.
inline constexpr std::size_t maxIxmlBytes = 16U * 1024U * 1024U;

/// One TRACK element of the document.
struct IxmlTrack {
    int key = 0;                      ///< INTERLEAVE_INDEX, else CHANNEL_INDEX, else the ordinal (each when above 0)
    std::optional<std::string> name;  ///< NAME, else TRACK_NAME, else CHANNEL_NAME; trimmed, entities as they stand
    std::optional<int> interleave;    ///< INTERLEAVE_INDEX when above 0
    std::optional<int> channel;       ///< CHANNEL_INDEX when above 0
    std::size_t begin = 0;            ///< offset of "<TRACK"
    std::size_t end = 0;              ///< offset behind "</TRACK>"
};

/// An element found in a document: byte offsets.
struct IxmlElement {
    std::size_t begin = 0;       ///< of '<' of the opening tag
    std::size_t valueBegin = 0;  ///< behind '>' of the opening tag
    std::size_t valueEnd = 0;    ///< of '<' of the closing tag
    std::size_t end = 0;         ///< behind '>' of the closing tag
};

/// An index over one document's tags, so that the twenty look-ups of a probe cost one pass. Keeps a view: the text
/// must outlive it. A document above maxIxmlBytes reads as if it had no elements.
class IxmlDocument {
  public:
    explicit IxmlDocument(std::string_view text);

    [[nodiscard]] std::string_view text() const noexcept { return text_; }
    /// First whole element of that name starting at or after `from`.
    [[nodiscard]] std::optional<IxmlElement> find(std::string_view name, std::size_t from = 0) const noexcept;
    /// Value of the first element, trimmed of ASCII white space.
    [[nodiscard]] std::optional<std::string_view> value(std::string_view name) const noexcept;
    /// The text between the first "<NAME>" and the first "</NAME>", both literal and case-sensitive, not trimmed.
    /// Absent when either is missing or the closing one stands first. For NOTE, elements inside the first SPEED
    /// element are passed over: recorders keep a note about the speed there, which is not the take's.
    [[nodiscard]] std::optional<std::string_view> literalValue(std::string_view name) const noexcept;
    /// All TRACK elements in document order.
    [[nodiscard]] std::vector<IxmlTrack> tracks() const;

  private:
    /// A '<' or "</" with a name behind it.
    struct Tag {
        std::uint32_t offset = 0;  ///< of '<'
        std::uint32_t key = 0;     ///< sorts out nearly all tags of another name without a look at the text
    };

    [[nodiscard]] std::size_t firstTagFrom(std::size_t offset) const noexcept;
    [[nodiscard]] std::optional<IxmlElement> findWithin(std::string_view name, std::size_t tag,
                                                        std::size_t until) const noexcept;
    [[nodiscard]] IxmlTrack trackIn(const IxmlElement& element, int ordinal) const;

    std::string_view text_;
    std::vector<Tag> tags_;  ///< in ascending order of their offsets; empty for a document above maxIxmlBytes
};

/// Value of the first element, trimmed; for a single look-up.
[[nodiscard]] std::optional<std::string> valeurTag(std::string_view name, std::string_view document);
/// First whole element of that name; for a single look-up.
[[nodiscard]] std::optional<IxmlElement> plageTag(std::string_view document, std::string_view name);

/// The flags as the document's elements tell them (take_flags.h); false where none does.
[[nodiscard]] bool lireCircled(const IxmlDocument& document);
[[nodiscard]] bool lireWild(const IxmlDocument& document);
/// Track names by key; a later track of the same key wins. Tracks without a name are left out.
[[nodiscard]] std::map<int, std::string> lireNomsPistes(const IxmlDocument& document);
/// Interleave position -> the recorder's channel number, for tracks that carry both.
[[nodiscard]] std::map<int, int> lireNumerosTracks(const IxmlDocument& document);
/// The same two out of tracks that were looked for already.
[[nodiscard]] std::map<int, std::string> lireNomsPistes(const std::vector<IxmlTrack>& tracks);
[[nodiscard]] std::map<int, int> lireNumerosTracks(const std::vector<IxmlTrack>& tracks);

/// Bytes of an iXML chunk as text: UTF-8, what is not UTF-8 read as ISO Latin-1. Absent when empty, above
/// maxIxmlBytes, or in UTF-16. Trailing padding (NUL bytes, spaces) stays in the text.
[[nodiscard]] std::optional<std::string> decodeIxml(std::string_view payload);

}  // namespace dravik
