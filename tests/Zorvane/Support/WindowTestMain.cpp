#include <QGuiApplication>
#include <QtQml/QQmlExtensionPlugin>

#include <gmock/gmock.h>

#include <cstring>
#include <mutex>
#include <utility>

Q_IMPORT_QML_PLUGIN(ZorvanePlugin)

namespace {

// A message handler is a plain function.
std::mutex warningsMutex;
std::string warnings;

void collect(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    // The platform plugin mentions its own limits.
    const bool isOfPlatform = QLatin1String(context.category).startsWith(QLatin1String("qt.qpa")) ||
                              text.startsWith(QStringLiteral("This plugin does not support"));
    if (type != QtDebugMsg && type != QtInfoMsg && !isOfPlatform) {
        const std::lock_guard lock(warningsMutex);
        warnings += text.toStdString() + '\n';
    }
}

/// A test that logs a warning fails.
class WarningsFail : public testing::EmptyTestEventListener
{
    void OnTestEnd(const testing::TestInfo& /*test*/) override
    {
        const std::lock_guard lock(warningsMutex);
        EXPECT_EQ(std::exchange(warnings, {}), "");
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
    qInstallMessageHandler(collect);
    testing::UnitTest::GetInstance()->listeners().Append(new WarningsFail);
    return RUN_ALL_TESTS();
}
