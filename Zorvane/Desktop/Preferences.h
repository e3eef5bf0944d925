#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

namespace Zorvane {

/// The settings that persist between runs, in a file in the user's configuration folder. A crash
/// leaves the old or the new values. An immutable value; main thread only. An unreadable file
/// counts as empty; one that cannot be written stays unchanged.
class Preferences
{
public:
    explicit Preferences(QString file);

    /// The file of this user, in $XDG_CONFIG_HOME.
    [[nodiscard]] static Preferences ofUser();

    /// The text under "zorvane.acceptedTermsVersion"; nothing unless a text is stored.
    [[nodiscard]] std::optional<QString> acceptedTermsVersion() const;

    /// Stores both "zorvane.acceptedTermsVersion" and "zorvane.acceptedTermsDate" (ISO 8601, UTC).
    void storeAcceptedTerms(const QString& version, const QDateTime& date) const;

private:
    QString m_file;
};

} // namespace Zorvane
