#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

namespace Zorvane {

/// What the program remembers between runs: a file in the user's configuration folder. Written so
/// that a crash leaves the old or the new values. An immutable value; main thread only. A file that
/// cannot be read counts as empty; one that cannot be written stays as it is.
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
