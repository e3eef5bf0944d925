#pragma once

#include <string>

namespace CleanCore {

/// Keeps this thread, and the programs that it starts from now on, from changing anything outside
/// the folder `path`, and from running programs that lie anywhere but in /usr, /bin and /lib (and
/// /lib64): the kernel refuses it; see landlock(7). For good. False if the kernel cannot do that;
/// nothing is kept then.
[[nodiscard]] bool confineWritesOfThread(const std::string& path);

} // namespace CleanCore
