#pragma once

#include <QString>

namespace Zorvane {

/// The person whose account this is.
struct UserAccount
{
    QString fullName;
    QString loginName;

    /// From the password database; see getpwuid(3). The full name is the first part of its comment
    /// field, where "&" stands for the capitalised login name.
    [[nodiscard]] static UserAccount ofProcess();

    /// What to call the person: the full name up to its first space, which may be nothing; the
    /// login name where there is no full name.
    [[nodiscard]] QString userName() const;
};

} // namespace Zorvane
