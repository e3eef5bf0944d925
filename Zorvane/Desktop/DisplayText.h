#pragma once

#include <QString>
#include <string_view>

namespace Zorvane {

/// Text from the disk for people's eyes: what is not UTF-8 becomes replacement characters;
/// control characters and what would reorder or hide its surroundings are named ("⟨U+202E⟩"), which
/// every font can show. Never for finding the entry again.
[[nodiscard]] QString displayText(std::string_view bytes);

/// The last component of a path, for people's eyes.
[[nodiscard]] QString displayName(std::string_view path);

} // namespace Zorvane
