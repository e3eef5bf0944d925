#pragma once

#include "Zorvane/State/Models/ReclaimRow.h"
#include "Zorvane/State/Models/RowModel.h"

#include <QList>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

class AppState;

/// The items of a report that were skipped for one reason.
struct SkippedReason
{
    Q_GADGET
    QML_VALUE_TYPE(skippedReason)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString detail MEMBER detail)
public:
    QString symbol;
    QString title;
    QString detail;
};

/// The outcome of the last clean; its rows are the paths of all skipped items, in the order of the
/// report. Main thread only.
class ReportModel : public Zorvane::RowModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Models has one.")
    /// Empty without a report, as is removedText.
    Q_PROPERTY(QString freedText READ freedText NOTIFY changed)
    Q_PROPERTY(QString removedText READ removedText NOTIFY changed)
    /// Empty when the growth of the volume's free space is not known.
    Q_PROPERTY(QString visibleFreedText READ visibleFreedText NOTIFY changed)
    /// On which disks the free space has grown, if on several, and whether more is to come.
    Q_PROPERTY(QString growthText READ growthText NOTIFY changed)
    /// Why the free space has grown by less than what was freed.
    Q_PROPERTY(QList<Zorvane::ReclaimRow> shortfall READ shortfall NOTIFY changed)
    Q_PROPERTY(bool hasSkipped READ hasSkipped NOTIFY changed)
    Q_PROPERTY(QList<Zorvane::SkippedReason> reasons READ reasons NOTIFY changed)
public:
    enum Role { PathRole = firstRole };
    Q_ENUM(Role)

    explicit ReportModel(const AppState& state);

    [[nodiscard]] QString freedText() const;
    [[nodiscard]] QString removedText() const;
    [[nodiscard]] QString visibleFreedText() const;
    [[nodiscard]] QString growthText() const;
    [[nodiscard]] QList<ReclaimRow> shortfall() const;
    [[nodiscard]] bool hasSkipped() const { return rows() > 0; }
    [[nodiscard]] QList<SkippedReason> reasons() const;

protected:
    [[nodiscard]] std::size_t rows() const override;
    [[nodiscard]] QVariant value(std::size_t row, int role) const override;

private:
    void rebuild();

    const AppState& m_state;
};

} // namespace Zorvane
