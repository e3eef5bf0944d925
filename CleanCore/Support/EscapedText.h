#pragma once

#include <string>
#include <string_view>

namespace CleanCore {

/// How an unsafe character is named.
enum class EscapeNotation {
    /// For a terminal, in ASCII: "\n", "\e", "\u{202E}", and "\xFF" for a byte that is not UTF-8.
    backslashes,
    /// For a window: "⟨U+202E⟩", and the replacement character for bytes that are not UTF-8.
    brackets,
};

/// A text from the disk as people may see it: every character that could drive a terminal, reorder
/// or hide text, or shows nothing reliable (unassigned and private characters) is named by its
/// code. Joiners and variation selectors stay: scripts and emoji need them. Never for finding the
/// entry again.
[[nodiscard]] std::string escaped(std::string_view text,
                                  EscapeNotation notation = EscapeNotation::backslashes);

/// `text` if it is short; otherwise its beginning, "…" and its end, in whole characters. What a
/// message quotes may be as long as a file.
[[nodiscard]] std::string shortened(std::string text);

} // namespace CleanCore
