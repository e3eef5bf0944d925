#pragma once

#include "Zorvane/Desktop/UpdateFeed.h"

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>
#include <optional>

class QNetworkAccessManager;
class QNetworkReply;

namespace Zorvane {

/// Looks for a newer version, only when asked to. No other part of the program uses the network.
/// The feed's https address is fixed at build time; without one there is nothing to check. Main
/// thread only.
class UpdaterController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString installedVersion READ installedVersion CONSTANT)
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY changed)
    /// Whether a check is running or has an outcome to show.
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    /// The release notes of the offered version; empty if none is offered.
    Q_PROPERTY(QString notes READ notes NOTIFY changed)
    Q_PROPERTY(bool offersUpdate READ offersUpdate NOTIFY changed)
public:
    explicit UpdaterController(QObject* parent = nullptr);
    UpdaterController(QUrl feed, QString installedVersion, QObject* parent = nullptr);
    ~UpdaterController() override;

    [[nodiscard]] QString installedVersion() const { return m_installedVersion; }
    [[nodiscard]] bool canCheckForUpdates() const;
    [[nodiscard]] bool isShown() const { return m_isShown; }
    [[nodiscard]] bool isChecking() const { return m_reply != nullptr; }
    [[nodiscard]] QString message() const { return m_message; }
    [[nodiscard]] QString notes() const;
    [[nodiscard]] bool offersUpdate() const { return m_offer.has_value(); }

    /// Ends a check with the content of the feed, which is empty if the feed did not answer.
    void conclude(const QByteArray& feed);

    Q_INVOKABLE void checkForUpdates();
    /// Opens the page of the offered version in the browser.
    Q_INVOKABLE void openDownload();
    /// Ends a check and forgets its outcome.
    Q_INVOKABLE void dismiss();

signals:
    void changed();

private:
    void finishCheck();

    const QUrl m_feed;
    const QString m_installedVersion;
    /// Created by the first check.
    QNetworkAccessManager* m_network = nullptr;
    QNetworkReply* m_reply = nullptr;
    bool m_isShown = false;
    QString m_message;
    std::optional<UpdateFeed> m_offer;
};

} // namespace Zorvane
