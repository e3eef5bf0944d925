#include "Zorvane/Desktop/LegalPages.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace Zorvane {

namespace {

/// The page beside the executable in the build tree, or in the share folder of the installation.
QUrl ownPage(const QString& name)
{
    const QString folder = QCoreApplication::applicationDirPath();
    for (const char* place : {"/legal/", "/../share/zorvane/legal/"}) {
        const QFileInfo page(folder + QString::fromLatin1(place) + name);
        if (page.isFile()) {
            return QUrl::fromLocalFile(page.canonicalFilePath());
        }
    }
    return {};
}

QUrl page(const QString& address, const QString& name)
{
    return address.isEmpty() ? ownPage(name) : QUrl(address);
}

} // namespace

QUrl LegalPages::termsURL()
{
    return page(QStringLiteral(ZORVANE_TERMS_URL), QStringLiteral("terms.html"));
}

QUrl LegalPages::privacyURL()
{
    return page(QStringLiteral(ZORVANE_PRIVACY_URL), QStringLiteral("privacy.html"));
}

} // namespace Zorvane
