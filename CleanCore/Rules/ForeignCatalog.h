#pragma once

#include <optional>
#include <string>

namespace CleanCore {

class FileManager;
struct RulesCatalog;

/// A base of `catalog` that nobody should offer for cleaning in a person's own home, because it
/// resolves to home, something above it, the user's configuration or data as a whole, or a folder
/// of the system; nothing if there is none. A home that lies in the system's folders, as accounts
/// of services have it ("/", "/usr/sbin"), makes nothing there the user's own. Meant for catalogs
/// that did not come with the program.
[[nodiscard]] std::optional<std::string>
refusedBase(const RulesCatalog& catalog, const std::string& home, const FileManager& fileManager);

} // namespace CleanCore
