#include "Zorvane/State/ICloudModel.h"

#include "Zorvane/Platform/DisplayText.h"
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

ICloudModel::ICloudModel(QObject* parent) : QAbstractListModel(parent) {}

void ICloudModel::setAppState(AppState* appState)
{
    if (m_appState != nullptr) {
        m_appState->disconnect(this);
    }
    m_appState = appState;
    connect(appState, &AppState::icloudItemsChanged, this, &ICloudModel::updateRows);
    connect(appState, &AppState::icloudBusyFoldersChanged, this, &ICloudModel::updateRows);
    connect(appState, &AppState::icloudSelectionChanged, this, &ICloudModel::refreshRows);
    connect(appState, &AppState::icloudReleasedPathsChanged, this, &ICloudModel::refreshRows);
    connect(appState, &AppState::icloudPendingChanged, this, &ICloudModel::changed);
    connect(appState, &AppState::icloudMeasuredChanged, this, &ICloudModel::changed);
    connect(appState, &AppState::icloudEvictProgressChanged, this, &ICloudModel::changed);
    connect(appState, &AppState::icloudEvictReportChanged, this, &ICloudModel::changed);
    connect(appState, &AppState::isEvictingChanged, this, &ICloudModel::changed);
    updateRows();
    emit appStateChanged();
}

const std::vector<ICloudItem>& ICloudModel::items() const
{
    static const std::vector<ICloudItem> none;
    return isMeasured() ? *m_appState->icloudItems() : none;
}

QString ICloudModel::bytes(std::int64_t count) const
{
    return m_appState->byteCountFormatter().string(count);
}

QString ICloudModel::count(std::int64_t number) const
{
    return m_appState->byteCountFormatter().count(number);
}

bool ICloudModel::isMeasured() const
{
    return m_appState != nullptr && m_appState->icloudItems().has_value();
}

bool ICloudModel::isMeasuring() const
{
    return m_appState != nullptr && m_appState->icloudPending() >= 1;
}

QString ICloudModel::measuringText() const
{
    if (!isMeasuring()) {
        return {};
    }
    if (m_appState->icloudMeasuredFiles() < 1) {
        return tr("Measuring… %1 folders left").arg(count(m_appState->icloudPending()));
    }
    return tr("Measuring… %1 files seen · %2 on this Mac so far")
        .arg(count(m_appState->icloudMeasuredFiles()), bytes(m_appState->icloudMeasuredBytes()));
}

QString ICloudModel::downloadedText() const
{
    return m_appState == nullptr ? QString() : bytes(m_appState->icloudDownloadedBytes());
}

QString ICloudModel::freeingText() const
{
    if (m_appState == nullptr || !m_appState->icloudEvictProgress()) {
        return {};
    }
    const AppState::EvictProgress& progress = *m_appState->icloudEvictProgress();
    return tr("Freeing %1 of %2 — %3… iCloud is removing the downloads; large folders take a "
              "while.")
        .arg(count(progress.index), count(progress.total), displayText(progress.name));
}

bool ICloudModel::isEmpty() const
{
    return m_appState != nullptr && items().empty() && m_appState->icloudBusyFolders().empty() &&
           !isMeasuring();
}

QString ICloudModel::busyText() const
{
    if (m_appState == nullptr || isMeasuring() || m_appState->icloudBusyFolders().empty()) {
        return {};
    }
    QStringList names;
    for (const std::string& folder : m_appState->icloudBusyFolders()) {
        names.push_back(displayName(folder));
    }
    return tr("“%1” went past 90 seconds and measuring was stopped. This usually happens for a few "
              "minutes after a release — iCloud is still tidying the folder. Try again in a bit.")
        .arg(names.join(QStringLiteral(", ")));
}

QString ICloudModel::selectedText() const
{
    return m_appState == nullptr ? QString() : bytes(m_appState->icloudSelectedBytes());
}

bool ICloudModel::hasSelectedBytes() const
{
    return m_appState != nullptr && m_appState->icloudSelectedBytes() != 0;
}

bool ICloudModel::canEvict() const
{
    return hasSelectedBytes() && !m_appState->isEvicting() && !isMeasuring();
}

bool ICloudModel::showsSelection() const
{
    return m_appState != nullptr && !hasReport() && !isMeasuring() && !m_appState->isEvicting();
}

QString ICloudModel::beforeFreeingText() const
{
    if (!showsSelection() || m_appState->icloudSelectedBytes() < 1) {
        return {};
    }
    const std::int64_t files = m_appState->icloudSelectedFileCount();
    return tr("iCloud will release %1 in %2 files — this usually takes %3.")
        .arg(selectedText(), count(files), estimate(files));
}

bool ICloudModel::hasReport() const
{
    return m_appState != nullptr && m_appState->icloudEvictReport().has_value();
}

bool ICloudModel::hasFreed() const
{
    return hasReport() && m_appState->icloudEvictReport()->freedBytes >= 1;
}

QString ICloudModel::reportText() const
{
    if (!hasFreed()) {
        return tr("Nothing was released this time.");
    }
    return tr("Freed %1 — your files stay in iCloud.")
        .arg(bytes(m_appState->icloudEvictReport()->freedBytes));
}

std::vector<ICloudAppBundle> ICloudModel::noticeApps() const
{
    if (hasReport()) {
        return m_appState->icloudEvictReport()->appsStillDownloaded;
    }
    return showsSelection() ? m_appState->icloudSelectedApps() : std::vector<ICloudAppBundle>();
}

QString ICloudModel::appsTitle() const
{
    if (noticeApps().empty()) {
        return {};
    }
    if (hasReport()) {
        return tr("Still on this Mac: %1 in apps.")
            .arg(bytes(m_appState->icloudEvictReport()->appsStillBytes()));
    }
    return tr("%1 are apps stored in iCloud Drive.")
        .arg(bytes(m_appState->icloudSelectedAppBytes()));
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
        return !isBusy && m_appState->icloudReleasedPaths().contains(m_paths[row]);
    case IsSelectedRole:
        return !isBusy && m_appState->icloudSelection().contains(m_paths[row]);
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
    m_appState->openICloud();
    if (isFirstTime) {
        m_appState->reloadICloud();
    }
}

void ICloudModel::setSelected(int row, bool isSelected)
{
    if (row >= 0 && static_cast<std::size_t>(row) < m_itemCount) {
        m_appState->setICloudSelected(m_paths[static_cast<std::size_t>(row)], isSelected);
    }
}

void ICloudModel::revealApps()
{
    m_appState->revealICloudApps(noticeApps());
}

void ICloudModel::updateRows()
{
    std::vector<std::string> paths;
    for (const ICloudItem& item : items()) {
        paths.push_back(item.path);
    }
    const std::size_t itemCount = paths.size();
    const std::vector<std::string>& busy = m_appState->icloudBusyFolders();
    paths.insert(paths.end(), busy.begin(), busy.end());

    // While a measuring goes on rows come one by one, and the list should keep its place.
    const auto [oldEnd, newEnd] = std::ranges::mismatch(m_paths, paths);
    const bool isOneMore = paths.size() == m_paths.size() + 1 &&
                           std::equal(oldEnd, m_paths.end(), std::next(newEnd), paths.end());
    if (isOneMore) {
        const auto row = static_cast<int>(newEnd - paths.begin());
        beginInsertRows({}, row, row);
        m_paths = std::move(paths);
        m_itemCount = itemCount;
        endInsertRows();
    } else {
        beginResetModel();
        m_paths = std::move(paths);
        m_itemCount = itemCount;
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
