#pragma once

#include "CleanCore/Support/Timestamp.h"

#include <optional>
#include <string>
#include <vector>

namespace ZorvaneCLI {

/// The options that several commands share, as given on the command line.
struct CommonOptions
{
    std::optional<std::string> home;
    std::optional<std::string> catalog;
    std::optional<std::string> tools;
    std::optional<std::string> now;
    std::vector<std::string> ruleIds;
    bool json = false;
};

} // namespace ZorvaneCLI
