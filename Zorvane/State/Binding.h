#pragma once

#include <functional>

namespace Zorvane {

/// A value that can be read and written where it lives. Once what it refers to is gone, it reads as
/// false and a write does nothing. Main thread only.
struct BooleanBinding
{
    std::function<bool()> get;
    std::function<void(bool)> set;
};

} // namespace Zorvane
