#include "Zorvane/State/Models/ICloudModel.h"

#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/State/AppState.h"

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

std::vector<ICloudAppBundle> firstOf(std::vector<ICloudAppBundle> apps)
{
    apps.resize(std::min(apps.size(), listedApps));
    return apps;
}

} // namespace

void ICloudModel::follow(AppState& appState)
{
    connect(&appState, &AppState::icloudItemsChanged, this, &ICloudModel::updateRows);
    connect(&appState, &AppState::icloudBusyFoldersChanged, this, &ICloudModel::updateRows);
    connect(&appState, &AppState::icloudSelectionChanged, this, &ICloudModel::refreshRows);
    connect(&appState, &AppState::icloudReleasedPathsChanged, this, &ICloudModel::refreshRows);
    connect(&appState, &AppState::icloudPendingChanged, this, &ICloudModel::changed);
    connect(&appState, &AppState::icloudMeasuredChanged, this, &ICloudModel::changed);
    connect(&appState, &AppState::icloudEvictProgressChanged, this, &ICloudModel::changed);
    connect(&appState, &AppState::icloudEvictReportChanged, this, &ICloudModel::changed);
    connect(&appState, &AppState::isEvictingChanged, this, &ICloudModel::changed);
    updateRows();
}

const std::vector<ICloudItem>& ICloudModel::items() const
{
    static const std::vector<ICloudItem> none;
    return isMeasured() ? *appState()->icloudItems() : none;
}

QString ICloudModel::bytes(std::int64_t count) const
{
    return appState()->byteCountFormatter().string(count);
}

QString ICloudModel::count(std::int64_t number) const
{
    return appState()->byteCountFormatter().count(number);
}

bool ICloudModel::isMeasured() const
{
    return appState() != nullptr && appState()->icloudItems().has_value();
}

bool ICloudModel::isMeasuring() const
{
    return appState() != nullptr && appState()->icloudPending() >= 1;
}

QString ICloudModel::measuringText() const
{
    if (!isMeasuring()) {
        return {};
    }
    if (appState()->icloudMeasuredFiles() < 1) {
        return tr("Measuring… %1 folders left").arg(count(appState()->icloudPending()));
    }
    return tr("Measuring… %1 files seen · %2 on this Mac so far")
        .arg(count(appState()->icloudMeasuredFiles()), bytes(appState()->icloudMeasuredBytes()));
}

QString ICloudModel::downloadedText() const
{
    return appState() == nullptr ? QString() : bytes(appState()->icloudDownloadedBytes());
}

QString ICloudModel::freeingText() const
{
    if (appState() == nullptr || !appState()->icloudEvictProgress()) {
        return {};
    }
    const AppState::EvictProgress& progress = *appState()->icloudEvictProgress();
    return tr("Freeing %1 of %2 — %3… iCloud is removing the downloads; large folders take a "
              "while.")
        .arg(count(progress.index), count(progress.total), displayText(progress.name));
}

bool ICloudModel::isEmpty() const
{
    return appState() != nullptr && items().empty() && appState()->icloudBusyFolders().empty() &&
           !isMeasuring();
}

QString ICloudModel::busyText() const
{
    if (appState() == nullptr || isMeasuring() || appState()->icloudBusyFolders().empty()) {
        return {};
    }
    QStringList names;
    for (const std::string& folder : appState()->icloudBusyFolders()) {
        names.push_back(displayName(folder));
    }
    return tr("“%1” went past 90 seconds and measuring was stopped. This usually happens for a few "
              "minutes after a release — iCloud is still tidying the folder. Try again in a bit.")
        .arg(names.join(QStringLiteral(", ")));
}

QString ICloudModel::selectedText() const
{
    return appState() == nullptr ? QString() : bytes(appState()->icloudSelectedBytes());
}

bool ICloudModel::hasSelectedBytes() const
{
    return appState() != nullptr && appState()->icloudSelectedBytes() != 0;
}

bool ICloudModel::canRelease() const
{
    return hasSelectedBytes() && !appState()->isEvicting() && !isMeasuring();
}

bool ICloudModel::showsSelection() const
{
    return appState() != nullptr && !hasReport() && !isMeasuring() && !appState()->isEvicting();
}

