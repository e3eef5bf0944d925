#include "Zorvane/State/CloudSections.h"

#include "CleanCore/CloudDrive/CloudDrive.h"
#include "CleanCore/Support/PathText.h"
#include "Zorvane/State/Environment.h"

#include <algorithm>

namespace Zorvane {

namespace {

CloudSection makeSection(const Environment& environment,
                         const std::shared_ptr<const CleanCore::CloudDrive>& drive,
                         CleanCore::CloudContainer container)
{
    CleanCore::ICloudEvictor evictor(container.path, environment.home.fileManager, drive,
                                     environment.home.pool, environment.steadyNow,
                                     environment.home.volumeFacts);
    return {drive ? drive->name() : "iCloud", std::move(container),
            !drive || drive->fetchesWhenOpened(), drive && drive->keepsApplications(),
            std::move(evictor)};
}

} // namespace

CloudSections::CloudSections(const Environment& environment)
    : m_sections{makeSection(
          environment, environment.cloudDrives.empty() ? nullptr : environment.cloudDrives.front(),
          {environment.home.cloudContainer()})}
{
}

std::vector<CloudSection>
CloudSections::add(const Environment& environment,
                   const std::shared_ptr<const CleanCore::CloudDrive>& drive,
                   const std::vector<CleanCore::CloudContainer>& containers)
{
    std::vector<CloudSection> open;
    for (const CleanCore::CloudContainer& container : containers) {
        const auto isKnown = [&](const CloudSection& section) {
            return section.container.path == container.path;
        };
        if (std::ranges::any_of(m_sections, isKnown)) {
            continue;
        }
        const auto rank = [&](const std::string& name) {
            const auto named = [&](const auto& other) { return other->name() == name; };
            return std::ranges::find_if(environment.cloudDrives, named) -
                   environment.cloudDrives.begin();
        };
        const auto place = std::find_if(
            m_sections.begin() + 1, m_sections.end(),
            [&](const CloudSection& section) { return rank(section.drive) > rank(drive->name()); });
        const CloudSection& added =
            *m_sections.insert(place, makeSection(environment, drive, container));
        if (!added.container.closed) {
            open.push_back(added);
        }
    }
    return open;
}

std::size_t CloudSections::placeOf(const std::string& path) const
{
    std::size_t found = 0;
    std::size_t length = 0;
    for (std::size_t place = 0; place < m_sections.size(); ++place) {
        const std::string& container = m_sections[place].container.path;
        if (container.size() >= length && CleanCore::PathText::isSameOrInside(path, container)) {
            found = place;
            length = container.size();
        }
    }
    return found;
}

} // namespace Zorvane
