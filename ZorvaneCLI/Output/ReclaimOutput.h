#pragma once

#include "CleanCore/Reclaim/Reclaim.h"
#include "CleanCore/Reclaim/Shortfall.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>

namespace ZorvaneCLI {

/// "33.6 MB", or "33.6 MB to 110.9 MB".
[[nodiscard]] std::string rangeText(const CleanCore::Reclaim& reclaim);

/// " (gives back 33.6 MB)" for an item that may give back less than its size, else empty.
[[nodiscard]] std::string gainRemark(const std::optional<CleanCore::Reclaim>& reclaim,
                                     std::int64_t sizeBytes);

/// `lead` and the range in one line ("Free space will grow by 33.6 MB"), then a line for each
/// cause.
[[nodiscard]] std::string reclaimText(const std::string& lead, const CleanCore::Reclaim& reclaim);

/// Why less was gained than `freedBytes`; empty if there is nothing to explain.
[[nodiscard]] std::string shortfallText(std::int64_t freedBytes,
                                        const CleanCore::Shortfall& shortfall);

[[nodiscard]] nlohmann::ordered_json reclaimJson(const CleanCore::Reclaim& reclaim);
[[nodiscard]] nlohmann::ordered_json causesJson(std::span<const CleanCore::ReclaimShare> causes);

} // namespace ZorvaneCLI
