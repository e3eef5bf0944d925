#include "Zorvane/Desktop/Preferences.h"

#include <QSettings>
#include <QStandardPaths>

namespace Zorvane {

namespace {

const QString versionKey = QStringLiteral("zorvane.acceptedTermsVersion");
const QString dateKey = QStringLiteral("zorvane.acceptedTermsDate");

} // namespace

Preferences::Preferences(QString file) : m_file(std::move(file)) {}

Preferences Preferences::ofUser()
{
    return Preferences(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                       QStringLiteral("/zorvane/preferences.ini"));
}

std::optional<QString> Preferences::acceptedTermsVersion() const
{
    const QSettings settings(m_file, QSettings::IniFormat);
    const QVariant value = settings.value(versionKey);
    return value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt;
}

void Preferences::storeAcceptedTerms(const QString& version, const QDateTime& date) const
{
    // QSettings writes a temporary file and renames it over the old one; see QSaveFile.
    QSettings settings(m_file, QSettings::IniFormat);
    settings.setValue(versionKey, version);
    settings.setValue(dateKey, date.toUTC().toString(Qt::ISODateWithMs));
    settings.sync();
}

} // namespace Zorvane
