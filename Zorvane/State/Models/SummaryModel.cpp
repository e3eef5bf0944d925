#include "Zorvane/State/Models/SummaryModel.h"

#include "Zorvane/State/AppState.h"

#include <QCoreApplication>

namespace Zorvane {

void SummaryModel::follow(AppState& appState)
{
    connect(&appState, &AppState::categoriesChanged, this, &SummaryModel::rebuild);
    rebuild();
}

QString SummaryModel::totalText() const
{
    return appState() == nullptr
               ? QString()
               : appState()->byteCountFormatter().string(appState()->totalRecoverableBytes());
}

bool SummaryModel::anyAccessErrors() const
{
    return appState() != nullptr && appState()->anyAccessErrors();
}

int SummaryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_segments.size());
}

QVariant SummaryModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto row = static_cast<std::size_t>(index.row());
    const RingSegment& segment = m_segments[row];
    switch (role) {
    case LabelRole:
        return QCoreApplication::translate("RingSegment", segment.label);
    case ColorNameRole:
        return QString::fromUtf8(segment.color.data(),
                                 static_cast<qsizetype>(segment.color.size()));
    case SizeTextRole:
        return appState()->byteCountFormatter().string(segment.bytes);
    case StartRole:
        return m_arcs[row].start;
    case EndRole:
        return m_arcs[row].end;
    default:
        return {};
    }
}

QHash<int, QByteArray> SummaryModel::roleNames() const
{
    return {{LabelRole, "label"},
            {ColorNameRole, "colorName"},
            {SizeTextRole, "sizeText"},
            {StartRole, "start"},
            {EndRole, "end"}};
}

void SummaryModel::rebuild()
{
    beginResetModel();
    m_segments = appState()->ringSegments();
    m_arcs.assign(m_segments.size(), {});
    const std::int64_t total = appState()->totalRecoverableBytes();
    double start = 0;
    for (std::size_t row = 0; row < m_segments.size() && total >= 1; ++row) {
        const double end =
            start + static_cast<double>(m_segments[row].bytes) / static_cast<double>(total);
        m_arcs[row] = {start, end};
        start = end;
    }
    endResetModel();
    emit changed();
}

} // namespace Zorvane
