#pragma once

#include "CleanCore/Scanning/ScannedItem.h"
#include "CleanCore/Support/EscapedText.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Text for a terminal.
namespace ZorvaneCLI {

using CleanCore::escaped;

/// The columns that an escaped text takes on a terminal.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// A byte count in the file style with the locale's decimal separator.
[[nodiscard]] std::string byteCount(std::int64_t bytes);

/// The path of an item for a terminal, with a remark if a clean will not remove all of it.
[[nodiscard]] std::string itemText(const CleanCore::ScannedItem& item);

/// "1 item", "2 items".
[[nodiscard]] std::string counted(std::size_t count, std::string_view singular);

} // namespace ZorvaneCLI
