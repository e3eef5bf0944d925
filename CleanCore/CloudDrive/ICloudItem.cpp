#include "CleanCore/CloudDrive/ICloudItem.h"

#include "CleanCore/Support/SaturatingSum.h"

#include <algorithm>

namespace CleanCore {

bool isAppBundleName(std::string_view name)
{
    constexpr std::string_view extension = ".app";
    return name.size() > extension.size() && name.ends_with(extension);
}

std::int64_t totalBytes(const std::vector<ICloudAppBundle>& apps)
{
    std::int64_t bytes = 0;
    for (const ICloudAppBundle& app : apps) {
        bytes = saturatingSum(bytes, app.localBytes);
    }
    return bytes;
}

std::int64_t ICloudItem::appBytes() const
{
    return totalBytes(apps);
}

std::int64_t ICloudItem::appFileCount() const
{
    std::int64_t files = 0;
    for (const ICloudAppBundle& app : apps) {
        files = saturatingSum(files, app.fileCount);
    }
    return files;
}

std::int64_t ICloudItem::releasableBytes() const
{
    return std::max<std::int64_t>(0, localBytes - appBytes());
}

std::int64_t ICloudItem::releasableFileCount() const
{
    return std::max<std::int64_t>(0, fileCount - appFileCount());
}

} // namespace CleanCore
