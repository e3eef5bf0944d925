#pragma once

#include <optional>
#include <string>

namespace CleanCore {

class FileManager;
struct RulesCatalog;

/// The first base of `catalog` that is too dangerous to offer in a person's own home: one that
/// resolves to the home or a folder above it, to all configuration or data of the user, or to a
/// folder of the system. Nothing if there is none. A service account whose home is a system folder
/// ("/", "/usr/sbin") owns nothing there. For catalogs that did not come with the program.
[[nodiscard]] std::optional<std::string>
refusedBase(const RulesCatalog& catalog, const std::string& home, const FileManager& fileManager);

} // namespace CleanCore
