#pragma once

#include "CleanCore/Reclaim/Reclaim.h"
#include "CleanCore/Reclaim/Shortfall.h"
#include "Zorvane/Desktop/ByteCountFormatter.h"

#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <span>

namespace Zorvane {

/// A reason why a clean brings less free space than the sizes add up to.
struct ReclaimRow
{
    Q_GADGET
    QML_VALUE_TYPE(reclaimRow)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString detail MEMBER detail)
    Q_PROPERTY(QString sizeText MEMBER sizeText)
public:
    QString title;
    QString detail;
    QString sizeText;
};

/// One row for each cause, and one for what no cause explains if that is more than nothing.
[[nodiscard]] QList<ReclaimRow> reclaimRows(std::span<const CleanCore::ReclaimShare> causes,
                                            std::int64_t unexplainedBytes,
                                            const ByteCountFormatter& formatter);

/// `lead` ends in "%1", which becomes "33.6 MB" or "33.6 MB to 110.9 MB".
[[nodiscard]] QString reclaimText(const QString& lead, const CleanCore::Reclaim& reclaim,
                                  const ByteCountFormatter& formatter);

} // namespace Zorvane
