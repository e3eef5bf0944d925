#include "Zorvane/Desktop/UserAccount.h"

#include <pwd.h>
#include <unistd.h>

namespace Zorvane {

UserAccount UserAccount::ofProcess()
{
    const passwd* const entry = ::getpwuid(::getuid());
    if (entry == nullptr) {
        return {};
    }
    UserAccount account;
    account.loginName = QString::fromLocal8Bit(entry->pw_name);
    QString capitalised = account.loginName;
    capitalised.replace(0, 1, capitalised.left(1).toUpper());
    account.fullName =
        QString::fromLocal8Bit(entry->pw_gecos).section(u',', 0, 0).replace(u'&', capitalised);
    return account;
}

QString UserAccount::userName() const
{
    return fullName.isEmpty() ? loginName : fullName.section(u' ', 0, 0);
}

} // namespace Zorvane
