#include "Zorvane/Desktop/PermissionSettings.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

namespace Zorvane {

namespace {

struct Settings
{
    const char* program;
    QStringList arguments;
};

} // namespace

void openPermissionSettings()
{
    const Settings known[] = {
        {"gnome-control-center", {QStringLiteral("applications")}},
        {"systemsettings", {QStringLiteral("kcm_app-permissions")}},
        {"flatseal", {}},
    };
    for (const Settings& settings : known) {
        const QString program =
            QStandardPaths::findExecutable(QString::fromLatin1(settings.program));
        if (!program.isEmpty()) {
            QProcess::startDetached(program, settings.arguments);
            return;
        }
    }
}

} // namespace Zorvane
