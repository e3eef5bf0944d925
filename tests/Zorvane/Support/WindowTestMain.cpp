#include "tests/Zorvane/Support/TestWindow.h"

#include <QGuiApplication>
#include <QtQml/QQmlExtensionPlugin>

#include <gmock/gmock.h>

#include <cstring>

Q_IMPORT_QML_PLUGIN(ZorvanePlugin)

namespace {

/// A test that logs a warning fails.
class WarningsFail : public testing::EmptyTestEventListener
{
    void OnTestEnd(const testing::TestInfo& /*test*/) override
    {
        EXPECT_EQ(ZorvaneTests::takeWarnings().join(u'\n').toStdString(), "");
    }
};

} // namespace

/// Draws in software without a display or, with "--opengl", on an X11 display as the program does.
int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    const bool isOpenGL = argc > 1 && std::strcmp(argv[1], "--opengl") == 0;
    qputenv("QT_QPA_PLATFORM", isOpenGL ? "xcb" : "offscreen");
    if (!isOpenGL) {
        qputenv("QT_QUICK_BACKEND", "software");
    }
    const QGuiApplication application(argc, argv);
    ZorvaneTests::collectWarnings();
    testing::UnitTest::GetInstance()->listeners().Append(new WarningsFail);
    return RUN_ALL_TESTS();
}
