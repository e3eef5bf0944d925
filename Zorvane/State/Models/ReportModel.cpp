#include "Zorvane/State/Models/ReportModel.h"

#include "Words/LeftInPlaceText.h"
#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/State/AppState.h"

namespace Zorvane {

using CleanCore::CleaningReport;

ReportModel::ReportModel(const AppState& state) : m_state(state)
{
    connect(&state, &AppState::cleaningReportChanged, this, &ReportModel::rebuild);
    connect(&state, &AppState::lastVisibleFreedBytesChanged, this, &ReportModel::changed);
    rebuild();
}

QString ReportModel::freedText() const
{
    const auto& report = m_state.cleaningReport();
    return report ? m_state.byteCountFormatter().string(report->totalBytesFreed()) : QString();
}

QString ReportModel::removedText() const
{
    const auto& report = m_state.cleaningReport();
    if (!report) {
        return {};
    }
    const auto count = static_cast<std::int64_t>(report->removed.size());
    return tr("freed — %1 items removed").arg(m_state.byteCountFormatter().count(count));
}

QString ReportModel::visibleFreedText() const
{
    const auto freed = m_state.lastVisibleFreedBytes();
    return freed ? tr("Visible in Finder right now: %1")
                       .arg(m_state.byteCountFormatter().string(*freed))
                 : QString();
}

QString ReportModel::growthText() const
{
    const CleanCore::FreeSpaceWatch::Growth& growth = m_state.lastGrowth();
    QStringList lines;
    for (const CleanCore::VolumeGrowth& volume : growth.volumes) {
        if (volume.bytes > 0 && volume.bytes != growth.bytes()) {
            lines.push_back(tr("%1 on the disk of %2")
                                .arg(m_state.byteCountFormatter().string(volume.bytes),
                                     displayText(volume.folder)));
        }
    }
    if (growth.isStillBeingFreed) {
        lines.push_back(tr("More is still being freed."));
    }
    return lines.join(u'\n');
}

QList<ReclaimRow> ReportModel::shortfall() const
{
    const CleanCore::Shortfall& shortfall = m_state.lastShortfall();
    return reclaimRows(shortfall.causes, shortfall.unexplainedBytes, m_state.byteCountFormatter());
}

QList<SkippedReason> ReportModel::reasons() const
{
    QList<SkippedReason> reasons;
    if (const auto& report = m_state.cleaningReport()) {
        for (const Words::SkippedGroup& group : Words::skippedGroups(*report)) {
            const bool isProtected =
                group.reason == CleaningReport::SkipReason::blockedBySafetyGuard;
            const auto count = static_cast<std::int64_t>(group.items.size());
            reasons.push_back(
                {isProtected ? QStringLiteral("shield.fill") : QStringLiteral("lock.fill"),
                 tr(group.title).arg(m_state.byteCountFormatter().count(count)), tr(group.detail)});
        }
    }
    return reasons;
}

std::size_t ReportModel::rows() const
{
    const auto& report = m_state.cleaningReport();
    return report ? report->skipped.size() : 0;
}

QVariant ReportModel::value(std::size_t row, int role) const
{
    return role == PathRole ? displayText(m_state.cleaningReport()->skipped[row].path) : QVariant();
}

void ReportModel::rebuild()
{
    beginResetModel();
    endResetModel();
    emit changed();
}

} // namespace Zorvane
