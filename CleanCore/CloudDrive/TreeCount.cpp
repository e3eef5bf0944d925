#include "CleanCore/CloudDrive/TreeCount.h"

#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/SaturatingSum.h"

#include <utility>

namespace CleanCore {

TreeCount::TreeCount(std::string_view root)
    : m_isBundleOpen(isAppBundleName(PathText::lastComponent(root)))
{
    m_bundle.path = root;
}

bool TreeCount::add(const TreeEntry& entry)
{
    if (entry.attributes.kind == EntryKind::symbolicLink) {
        return false;
    }
    if (m_isBundleOpen && !isInsideBundle(entry.path)) {
        closeBundle();
    }
    if (entry.attributes.kind == EntryKind::folder) {
        if (!m_isBundleOpen && isAppBundleName(PathText::lastComponent(entry.path))) {
            m_isBundleOpen = true;
            m_bundle.path = entry.path;
        }
        return false;
    }
    const std::int64_t size = entry.attributes.allocatedBytes;
    bytes = saturatingSum(bytes, size);
    ++files;
    if (m_isBundleOpen) {
        m_bundle.localBytes = saturatingSum(m_bundle.localBytes, size);
        ++m_bundle.fileCount;
        if (size > 0 && m_bundle.probePath.empty()) {
            m_bundle.probePath = entry.path;
        }
    }
    return true;
}

void TreeCount::closeBundle()
{
    ICloudAppBundle bundle = std::exchange(m_bundle, {});
    if (std::exchange(m_isBundleOpen, false) && bundle.localBytes > 0) {
        apps.push_back(std::move(bundle));
    }
}

bool TreeCount::isInsideBundle(std::string_view path) const
{
    const std::size_t length = m_bundle.path.size();
    return path.size() > length && path[length] == '/' && path.substr(0, length) == m_bundle.path;
}

} // namespace CleanCore
