#pragma once

#include <optional>
#include <string>

namespace Zorvane {

/// The options of the command line.
struct ApplicationOptions
{
    std::optional<std::string> home;
    std::optional<std::string> catalog;
    std::optional<std::string> tools;
    std::optional<std::string> mirror;
    bool noAnimations = false;
    bool software = false;
};

} // namespace Zorvane
