#pragma once

#include "CleanCore/CloudDrive/CloudRequests.h"
#include "CleanCore/CloudDrive/ICloudEvictor.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace CleanCore {
class CloudDrive;
}

namespace Zorvane {

struct Environment;

/// A folder of a drive.
struct CloudSection
{
    /// The name of the drive.
    std::string drive;
    CleanCore::CloudContainer container;
    /// Whether a released file is fetched when a program opens it.
    bool fetchesWhenOpened = true;
    /// Whether its applications are never released.
    bool keepsApplications = false;
    CleanCore::ICloudEvictor evictor;
};

/// The folders of all drives that have been found, closed ones included, drive by drive. The first
/// one is always that of the given drive, whether it exists or not. A value.
class CloudSections
{
public:
    explicit CloudSections(const Environment& environment);

    [[nodiscard]] const std::vector<CloudSection>& all() const { return m_sections; }
    [[nodiscard]] const CloudSection& given() const { return m_sections.front(); }

    /// Forgets all but the given one.
    void reset() { m_sections.erase(m_sections.begin() + 1, m_sections.end()); }

    /// Appends the folders of another drive, in the place that the drive has among all drives.
    /// Folders that are there already are skipped. Returns those that are new and not closed.
    [[nodiscard]] std::vector<CloudSection>
    add(const Environment& environment, const std::shared_ptr<const CleanCore::CloudDrive>& drive,
        const std::vector<CleanCore::CloudContainer>& containers);

    /// The position of the innermost folder that the entry at `path` lies in; that of the given
    /// drive if it lies in none.
    [[nodiscard]] std::size_t placeOf(const std::string& path) const;

    /// The elements of each section, in the order of the sections; sections without any are left
    /// out. `pathOf` is the path of an element.
    template <typename Element, typename PathOf>
    [[nodiscard]] std::vector<std::pair<CloudSection, std::vector<Element>>>
    divided(std::span<const Element> elements, const PathOf& pathOf) const
    {
        std::vector<std::pair<CloudSection, std::vector<Element>>> parts;
        for (std::size_t place = 0; place < m_sections.size(); ++place) {
            std::vector<Element> part;
            for (const Element& element : elements) {
                if (placeOf(pathOf(element)) == place) {
                    part.push_back(element);
                }
            }
            if (!part.empty()) {
                parts.emplace_back(m_sections[place], std::move(part));
            }
        }
        return parts;
    }

private:
    std::vector<CloudSection> m_sections;
};

} // namespace Zorvane
