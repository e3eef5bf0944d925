#include "Zorvane/Desktop/UpdateFeed.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QVersionNumber>

namespace Zorvane {

std::optional<UpdateFeed> UpdateFeed::parse(const QByteArray& json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const QJsonValue version = object.value(QStringLiteral("version"));
    const QJsonValue notes = object.value(QStringLiteral("notes"));
    const QUrl link(object.value(QStringLiteral("link")).toString(), QUrl::StrictMode);
    const bool isComplete = version.isString() && notes.isString() && link.isValid() &&
                            link.scheme() == QStringLiteral("https") && !link.host().isEmpty();
    if (!isComplete || QVersionNumber::fromString(version.toString()).isNull()) {
        return std::nullopt;
    }
    return UpdateFeed{version.toString(), notes.toString(), link};
}

bool UpdateFeed::isNewerThan(const QString& installed) const
{
    return QVersionNumber::fromString(version).normalized() >
           QVersionNumber::fromString(installed).normalized();
}

} // namespace Zorvane
