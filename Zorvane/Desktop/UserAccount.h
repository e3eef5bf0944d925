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

    /// How to address the person: the full name up to its first space, which may be empty, or the
    /// login name if there is no full name.
    [[nodiscard]] QString userName() const;
};

} // namespace Zorvane
