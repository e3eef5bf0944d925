#include "Zorvane/Desktop/ReducedMotion.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSettings>
#include <QStandardPaths>
#include <optional>

namespace Zorvane {

namespace {

constexpr int portalTimeout = 250; // milliseconds

std::optional<bool> portalAnimations()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    call << QStringLiteral("org.gnome.desktop.interface") << QStringLiteral("enable-animations");
    const QDBusMessage reply =
        QDBusConnection::sessionBus().call(call, QDBus::Block, portalTimeout);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return std::nullopt;
    }
    // Read() wraps its answer in two variants.
    QVariant value = reply.arguments().constFirst();
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value.typeId() == QMetaType::Bool ? std::optional(value.toBool()) : std::nullopt;
}

bool hasAnimationsOffInKde()
{
    const QSettings settings(
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
            QStringLiteral("/kdeglobals"),
        QSettings::IniFormat);
    bool isNumber = false;
    const double factor =
        settings.value(QStringLiteral("KDE/AnimationDurationFactor")).toDouble(&isNumber);
    return isNumber && factor == 0;
}

} // namespace

bool wantsReducedMotion()
{
    return !portalAnimations().value_or(true) || hasAnimationsOffInKde();
}

} // namespace Zorvane
