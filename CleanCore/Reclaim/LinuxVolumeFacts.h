#pragma once

#include "CleanCore/Reclaim/VolumeFacts.h"

namespace CleanCore {

/// The file systems of Linux. Whether somebody else has a file open is found out by a write lease
/// (fcntl(2)), which the kernel refuses then; it is given back at once. Handles that were
/// opened with O_PATH do not show.
class LinuxVolumeFacts : public VolumeFacts
{
public:
    [[nodiscard]] VolumeTraits traits(int folder) const override;
    void readSpace(int folder, const char* name, std::int64_t allocatedBytes,
                   const VolumeTraits& traits, const std::stop_token& stop,
                   FileSpace& space) const override;
    [[nodiscard]] std::map<FileKey, std::set<std::string>>
    programsUsing(const std::set<FileKey>& files) const override;
    void settle(int folder, bool after) const override;
};

} // namespace CleanCore
