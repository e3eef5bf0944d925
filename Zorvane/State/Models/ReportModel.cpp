#include "Zorvane/State/Models/ReportModel.h"

#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/State/AppState.h"

#include <algorithm>

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

QString ReportModel::inUseTitle() const
{
    return m_inUse == 0
               ? QString()
               : tr("%1 in use by an open app").arg(m_state.byteCountFormatter().count(m_inUse));
}

QString ReportModel::protectedTitle() const
{
    return m_protected == 0
               ? QString()
               : tr("%1 protected by Zorvane").arg(m_state.byteCountFormatter().count(m_protected));
}

std::size_t ReportModel::rows() const
{
    return static_cast<std::size_t>(m_inUse + m_protected);
}

QVariant ReportModel::value(std::size_t row, int role) const
{
    return role == PathRole ? displayText(m_state.cleaningReport()->skipped[row].path) : QVariant();
}

void ReportModel::rebuild()
{
    beginResetModel();
    m_inUse = 0;
    m_protected = 0;
    if (const auto& report = m_state.cleaningReport()) {
        m_inUse = std::ranges::count(report->skipped, CleaningReport::SkipReason::removalFailed,
                                     &CleaningReport::SkippedItem::reason);
        m_protected = static_cast<std::int64_t>(report->skipped.size()) - m_inUse;
    }
    endResetModel();
    emit changed();
}

} // namespace Zorvane
