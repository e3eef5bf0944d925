#include "CleanCore/Reclaim/ReclaimSurvey.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/FileSystem/Walking/EntryWalk.h"
#include "CleanCore/Reclaim/ReclaimTally.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <set>
#include <utility>

namespace CleanCore {

namespace {

using Items = std::vector<ReclaimTally::Item>;

/// Puts names of the same file together. Returns how many records that saves.
std::size_t unite(std::vector<LinkedFile>& files)
{
    std::ranges::sort(files, {}, &LinkedFile::inode);
    std::size_t count = 0;
    for (const LinkedFile& next : files) {
        if (count > 0 && files[count - 1].inode == next.inode) {
            files[count - 1].addNamesOf(next);
        } else {
            files[count++] = next;
        }
    }
    const std::size_t saved = files.size() - count;
    files.resize(count);
    files.shrink_to_fit();
    return saved;
}

/// The items that a walk of one folder examines.
struct Group
{
    std::string folder;
    std::vector<std::string> names;
    /// The positions of the items among all.
    std::vector<std::size_t> positions;
};

/// Items that follow each other and lie in the same folder are walked over together.
std::vector<Group> groups(std::span<const std::string_view> paths)
{
    std::vector<Group> groups;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        std::string folder = PathText::parent(paths[i]);
        if (groups.empty() || groups.back().folder != folder) {
            groups.push_back({std::move(folder), {}, {}});
        }
        groups.back().names.emplace_back(PathText::lastComponent(paths[i]));
        groups.back().positions.push_back(i);
    }
    return groups;
}

/// Adds the records of entries of the Trash, which go with them; see the Trash specification of
/// freedesktop.org.
void addTrashRecords(const Group& group, int folder, ReclaimTally::Totals& totals)
{
    if (!group.folder.ends_with("/Trash/files")) {
        return;
    }
    const FileDescriptor trash = holdFolder(folder, "..");
    const FileDescriptor info = holdFolder(trash.get(), "info");
    ReclaimTally tally(totals);
    for (std::size_t i = 0; info.isOpen() && i < group.names.size(); ++i) {
        const std::string name = group.names[i] + ".trashinfo";
        EntryStatus status;
        if (readStatus(info.get(), name.c_str(), status) == 0 &&
            status.identity.kind == EntryKind::file) {
            tally.add(info.get(), name.c_str(), status, false);
            tally.flush(i);
        }
    }
}

/// Names the programs that have files of the items open.
void addPrograms(const VolumeFacts& facts, Items& items)
{
    std::set<FileKey> files;
    for (const ReclaimTally::Item& item : items) {
        for (const std::uint64_t inode : item.openFiles) {
            files.insert({item.details->device, inode});
        }
    }
    if (files.empty()) {
        return;
    }
    const auto programs = facts.programsUsing(files);
    for (ReclaimTally::Item& item : items) {
        std::set<std::string> names;
        for (const std::uint64_t inode : item.openFiles) {
            if (const auto found = programs.find({item.details->device, inode});
                found != programs.end()) {
                names.insert(found->second.begin(), found->second.end());
            }
        }
        if (!names.empty()) {
            item.details->programs.assign(names.begin(), names.end());
        }
    }
}

} // namespace

ReclaimSurvey::ReclaimSurvey(std::shared_ptr<const FileManager> fileManager,
                             std::shared_ptr<const VolumeFacts> facts,
                             std::shared_ptr<TaskPool> pool, std::int64_t recordLimit)
    : m_fileManager(std::move(fileManager)), m_facts(std::move(facts)), m_pool(std::move(pool)),
      m_limits(std::make_shared<SurveyLimits>())
{
    m_limits->recordsLeft = recordLimit;
}

std::vector<ReclaimFindings> ReclaimSurvey::examine(std::span<const std::string_view> paths,
                                                    const std::stop_token& stop) const
{
    Items found(paths.size());
    std::vector<bool> isExamined(paths.size());
    for (const Group& group : groups(paths)) {
        FileDescriptor folder = m_fileManager->openFolder(group.folder);
        EntryStatus status;
        if (!folder.isOpen() || readStatus(folder.get(), "", status) != 0) {
            continue;
        }
        const VolumeTraits traits = m_facts->traits(folder.get());
        const auto walk = std::make_shared<EntryWalk<ReclaimTally>>(
            m_pool, group.names, stop,
            ReclaimTally::Totals{Items(group.names.size()), m_facts, traits, m_limits, stop});
        const FileDescriptor again = duplicate(folder.get());
        walk->walk(std::move(folder), status);
        addTrashRecords(group, again.get(), walk->totals());
        if (stop.stop_requested()) {
            break;
        }
        for (std::size_t i = 0; i < group.positions.size(); ++i) {
            ReclaimTally::Item& item = found[group.positions[i]];
            item = std::move(walk->totals().items[i]);
            isExamined[group.positions[i]] = item.isThere && !item.isMissed;
            if (item.details) {
                item.details->device = status.identity.device;
                item.details->volume = traits.id;
                m_limits->recordsLeft += static_cast<std::int64_t>(unite(item.details->linked));
            }
        }
    }
    addPrograms(*m_facts, found);
    std::vector<ReclaimFindings> findings(paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        findings[i] = {isExamined[i], found[i].certainBytes, found[i].recordBytes,
                       std::move(found[i].details)};
    }
    return findings;
}

FreeSpaceWatch ReclaimSurvey::watchFreeSpace(std::span<const std::string> folders) const
{
    return {m_fileManager, m_facts, m_pool, folders};
}

} // namespace CleanCore
