#include "Zorvane/State/Models/ICloudModel.h"

#include "Zorvane/Desktop/ByteCountFormatter.h"
#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/State/CloudState.h"

#include <algorithm>
#include <cmath>

namespace Zorvane {

namespace {

using CleanCore::ICloudAppBundle;
using CleanCore::ICloudItem;

constexpr double secondsPerFile = 0.0005;
constexpr double shortRelease = 45;
constexpr double secondsPerMinute = 60;
constexpr std::size_t listedApps = 3;

/// Whether the whole item is an application.
bool isApp(const ICloudItem& item)
{
    return item.apps.size() == 1 && item.apps.front().path == item.path;
}

std::vector<ICloudAppBundle> firstOf(std::vector<ICloudAppBundle> apps)
{
    apps.resize(std::min(apps.size(), listedApps));
    return apps;
}

} // namespace

ICloudModel::ICloudModel(CloudState& cloud, const ByteCountFormatter& formatter)
    : m_cloud(cloud), m_formatter(formatter), m_texts(cloud, formatter)
{
    connect(&cloud, &CloudState::icloudItemsChanged, this, &ICloudModel::updateRows);
    connect(&cloud, &CloudState::icloudBusyFoldersChanged, this, &ICloudModel::updateRows);
    connect(&cloud, &CloudState::icloudSelectionChanged, this, &ICloudModel::refreshRows);
    connect(&cloud, &CloudState::icloudReleasedPathsChanged, this, &ICloudModel::refreshRows);
    for (const auto signal :
         {&CloudState::icloudPendingChanged, &CloudState::icloudMeasuredChanged,
          &CloudState::icloudEvictProgressChanged, &CloudState::icloudEvictReportChanged,
          &CloudState::fetchProgressChanged}) {
        connect(&cloud, signal, this, &ICloudModel::changed);
    }
    connect(&cloud, &CloudState::sectionsChanged, this, &ICloudModel::refreshRows);
    connect(&cloud, &CloudState::isEvictingChanged, this, &ICloudModel::refreshRows);
    connect(&cloud, &CloudState::isFetchingChanged, this, &ICloudModel::refreshRows);
    updateRows();
}

const std::vector<ICloudItem>& ICloudModel::items() const
{
    static const std::vector<ICloudItem> none;
    return isMeasured() ? *m_cloud.icloudItems() : none;
}

QString ICloudModel::bytes(std::int64_t count) const
{
    return m_formatter.string(count);
}

QString ICloudModel::count(std::int64_t number) const
{
    return m_formatter.count(number);
}

bool ICloudModel::isMeasured() const
{
    return m_cloud.icloudItems().has_value();
}

bool ICloudModel::isMeasuring() const
{
    return m_cloud.icloudPending() >= 1;
}

QString ICloudModel::measuringText() const
{
    if (!isMeasuring()) {
        return {};
    }
    if (m_cloud.icloudMeasuredFiles() < 1) {
        return tr("Measuring… %1 folders left").arg(count(m_cloud.icloudPending()));
    }
    return tr("Measuring… %1 files seen · %2 on this Mac so far")
        .arg(count(m_cloud.icloudMeasuredFiles()), bytes(m_cloud.icloudMeasuredBytes()));
}

QString ICloudModel::downloadedText() const
{
    return bytes(m_cloud.icloudDownloadedBytes());
}

QString ICloudModel::freeingText() const
{
    if (!m_cloud.icloudEvictProgress()) {
        return {};
    }
    const CloudState::EvictProgress& progress = *m_cloud.icloudEvictProgress();
    return tr("Freeing %1 of %2 — %3… %4 is removing the downloads; large folders take a while.")
        .arg(count(progress.index), count(progress.total), displayText(progress.name),
             QString::fromStdString(progress.drive));
}

QString ICloudModel::emptyText() const
{
    if (!items().empty() || !m_cloud.icloudBusyFolders().empty() || isMeasuring()) {
        return {};
    }
    return m_cloud.hasDrive() || m_cloud.sections().size() > 1 || !isMeasured()
               ? tr("Nothing downloaded — your %1 is already optimized.").arg(m_texts.title())
               : tr("No cloud drive was found. Zorvane works with the repositories of git-annex in "
                    "your home, with folders of the desktop clients of Nextcloud, ownCloud and "
                    "OpenCloud that run and have virtual files switched on, and, in a sample home, "
                    "with a drive in %1, where a second folder stands for the cloud.")
                     .arg(displayText(m_cloud.container()));
}

QString ICloudModel::busyText() const
{
    if (isMeasuring() || m_cloud.icloudBusyFolders().empty()) {
        return {};
    }
    QStringList names;
    for (const std::string& folder : m_cloud.icloudBusyFolders()) {
        names.push_back(displayName(folder));
    }
    return tr("“%1” went past 90 seconds and measuring was stopped. This usually happens for a few "
              "minutes after a release — %2 is still tidying the folder. Try again in a bit.")
        .arg(names.join(QStringLiteral(", ")), m_texts.namesOf(m_cloud.icloudBusyFolders()));
}

QString ICloudModel::selectedText() const
{
    return bytes(m_cloud.icloudSelectedBytes());
}

bool ICloudModel::hasSelectedBytes() const
{
    return m_cloud.icloudSelectedBytes() != 0;
}

bool ICloudModel::canRelease() const
{
    return hasSelectedBytes() && !m_cloud.isWorking() && !isMeasuring();
}

bool ICloudModel::showsSelection() const
{
    return !hasReport() && !isMeasuring() && !m_cloud.isWorking();
}

QString ICloudModel::beforeFreeingText() const
{
    if (!showsSelection() || m_cloud.icloudSelectedBytes() < 1) {
        return {};
    }
    const std::int64_t files = m_cloud.icloudSelectedFileCount();
    std::vector<std::string> paths;
    for (const ICloudItem& item : m_cloud.icloudSelectedItems()) {
        paths.push_back(item.path);
    }
    return tr("%4 will release %1 in %2 files — this usually takes %3.")
        .arg(selectedText(), count(files), estimate(files), m_texts.namesOf(paths));
}

bool ICloudModel::hasReport() const
{
    return m_cloud.icloudEvictReport().has_value();
}

bool ICloudModel::hasFreed() const
{
    return hasReport() && m_cloud.icloudEvictReport()->freedBytes >= 1;
}

QString ICloudModel::reportText() const
{
    if (!hasFreed()) {
        return tr("Nothing was released this time.");
    }
    return tr("Freed %1 — your files stay in %2.")
        .arg(bytes(m_cloud.icloudEvictReport()->freedBytes),
             m_texts.namesOf(m_cloud.icloudEvictReport()->released));
}

QStringList ICloudModel::refusals() const
{
    return hasReport() ? m_texts.reasons(m_cloud.icloudEvictReport()->refused) : QStringList();
}

QStringList ICloudModel::fetchRefusals() const
{
    return m_texts.reasons(m_cloud.fetchRefusals());
}

bool ICloudModel::showsGiven() const
{
    return m_cloud.hasDrive() || m_cloud.sections().size() == 1;
}

std::vector<ICloudAppBundle> ICloudModel::noticeApps() const
{
    if (hasReport()) {
        return m_cloud.icloudEvictReport()->appsStillDownloaded;
    }
    return showsSelection() ? m_cloud.icloudSelectedApps() : std::vector<ICloudAppBundle>();
}

QString ICloudModel::appsTitle() const
{
    if (noticeApps().empty()) {
        return {};
    }
    if (hasReport()) {
        return tr("Still on this Mac: %1 in apps.")
            .arg(bytes(m_cloud.icloudEvictReport()->appsStillBytes()));
    }
    return tr("%1 are apps stored in iCloud Drive.").arg(bytes(m_cloud.icloudSelectedAppBytes()));
}

QStringList ICloudModel::appNames() const
{
    QStringList names;
    for (const ICloudAppBundle& app : firstOf(noticeApps())) {
        names.push_back(displayName(app.path));
    }
    return names;
}

QStringList ICloudModel::appSizes() const
{
    QStringList sizes;
    for (const ICloudAppBundle& app : firstOf(noticeApps())) {
        sizes.push_back(bytes(app.localBytes));
    }
    return sizes;
}

QString ICloudModel::moreAppsText() const
{
    const std::size_t apps = noticeApps().size();
    return apps <= listedApps
               ? QString()
               : tr("and %1 more").arg(count(static_cast<std::int64_t>(apps - listedApps)));
}

QString ICloudModel::estimate(std::int64_t files)
{
    const double seconds = static_cast<double>(files) * secondsPerFile;
    if (seconds < shortRelease) {
        return tr("less than a minute");
    }
    const double minutes = std::round(seconds / secondsPerMinute);
    return minutes > 1 ? tr("about %1 minutes").arg(static_cast<qlonglong>(minutes))
                       : tr("about a minute");
}

QVariant ICloudModel::value(std::size_t row, int role) const
{
    const bool isBusy = row >= m_itemCount;
    switch (role) {
    case NameRole:
        return displayName(m_cloud.presentPath(m_paths[row]));
    case DriveRole:
        return QString::fromStdString(m_cloud.sectionOf(m_paths[row]).drive);
    case SectionRole:
        return row > 0 && &m_cloud.sectionOf(m_paths[row]) == &m_cloud.sectionOf(m_paths[row - 1])
                   ? QString()
                   : m_texts.folderTitle(m_paths[row]);
    case CanFetchRole:
        return !isBusy && m_cloud.icloudReleasedPaths().contains(m_paths[row]) &&
               !m_cloud.isWorking();
    case IsBusyRole:
        return isBusy;
    case IsReleasedRole:
        return !isBusy && m_cloud.icloudReleasedPaths().contains(m_paths[row]);
    case IsSelectedRole:
        return !isBusy && m_cloud.icloudSelection().contains(m_paths[row]);
    case IsOfferedRole:
        return !isBusy && !isKept(items()[row]);
    default:
        return isBusy ? QVariant() : dataOfItem(items()[row], role);
    }
}

QString ICloudModel::restText(const ICloudItem& item) const
{
    if (const std::int64_t files = m_cloud.refusedFiles(item.path); files > 0) {
        return tr("not wholly released: %1 files stayed").arg(count(files));
    }
    return item.apps.empty() ? QString()
                             : tr("includes %1 apps (%2) that macOS keeps downloaded")
                                   .arg(count(static_cast<std::int64_t>(item.apps.size())),
                                        bytes(item.appBytes()));
}

QVariant ICloudModel::dataOfItem(const ICloudItem& item, int role) const
{
    switch (role) {
    case RestTextRole:
        return restText(item);
    case FilesTextRole:
        return item.fileCount < 1 ? QString() : tr("%1 files").arg(count(item.fileCount));
    case SizeTextRole:
        return bytes(item.localBytes);
    default:
        return {};
    }
}

void ICloudModel::open()
{
    const bool isFirstTime = !isMeasured();
    m_cloud.openICloud();
    if (isFirstTime) {
        m_cloud.reloadICloud();
    }
}

void ICloudModel::setSelected(int row, bool isSelected)
{
    if (row >= 0 && static_cast<std::size_t>(row) < m_itemCount &&
        !isKept(items()[static_cast<std::size_t>(row)])) {
        m_cloud.setICloudSelected(m_paths[static_cast<std::size_t>(row)], isSelected);
    }
}

bool ICloudModel::isKept(const ICloudItem& item) const
{
    return isApp(item) && m_cloud.sectionOf(item.path).keepsApplications;
}

void ICloudModel::fetch(int row)
{
    if (row >= 0 && static_cast<std::size_t>(row) < m_itemCount) {
        m_cloud.requestFetch(m_paths[static_cast<std::size_t>(row)]);
    }
}

void ICloudModel::revealApps()
{
    m_cloud.revealICloudApps(noticeApps());
}

const std::string& ICloudModel::pathAt(std::size_t row) const
{
    return row < items().size() ? items()[row].path
                                : m_cloud.icloudBusyFolders()[row - items().size()];
}

void ICloudModel::updateRows()
{
    const std::size_t count = items().size() + m_cloud.icloudBusyFolders().size();
    const auto isSame = [this](std::size_t row, std::size_t now) {
        return m_paths[row] == pathAt(now);
    };
    // Measuring adds rows one by one, and the list should keep its scroll position.
    std::size_t place = 0;
    while (place < std::min(count, m_paths.size()) && isSame(place, place)) {
        ++place;
    }
    bool isOneMore = count == m_paths.size() + 1;
    for (std::size_t row = place; isOneMore && row < m_paths.size(); ++row) {
        isOneMore = isSame(row, row + 1);
    }
    if (isOneMore) {
        beginInsertRows({}, static_cast<int>(place), static_cast<int>(place));
        m_paths.insert(m_paths.begin() + static_cast<std::ptrdiff_t>(place), pathAt(place));
        m_itemCount = items().size();
        endInsertRows();
        emit dataChanged(index(0), index(rowCount() - 1), {SectionRole});
    } else {
        beginResetModel();
        m_paths.clear();
        for (std::size_t row = 0; row < count; ++row) {
            m_paths.push_back(pathAt(row));
        }
        m_itemCount = items().size();
        endResetModel();
    }
    emit changed();
}

void ICloudModel::refreshRows()
{
    if (!m_paths.empty()) {
        emit dataChanged(
            index(0), index(rowCount() - 1),
            {NameRole, IsReleasedRole, IsSelectedRole, CanFetchRole, RestTextRole, SectionRole});
    }
    emit changed();
}

} // namespace Zorvane
