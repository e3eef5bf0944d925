#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"

#include <QString>
#include <QStringList>
#include <string>
#include <vector>

namespace Zorvane {

class ByteCountFormatter;
class CloudState;

/// What the cloud drives' sheet and card call the drives, and why something stayed. Main thread
/// only.
class CloudDriveTexts
{
public:
    CloudDriveTexts(const CloudState& cloud, const ByteCountFormatter& formatter)
        : m_cloud(cloud), m_formatter(formatter)
    {
    }

    /// The names of the drives of these entries, each once; the given one's for none.
    [[nodiscard]] QString namesOf(const std::vector<std::string>& paths) const;

    /// The names of the drives found; the given one's when none is.
    [[nodiscard]] QString names() const;

    /// The same, as a title.
    [[nodiscard]] QString title() const;

    /// The title of the folder that the entry at `path` lies in; empty while only the given drive
    /// is there.
    [[nodiscard]] QString folderTitle(const std::string& path) const;

    /// How released files come back.
    [[nodiscard]] QString howFilesReturn() const;

    /// How far fetching is; empty unless something is being fetched.
    [[nodiscard]] QString fetching() const;

    /// The folders in which nothing can be released, each with the reason.
    [[nodiscard]] QStringList closedFolders() const;

    /// A sentence for each reason among these refusals.
    [[nodiscard]] QStringList reasons(const std::vector<CleanCore::CloudRefusal>& refusals) const;

private:
    const CloudState& m_cloud;
    const ByteCountFormatter& m_formatter;
};

} // namespace Zorvane
