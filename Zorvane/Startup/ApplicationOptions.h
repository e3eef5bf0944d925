#pragma once

#include <optional>
#include <string>

namespace Zorvane {

/// What the command line asks for.
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
