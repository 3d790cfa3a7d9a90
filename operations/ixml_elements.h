#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace dravik::OperationsAudio {

/// All elements of one name in iXML text, in their order, linear in its length. Pure functions, any thread.

/// The text with the values of the elements as `change` gives them; absent leaves one as it is. Opening tags keep their
/// attributes. Elements without a closing tag are passed over.
[[nodiscard]] std::string withValues(std::string_view text, std::string_view name,
                                     const std::function<std::optional<std::string>(std::string_view)>& change);
/// Calls `visit` with the value of each.
void visitValues(std::string_view text, std::string_view name, const std::function<void(std::string_view)>& visit);
/// The text without the elements, "<NAME/>" included.
[[nodiscard]] std::string withoutElements(std::string_view text, std::string_view name);

}  // namespace dravik::OperationsAudio
