#include "tests/Zorvane/Support/Warnings.h"

#include <QtGlobal>

#include <mutex>

namespace ZorvaneTests {
namespace {

// A handler of messages is a plain function.
std::mutex mutex;
QStringList collected;
QtMessageHandler previous = nullptr;

void collect(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    // The platform's own remarks on what it lacks are not the program's.
    const bool isOfPlatform = QLatin1String(context.category).startsWith(QLatin1String("qt.qpa")) ||
                              text.startsWith(QStringLiteral("This plugin does not support"));
    if (type == QtDebugMsg || type == QtInfoMsg || isOfPlatform) {
        previous(type, context, text);
        return;
    }
    const std::lock_guard lock(mutex);
    collected << text;
}

} // namespace

Warnings::Warnings()
{
    const QtMessageHandler replaced = qInstallMessageHandler(collect);
    if (replaced != collect) {
        previous = replaced;
    }
}

Warnings::~Warnings()
{
    qInstallMessageHandler(previous);
    const std::lock_guard lock(mutex);
    collected.clear();
}

QStringList Warnings::texts() const
{
    const std::lock_guard lock(mutex);
    return collected;
}

} // namespace ZorvaneTests
