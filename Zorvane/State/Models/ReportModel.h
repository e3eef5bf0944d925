#pragma once

#include "Zorvane/State/Models/StateListModel.h"

#include <QtQml/qqmlregistration.h>
#include <cstdint>

namespace Zorvane {

/// The outcome of the last clean; its rows are the paths of everything that was skipped, in the
/// report's order. Main thread only.
class ReportModel : public Zorvane::StateListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString freedText READ freedText NOTIFY changed)
    Q_PROPERTY(QString removedText READ removedText NOTIFY changed)
    /// Empty when the growth of the volume's free space is not known.
    Q_PROPERTY(QString visibleFreedText READ visibleFreedText NOTIFY changed)
    Q_PROPERTY(bool hasSkipped READ hasSkipped NOTIFY changed)
    /// Empty when no item was skipped for this reason; so is protectedTitle.
    Q_PROPERTY(QString inUseTitle READ inUseTitle NOTIFY changed)
    Q_PROPERTY(QString protectedTitle READ protectedTitle NOTIFY changed)
public:
    enum Role { PathRole = Qt::UserRole + 1 };

    using StateListModel::StateListModel;

    [[nodiscard]] QString freedText() const;
    [[nodiscard]] QString removedText() const;
    [[nodiscard]] QString visibleFreedText() const;
    [[nodiscard]] bool hasSkipped() const { return rowCount() > 0; }
    [[nodiscard]] QString inUseTitle() const;
    [[nodiscard]] QString protectedTitle() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

protected:
    void follow(AppState& appState) override;

private:
    void rebuild();

    std::int64_t m_inUse = 0;
    std::int64_t m_protected = 0;
};

} // namespace Zorvane
