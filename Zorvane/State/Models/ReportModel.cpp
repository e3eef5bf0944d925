#include "Zorvane/State/Models/ReportModel.h"

#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/State/AppState.h"

#include <algorithm>

namespace Zorvane {

using CleanCore::CleaningReport;

void ReportModel::follow(AppState& appState)
{
    connect(&appState, &AppState::cleaningReportChanged, this, &ReportModel::rebuild);
    connect(&appState, &AppState::lastVisibleFreedBytesChanged, this, &ReportModel::changed);
    rebuild();
}

QString ReportModel::freedText() const
{
    const bool hasReport = appState() != nullptr && appState()->hasCleaningReport();
    return hasReport ? appState()->byteCountFormatter().string(
                           appState()->cleaningReport()->totalBytesFreed())
                     : QString();
}

QString ReportModel::removedText() const
{
    if (appState() == nullptr || !appState()->hasCleaningReport()) {
        return {};
    }
    const auto count = static_cast<std::int64_t>(appState()->cleaningReport()->removed.size());
    return tr("freed — %1 items removed").arg(appState()->byteCountFormatter().count(count));
}

QString ReportModel::visibleFreedText() const
{
    if (appState() == nullptr || !appState()->lastVisibleFreedBytes()) {
        return {};
    }
    return tr("Visible in Finder right now: %1")
        .arg(appState()->byteCountFormatter().string(*appState()->lastVisibleFreedBytes()));
}

QString ReportModel::inUseTitle() const
{
    return m_inUse == 0 ? QString()
                        : tr("%1 in use by an open app")
                              .arg(appState()->byteCountFormatter().count(m_inUse));
}

QString ReportModel::protectedTitle() const
{
    return m_protected == 0 ? QString()
                            : tr("%1 protected by Zorvane")
                                  .arg(appState()->byteCountFormatter().count(m_protected));
}

int ReportModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_inUse + m_protected);
}

QVariant ReportModel::data(const QModelIndex& index, int role) const
{
    if (role != PathRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto row = static_cast<std::size_t>(index.row());
    return displayText(appState()->cleaningReport()->skipped[row].path);
}

QHash<int, QByteArray> ReportModel::roleNames() const
{
    return {{PathRole, "path"}};
}

void ReportModel::rebuild()
{
    beginResetModel();
    m_inUse = 0;
    m_protected = 0;
    if (const auto& report = appState()->cleaningReport()) {
        m_inUse = std::ranges::count(report->skipped, CleaningReport::SkipReason::removalFailed,
                                     &CleaningReport::SkippedItem::reason);
        m_protected = static_cast<std::int64_t>(report->skipped.size()) - m_inUse;
    }
    endResetModel();
    emit changed();
}

} // namespace Zorvane
