#pragma once

#include <string_view>

namespace CleanCore {

/// Whether a folder of this name is an application bundle: its extension, what follows the last dot
/// of a name that does not merely begin with it, is exactly "app".
[[nodiscard]] inline bool isAppBundleName(std::string_view name)
{
    constexpr std::string_view suffix = ".app";
    return name.size() > suffix.size() && name.substr(name.size() - suffix.size()) == suffix;
}

} // namespace CleanCore
