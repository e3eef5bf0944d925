#include "Zorvane/Desktop/FileManagerReveal.h"

#include "CleanCore/Support/PathText.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QStringList>
#include <QUrl>
#include <set>

namespace Zorvane {

namespace {

/// Escapes every byte but the unreserved ones, so that a name in any encoding arrives unchanged.
QByteArray fileUri(const std::string& path)
{
    return "file://" + QByteArray::fromStdString(path).toPercentEncoding("/");
}

void openFolders(const std::vector<std::string>& paths)
{
    std::set<std::string> folders;
    for (const std::string& path : paths) {
        folders.insert(CleanCore::PathText::parent(path));
    }
    for (const std::string& folder : folders) {
        QDesktopServices::openUrl(QUrl::fromEncoded(fileUri(folder)));
    }
}

} // namespace

void revealInFileManager(const std::vector<std::string>& paths)
{
    if (paths.empty()) {
        return;
    }
    QStringList uris;
    for (const std::string& path : paths) {
        uris.push_back(QString::fromLatin1(fileUri(path)));
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    const QString startupId;
    call << uris << startupId;
    auto* const watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call));
    watcher->setParent(QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished,
                     [paths](QDBusPendingCallWatcher* finished) {
                         if (finished->isError()) {
                             openFolders(paths);
                         }
                         finished->deleteLater();
                     });
}

} // namespace Zorvane
