#pragma once

namespace Words {

/// The exit status of a program; scripts rely on the numbers.
enum class ExitStatus : int {
    done = 0,
    /// Done, but something was skipped, refused or unreadable.
    incomplete = 1,
    wrongUsage = 2,
    /// The catalog or the resource folder is missing or invalid, or the catalog is too broad.
    catalogUnusable = 3,
    /// Nobody agreed to a removal.
    refused = 4,
    interrupted = 130,
};

} // namespace Words
