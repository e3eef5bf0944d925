#pragma once

#include "Zorvane/State/Models/ReclaimRow.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace Zorvane {

class AppState;

/// An area in the confirmation of a clean.
struct ConfirmationRow
{
    Q_GADGET
    QML_VALUE_TYPE(confirmationRow)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(bool isReviewRequired MEMBER isReviewRequired)
    Q_PROPERTY(QString sizeText MEMBER sizeText)
public:
    QString title;
    bool isReviewRequired = false;
    QString sizeText;
};

/// The items that a clean is about to remove. It follows the selection. Main thread only.
class ConfirmationModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Models has one.")
    /// Each area with at least one selected byte, in the order of the results.
    Q_PROPERTY(QList<Zorvane::ConfirmationRow> rows READ rows NOTIFY changed)
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed)
    /// How much the free space will grow; empty while that is being found out.
    Q_PROPERTY(QString reclaimText READ reclaimText NOTIFY reclaimChanged)
    /// Why that is not the total.
    Q_PROPERTY(QList<Zorvane::ReclaimRow> reclaimRows READ reclaimRows NOTIFY reclaimChanged)
    Q_PROPERTY(QStringList warnings READ warnings NOTIFY changed)
    /// Whether any selected item requires a review.
    Q_PROPERTY(bool needsAcknowledgement READ needsAcknowledgement NOTIFY changed)
    /// Styled text; the titles in it are escaped.
    Q_PROPERTY(QString acknowledgementText READ acknowledgementText NOTIFY changed)
    Q_PROPERTY(QString plainAcknowledgementText READ plainAcknowledgementText NOTIFY changed)
public:
    explicit ConfirmationModel(const AppState& state);

    [[nodiscard]] QList<ConfirmationRow> rows() const;
    [[nodiscard]] QString totalText() const;
    [[nodiscard]] QString reclaimText() const;
    [[nodiscard]] QList<ReclaimRow> reclaimRows() const;
    [[nodiscard]] QStringList warnings() const;
    [[nodiscard]] bool needsAcknowledgement() const;
    [[nodiscard]] QString acknowledgementText() const;
    [[nodiscard]] QString plainAcknowledgementText() const;

signals:
    void changed();
    void reclaimChanged();

private:
    /// Markdown with a place for the titles. They may hold any text, so they are put in last.
    [[nodiscard]] static QString acknowledgement();
    [[nodiscard]] QString reviewTitles() const;

    const AppState& m_state;
};

} // namespace Zorvane
