#pragma once

#include "Zorvane/State/Models/RingSegment.h"
#include "Zorvane/State/Models/StateListModel.h"

#include <QtQml/qqmlregistration.h>
#include <vector>

namespace Zorvane {

/// The groups of the summary's ring and its legend, one row each. Main thread only.
class SummaryModel : public Zorvane::StateListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed)
    Q_PROPERTY(bool anyAccessErrors READ anyAccessErrors NOTIFY changed)
public:
    enum Role {
        LabelRole = Qt::UserRole + 1,
        /// The name of a colour of the theme.
        ColorNameRole,
        SizeTextRole,
        /// Where the group's arc starts and ends, as fractions of the circle from its top,
        /// clockwise. Both are 0 when there is no total.
        StartRole,
        EndRole,
    };

    using StateListModel::StateListModel;

    [[nodiscard]] QString totalText() const;
    [[nodiscard]] bool anyAccessErrors() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

protected:
    void follow(AppState& appState) override;

private:
    struct Arc
    {
        double start = 0;
        double end = 0;
    };

    void rebuild();

    std::vector<RingSegment> m_segments;
    std::vector<Arc> m_arcs;
};

} // namespace Zorvane
