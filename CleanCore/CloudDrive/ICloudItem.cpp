#include "CleanCore/CloudDrive/ICloudItem.h"

#include "CleanCore/Support/SaturatingSum.h"

#include <algorithm>

namespace CleanCore {

std::int64_t ICloudItem::appBytes() const
{
    std::int64_t bytes = 0;
    for (const ICloudAppBundle& app : apps) {
        bytes = saturatingSum(bytes, app.localBytes);
    }
    return bytes;
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
