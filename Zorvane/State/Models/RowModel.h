#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <cstddef>

namespace Zorvane {

/// A flat list of rows, and the texts that go with it. A model declares its roles as Q_ENUM(Role)
/// from `firstRole` on, and QML knows TitleRole as `title`. Main thread only.
class RowModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ANONYMOUS
public:
    static constexpr int firstRole = Qt::UserRole + 1;

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const final;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const final;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const final;

signals:
    /// Any of the texts may be different now.
    void changed();

protected:
    [[nodiscard]] virtual std::size_t rows() const = 0;
    /// `row` is less than rows(). A role that the row does not have has no value.
    [[nodiscard]] virtual QVariant value(std::size_t row, int role) const = 0;
};

} // namespace Zorvane
