#pragma once

#include "Zorvane/State/Models/RowModel.h"

#include <QtQml/qqmlregistration.h>
#include <cstdint>

namespace Zorvane {

class AppState;

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
    Q_PROPERTY(bool hasSkipped READ hasSkipped NOTIFY changed)
    /// Empty when no item was skipped for this reason, as is protectedTitle.
    Q_PROPERTY(QString inUseTitle READ inUseTitle NOTIFY changed)
    Q_PROPERTY(QString protectedTitle READ protectedTitle NOTIFY changed)
public:
    enum Role { PathRole = firstRole };
    Q_ENUM(Role)

    explicit ReportModel(const AppState& state);

    [[nodiscard]] QString freedText() const;
    [[nodiscard]] QString removedText() const;
    [[nodiscard]] QString visibleFreedText() const;
    [[nodiscard]] bool hasSkipped() const { return rows() > 0; }
    [[nodiscard]] QString inUseTitle() const;
    [[nodiscard]] QString protectedTitle() const;

protected:
    [[nodiscard]] std::size_t rows() const override;
    [[nodiscard]] QVariant value(std::size_t row, int role) const override;

private:
    void rebuild();

    const AppState& m_state;
    std::int64_t m_inUse = 0;
    std::int64_t m_protected = 0;
};

} // namespace Zorvane
