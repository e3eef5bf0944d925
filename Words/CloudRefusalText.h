#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"

#include <string>

namespace Words {

/// Why the cloud drive refused a file, as one clause for people, without the path.
[[nodiscard]] std::string refusalText(const CleanCore::CloudFailure& failure);

} // namespace Words
