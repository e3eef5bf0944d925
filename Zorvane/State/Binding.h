#pragma once

#include <functional>

namespace Zorvane {

/// Reads and writes a value in place. Once its target is gone, it reads as false and ignores
/// writes. Main thread only.
struct BooleanBinding
{
    std::function<bool()> get;
    std::function<void(bool)> set;
};

} // namespace Zorvane
