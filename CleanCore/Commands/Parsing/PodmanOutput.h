#pragma once

#include "CleanCore/Scanning/ScannedItem.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore::PodmanOutput {

/// One item "Podman — image ID" for each image without a name that no container uses. The size is
/// the image's unshared part, the least that its removal frees; 0 if unknown.
///
/// `outputs`: the full ids of the dangling images, one a line, and the tables of "podman system df
/// --verbose".
[[nodiscard]] std::vector<ScannedItem> danglingImages(std::span<const std::string> outputs);

/// The image's id in the path of such an item.
[[nodiscard]] std::string imageId(std::string_view path);

} // namespace CleanCore::PodmanOutput
