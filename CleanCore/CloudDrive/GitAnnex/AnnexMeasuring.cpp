#include "CleanCore/CloudDrive/GitAnnex/AnnexMeasuring.h"

#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/SaturatingSum.h"
#include "CleanCore/Support/Utf8.h"

#include <sys/stat.h>
#include <utility>

namespace CleanCore {

namespace {

constexpr std::int64_t blockBytes = 512;

} // namespace

AnnexMeasuring::AnnexMeasuring(std::string container, std::span<const std::string> paths)
    : m_container(std::move(container))
{
    for (const std::string& path : paths) {
        m_places.emplace(PathText::lastComponent(path), m_results.size());
        m_results.push_back({{path, 0, 0, {}}, false});
    }
}

std::vector<std::string> AnnexMeasuring::names(bool areExact) const
{
    std::vector<std::string> names;
    for (const auto& [name, place] : m_places) {
        if (isValidUtf8(name) == areExact) {
            names.push_back(name);
        }
    }
    return names;
}

void AnnexMeasuring::add(const AnnexRecord& record)
{
    add(record, record.file.substr(0, record.file.find('/')));
}

void AnnexMeasuring::add(const AnnexRecord& record, const std::string& name)
{
    const auto place = m_places.find(name);
    if (place == m_places.end()) {
        return;
    }
    ICloudItem& item = m_results[place->second].item;
    ++item.fileCount;
    if (m_counted.insert(record.key).second) {
        item.localBytes = saturatingSum(item.localBytes, bytesHere(record));
    }
}

std::int64_t AnnexMeasuring::bytesHere(const AnnexRecord& record) const
{
    const std::string content =
        m_container + "/.git/annex/objects/" + record.hashFolder + record.key + '/' + record.key;
    struct stat status = {};
    return ::lstat(content.c_str(), &status) == 0 && S_ISREG(status.st_mode)
               ? status.st_blocks * blockBytes
               : record.bytes;
}

void AnnexMeasuring::markLate()
{
    for (ICloudMeasure& result : m_results) {
        result.timedOut = true;
    }
}

std::vector<ICloudMeasure> AnnexMeasuring::results() &&
{
    return std::move(m_results);
}

} // namespace CleanCore
