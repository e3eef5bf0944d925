#pragma once

#include "Zorvane/State/Environment.h"

#include <cstddef>
#include <memory>
#include <string>

/// Results as large as they may become, from a disk that takes no time.
namespace LargeResults {

constexpr std::size_t areas = 6;
constexpr std::size_t itemsPerArea = 100'000;

[[nodiscard]] CleanCore::CleaningRule rule(const std::string& id, const std::string& base);

/// An application's collaborators over `disk`, with these rules.
[[nodiscard]] Zorvane::Environment
environment(const std::shared_ptr<const CleanCore::FileManager>& disk,
            CleanCore::RulesCatalog catalog);

/// The same over so many areas of so many items.
[[nodiscard]] Zorvane::Environment environment();

} // namespace LargeResults
