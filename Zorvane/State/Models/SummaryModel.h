#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

class AppState;

/// A group of areas in the summary's ring and legend.
struct SummaryRow
{
    Q_GADGET
    QML_VALUE_TYPE(summaryRow)
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QString colorName MEMBER colorName)
    Q_PROPERTY(QString sizeText MEMBER sizeText)
    Q_PROPERTY(double start MEMBER start)
    Q_PROPERTY(double end MEMBER end)
public:
    QString label;
    /// The name of a colour of the theme.
    QString colorName;
    QString sizeText;
    /// Where the group's arc starts and ends, as fractions of the circle from its top, clockwise.
    double start = 0;
    double end = 0;
};

/// The total size of the results and its share of each group. Main thread only.
class SummaryModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Models has one.")
    Q_PROPERTY(QList<Zorvane::SummaryRow> rows READ rows NOTIFY changed)
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed)
    Q_PROPERTY(bool anyAccessErrors READ anyAccessErrors NOTIFY changed)
public:
    explicit SummaryModel(const AppState& state);

    [[nodiscard]] QList<SummaryRow> rows() const;
    [[nodiscard]] QString totalText() const;
    [[nodiscard]] bool anyAccessErrors() const;

signals:
    void changed();

private:
    const AppState& m_state;
};

} // namespace Zorvane
