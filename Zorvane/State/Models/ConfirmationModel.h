#pragma once

#include "Zorvane/State/Models/StateListModel.h"

#include <QStringList>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace Zorvane {

/// What a clean is about to remove: one row for each area of which at least one byte is chosen, in
/// the order of the results. It follows the selection. Main thread only.
class ConfirmationModel : public Zorvane::StateListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed)
    Q_PROPERTY(QStringList warnings READ warnings NOTIFY changed)
    /// Whether something is chosen that wants to be reviewed.
    Q_PROPERTY(bool needsAcknowledgement READ needsAcknowledgement NOTIFY changed)
    /// Styled text; the titles in it are escaped.
    Q_PROPERTY(QString acknowledgementText READ acknowledgementText NOTIFY changed)
    Q_PROPERTY(QString plainAcknowledgementText READ plainAcknowledgementText NOTIFY changed)
public:
    enum Role { TitleRole = Qt::UserRole + 1, IsReviewRequiredRole, SizeTextRole };

    using StateListModel::StateListModel;

    [[nodiscard]] QString totalText() const { return m_totalText; }
    [[nodiscard]] QStringList warnings() const { return m_warnings; }
    [[nodiscard]] bool needsAcknowledgement() const { return m_needsAcknowledgement; }
    [[nodiscard]] QString acknowledgementText() const;
    [[nodiscard]] QString plainAcknowledgementText() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

protected:
    void follow(AppState& appState) override;

private:
    struct Row
    {
        QString title;
        bool isReviewRequired = false;
        QString sizeText;
    };

    /// With the place of the titles, which may hold anything and are put in last.
    [[nodiscard]] static QString acknowledgement();
    void rebuild();

    std::vector<Row> m_rows;
    QString m_totalText;
    QStringList m_warnings;
    bool m_needsAcknowledgement = false;
    QString m_reviewTitles;
};

} // namespace Zorvane
