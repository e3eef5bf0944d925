#include "Zorvane/State/Models/SummaryModel.h"

#include "Zorvane/State/AppState.h"

#include <QCoreApplication>

namespace Zorvane {

SummaryModel::SummaryModel(const AppState& state) : m_state(state)
{
    connect(&state, &AppState::categoriesChanged, this, &SummaryModel::changed);
}

QList<SummaryRow> SummaryModel::rows() const
{
    // A group that is shown holds bytes, so there is a total to divide by.
    const auto total = static_cast<double>(m_state.totalRecoverableBytes());
    QList<SummaryRow> rows;
    double start = 0;
    for (const RingSegment& segment : m_state.ringSegments()) {
        const double end = start + static_cast<double>(segment.bytes) / total;
        rows.push_back(
            {QCoreApplication::translate("RingSegment", segment.label),
             QString::fromUtf8(segment.color.data(), static_cast<qsizetype>(segment.color.size())),
             m_state.byteCountFormatter().string(segment.bytes), start, end});
        start = end;
    }
    return rows;
}

QString SummaryModel::totalText() const
{
    return m_state.byteCountFormatter().string(m_state.totalRecoverableBytes());
}

bool SummaryModel::anyAccessErrors() const
{
    return m_state.anyAccessErrors();
}

} // namespace Zorvane
