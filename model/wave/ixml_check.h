#pragma once

#include "model/wave/ixml_editor.h"

#include <string_view>

namespace dravik {

/// Proof that an edit of an iXML document did what was asked and nothing else. Text editing cannot know that a value,
/// or a comment in the document, holds a tag that makes the elements around it read otherwise; this sees it.

/// Does `after` give each edited field as asked, and every other field that Dravik knows (texts, flags, identities,
/// time stamps, track names and numbers) as `before` gave it? Pure, linear in the documents.
[[nodiscard]] bool editIsClean(std::string_view before, std::string_view after, const MetadataValues& values);

}  // namespace dravik