QString ICloudModel::beforeFreeingText() const
{
    if (!showsSelection() || appState()->icloudSelectedBytes() < 1) {
        return {};
    }
    const std::int64_t files = appState()->icloudSelectedFileCount();
    return tr("iCloud will release %1 in %2 files — this usually takes %3.")
        .arg(selectedText(), count(files), estimate(files));
}

bool ICloudModel::hasReport() const
{
    return appState() != nullptr && appState()->icloudEvictReport().has_value();
}

bool ICloudModel::hasFreed() const
{
    return hasReport() && appState()->icloudEvictReport()->freedBytes >= 1;
}

QString ICloudModel::reportText() const
{
    if (!hasFreed()) {
        return tr("Nothing was released this time.");
    }
    return tr("Freed %1 — your files stay in iCloud.")
        .arg(bytes(appState()->icloudEvictReport()->freedBytes));
}

std::vector<ICloudAppBundle> ICloudModel::noticeApps() const
{
    if (hasReport()) {
        return appState()->icloudEvictReport()->appsStillDownloaded;
    }
    return showsSelection() ? appState()->icloudSelectedApps() : std::vector<ICloudAppBundle>();
}

QString ICloudModel::appsTitle() const
{
    if (noticeApps().empty()) {
        return {};
    }
    if (hasReport()) {
        return tr("Still on this Mac: %1 in apps.")
            .arg(bytes(appState()->icloudEvictReport()->appsStillBytes()));
    }
    return tr("%1 are apps stored in iCloud Drive.")
        .arg(bytes(appState()->icloudSelectedAppBytes()));
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

int ICloudModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_paths.size());
}

QVariant ICloudModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto row = static_cast<std::size_t>(index.row());
    const bool isBusy = row >= m_itemCount;
    switch (role) {
    case NameRole:
        return displayName(m_paths[row]);
    case IsBusyRole:
        return isBusy;
    case IsReleasedRole:
        return !isBusy && appState()->icloudReleasedPaths().contains(m_paths[row]);
    case IsSelectedRole:
        return !isBusy && appState()->icloudSelection().contains(m_paths[row]);
    default:
        return isBusy ? QVariant() : dataOfItem(items()[row], role);
    }
}

QVariant ICloudModel::dataOfItem(const ICloudItem& item, int role) const
{
    switch (role) {
    case AppsTextRole:
        return item.apps.empty() ? QString()
                                 : tr("includes %1 apps (%2) that macOS keeps downloaded")
                                       .arg(count(static_cast<std::int64_t>(item.apps.size())),
                                            bytes(item.appBytes()));
    case FilesTextRole:
        return item.fileCount < 1 ? QString() : tr("%1 files").arg(count(item.fileCount));
    case SizeTextRole:
        return bytes(item.localBytes);
    default:
        return {};
    }
}

QHash<int, QByteArray> ICloudModel::roleNames() const
{
    return {{NameRole, "name"},
            {IsBusyRole, "isBusy"},
            {IsReleasedRole, "isReleased"},
            {IsSelectedRole, "isSelected"},
            {AppsTextRole, "appsText"},
            {FilesTextRole, "filesText"},
            {SizeTextRole, "sizeText"}};
}

void ICloudModel::open()
{
    const bool isFirstTime = !isMeasured();
    appState()->openICloud();
    if (isFirstTime) {
        appState()->reloadICloud();
    }
}

void ICloudModel::setSelected(int row, bool isSelected)
{
    if (row >= 0 && static_cast<std::size_t>(row) < m_itemCount) {
        appState()->setICloudSelected(m_paths[static_cast<std::size_t>(row)], isSelected);
    }
}

void ICloudModel::revealApps()
{
    appState()->revealICloudApps(noticeApps());
}

const std::string& ICloudModel::pathAt(std::size_t row) const
{
    return row < items().size() ? items()[row].path
                                : appState()->icloudBusyFolders()[row - items().size()];
}

void ICloudModel::updateRows()
{
    const std::size_t count = items().size() + appState()->icloudBusyFolders().size();
    const auto isSame = [this](std::size_t row, std::size_t now) {
        return m_paths[row] == pathAt(now);
    };
    // While a measuring goes on rows come one by one, and the list should keep its place.
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
        emit dataChanged(index(0), index(rowCount() - 1), {IsReleasedRole, IsSelectedRole});
    }
    emit changed();
}

} // namespace Zorvane
