#include "Zorvane/State/Models/RowModel.h"

#include <QMetaEnum>
#include <algorithm>
#include <limits>

namespace Zorvane {

int RowModel::rowCount(const QModelIndex& parent) const
{
    constexpr std::size_t most = std::numeric_limits<int>::max();
    return parent.isValid() ? 0 : static_cast<int>(std::min(rows(), most));
}

QVariant RowModel::data(const QModelIndex& index, int role) const
{
    return checkIndex(index, CheckIndexOption::IndexIsValid)
               ? value(static_cast<std::size_t>(index.row()), role)
               : QVariant();
}

QHash<int, QByteArray> RowModel::roleNames() const
{
    const QMetaEnum roles = metaObject()->enumerator(metaObject()->indexOfEnumerator("Role"));
    QHash<int, QByteArray> names;
    for (int role = 0; role < roles.keyCount(); ++role) {
        QByteArray name(roles.key(role));
        name.chop(qstrlen("Role"));
        name.front() = name.left(1).toLower().front();
        names.insert(roles.value(role), name);
    }
    return names;
}

} // namespace Zorvane
