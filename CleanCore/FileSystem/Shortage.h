#pragma once

#include <cerrno>

namespace CleanCore {

/// Whether this errno says that the system lacked what it takes to look (descriptors, memory), and
/// so nothing of what there is to see.
[[nodiscard]] inline bool isShortage(int error)
{
    return error == EMFILE || error == ENFILE || error == ENOMEM;
}

} // namespace CleanCore
