#include "Zorvane/Desktop/UpdaterController.h"

#include <QDesktopServices>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <utility>

namespace Zorvane {

namespace {

constexpr int transferTimeout = 15'000; // milliseconds
constexpr qint64 largestFeed = qint64{256} * 1024;

} // namespace

UpdaterController::UpdaterController(QObject* parent)
    : UpdaterController(QUrl(QStringLiteral(ZORVANE_UPDATE_FEED)), QStringLiteral(ZORVANE_VERSION),
                        parent)
{
}

UpdaterController::UpdaterController(QUrl feed, QString installedVersion, QObject* parent)
    : QObject(parent), m_feed(std::move(feed)), m_installedVersion(std::move(installedVersion))
{
}

UpdaterController::~UpdaterController()
{
    // Aborting the reply emits finished(), which must not reach a half-destroyed object.
    if (m_reply != nullptr) {
        m_reply->disconnect(this);
    }
}

bool UpdaterController::canCheckForUpdates() const
{
    return m_feed.isValid() && m_feed.scheme() == QStringLiteral("https") && !isChecking();
}

QString UpdaterController::notes() const
{
    return m_offer ? m_offer->notes : QString();
}

void UpdaterController::checkForUpdates()
{
    if (!canCheckForUpdates()) {
        return;
    }
    if (m_network == nullptr) {
        m_network = new QNetworkAccessManager(this);
    }
    QNetworkRequest request(m_feed);
    request.setTransferTimeout(transferTimeout);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    m_reply = m_network->get(request);
    connect(m_reply, &QNetworkReply::finished, this, &UpdaterController::finishCheck);
    connect(m_reply, &QNetworkReply::downloadProgress, m_reply,
            [reply = m_reply](qint64 received, qint64 /*total*/) {
                if (received > largestFeed) {
                    reply->abort();
                }
            });
    m_isShown = true;
    m_offer.reset();
    m_message = tr("Checking for updates…");
    emit changed();
}

void UpdaterController::finishCheck()
{
    QNetworkReply* const reply = std::exchange(m_reply, nullptr);
    reply->deleteLater();
    conclude(reply->error() == QNetworkReply::NoError ? reply->readAll() : QByteArray());
}

void UpdaterController::conclude(const QByteArray& feed)
{
    m_offer = UpdateFeed::parse(feed);
    if (!m_offer) {
        m_message = tr("The update check failed. Check your connection and try again later.");
    } else if (m_offer->isNewerThan(m_installedVersion)) {
        m_message =
            tr("Zorvane %1 is available. You have %2.").arg(m_offer->version, m_installedVersion);
    } else {
        m_message = tr("Zorvane %1 is the latest version.").arg(m_installedVersion);
        m_offer.reset();
    }
    m_isShown = true;
    emit changed();
}

void UpdaterController::openDownload()
{
    if (m_offer) {
        QDesktopServices::openUrl(m_offer->link);
    }
}

void UpdaterController::dismiss()
{
    if (m_reply != nullptr) {
        QNetworkReply* const reply = std::exchange(m_reply, nullptr);
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
    m_isShown = false;
    m_offer.reset();
    emit changed();
}

} // namespace Zorvane
