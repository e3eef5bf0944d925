#pragma once

#include "Zorvane/State/RingSegment.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace Zorvane {

class AppState;

/// The groups of the summary's ring and its legend, one row each. Main thread only.
class SummaryModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        Zorvane::AppState* appState READ appState WRITE setAppState NOTIFY appStateChanged REQUIRED)
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

    explicit SummaryModel(QObject* parent = nullptr);

    [[nodiscard]] AppState* appState() const { return m_appState; }
    void setAppState(AppState* appState);
    [[nodiscard]] QString totalText() const;
    [[nodiscard]] bool anyAccessErrors() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

signals:
    void appStateChanged();
    void changed();

private:
    struct Arc
    {
        double start = 0;
        double end = 0;
    };

    void rebuild();

    AppState* m_appState = nullptr;
    std::vector<RingSegment> m_segments;
    std::vector<Arc> m_arcs;
};

} // namespace Zorvane
