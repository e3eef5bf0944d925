#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"

#include <optional>
#include <string>

namespace CleanCore {

/// Whether git-annex keeps files in the folder `path`: a checkout of the user's own with a
/// repository inside it that git-annex has been set up in. Runs no program: even looking with
/// git-annex would set it up.
[[nodiscard]] bool isAnnexRepository(const std::string& path);

/// Why a run that is confined to `home` cannot work with the repository at `path`: its settings
/// name folders, computers or programs outside, or may do so. Nothing when all that they name lies
/// in the home.
[[nodiscard]] std::optional<CloudFailure> leadsOutside(const std::string& path,
                                                       const std::string& home);

} // namespace CleanCore
