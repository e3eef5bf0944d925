#pragma once

#include "tests/Support/TemporaryFolder.h"

#include <string>
#include <vector>

namespace CleanCoreTests {

/// Fills `root` with a tree that follows from `seed`: files with and without content, sparse ones,
/// hard links, links of every kind, pipes, odd names, times from before 1970 to the future, and
/// folders that cannot be read, searched or entered. Returns the names directly in `root`.
std::vector<std::string> makeRandomTree(const TemporaryFolder& root, unsigned seed);

} // namespace CleanCoreTests
