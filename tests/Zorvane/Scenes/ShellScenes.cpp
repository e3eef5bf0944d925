#include "tests/Zorvane/Scenes/Sample.h"
#include "tests/Zorvane/Scenes/Scene.h"

#include "Zorvane/Desktop/UpdaterController.h"

namespace ZorvaneTests {

namespace {

void showMenu(MainWindow& window)
{
    Sample::grantAccess(window.application);
    window.open();
    window.press(QCoreApplication::translate("TitleBar", "Menu"));
}

void showAbout(MainWindow& window)
{
    showMenu(window);
    window.press(QCoreApplication::translate("ApplicationMenu", "About Zorvane"));
}

void conclude(MainWindow& window, const QByteArray& feed)
{
    Sample::grantAccess(window.application);
    window.open();
    window.window().findChild<Zorvane::UpdaterController*>()->conclude(feed);
    window.settle();
}

QByteArray feed(const QByteArray& notes)
{
    return R"({"version": "9.8.7", "link": "https://example.org/", "notes": ")" + notes + R"("})";
}

} // namespace

Scenes shellScenes()
{
    const auto concluding = [](const QByteArray& answer) {
        return [answer](MainWindow& window) { conclude(window, answer); };
    };
    return {
        {"shell", "menu", showMenu, true},
        {"shell", "about", showAbout},
        {"shell", "update-offered",
         concluding(feed("Finds the caches of three more package managers.\\n"
                         "Scans large folders in half the time.")),
         true},
        {"shell", "update-with-long-notes",
         concluding(feed(QByteArray("A line about something that is new in it. ").repeated(60)))},
        {"shell", "update-failed", concluding({})},
    };
}

} // namespace ZorvaneTests
