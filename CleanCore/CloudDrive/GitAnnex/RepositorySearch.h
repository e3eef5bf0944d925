#pragma once

#include <chrono>
#include <cstddef>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

/// How far a search goes. What lies beyond is not found.
struct SearchLimits
{
    int depth = 6;
    std::size_t folders = 50'000;
    std::chrono::steady_clock::duration time = std::chrono::seconds(10);
};

/// The folders in `home`, itself included, in which git-annex keeps files, in the order of their
/// paths; see isAnnexRepository(). Not entered are hidden folders, those in `excluded`, caches
/// (folders with a CACHEDIR.TAG, "node_modules"), repositories found, links and other file systems.
/// Runs no program.
[[nodiscard]] std::vector<std::string> findAnnexRepositories(const std::string& home,
                                                             std::span<const std::string> excluded,
                                                             const std::stop_token& stop,
                                                             const SearchLimits& limits = {});

} // namespace CleanCore
