#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Text for a terminal.
namespace ZorvaneCLI {

/// A text from the disk so that it cannot drive the terminal or reorder what is around it: control,
/// format and bidirectional characters and line ends as "\n", "\e", "\u{202E}", bytes that are not
/// UTF-8 as "\xFF".
[[nodiscard]] std::string escaped(std::string_view text);

/// `text` if it is short; else its beginning, "…" and its end, whole characters only. What a
/// message quotes may be as long as a file.
[[nodiscard]] std::string shortened(std::string text);

/// The columns that an escaped text takes on a terminal.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// A byte count in the file style with the locale's decimal separator.
[[nodiscard]] std::string byteCount(std::int64_t bytes);

/// "1 item", "2 items".
[[nodiscard]] std::string counted(std::size_t count, std::string_view singular);

} // namespace ZorvaneCLI
