#pragma once

#include <string>
#include <string_view>

namespace CleanCore {

/// A form of `text` that two Unicode-canonically-equivalent texts share: NFC for valid UTF-8, the
/// bytes themselves for anything else. Letter case is kept.
[[nodiscard]] std::string canonicalForm(std::string_view text);

/// Whether two texts are canonically equivalent (or equal bytes, where one is not valid UTF-8).
[[nodiscard]] bool areEquivalent(std::string_view a, std::string_view b);

} // namespace CleanCore
