#include "Zorvane/State/Models/ReclaimRow.h"

#include "Words/ReclaimText.h"
#include "Zorvane/Desktop/DisplayText.h"

#include <QCoreApplication>
#include <QStringList>

namespace Zorvane {

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("ReclaimRow", text);
}

QString titleOf(const CleanCore::ReclaimShare& share, const Words::ReclaimCauseText& text)
{
    if (share.programs.empty() || text.titleWithPrograms == nullptr) {
        return translated(text.title);
    }
    QStringList programs;
    for (const std::string& program : share.programs) {
        programs.push_back(displayText(program));
    }
    return translated(text.titleWithPrograms).arg(programs.join(QStringLiteral(", ")));
}

} // namespace

QList<ReclaimRow> reclaimRows(std::span<const CleanCore::ReclaimShare> causes,
                              std::int64_t unexplainedBytes, const ByteCountFormatter& formatter)
{
    QList<ReclaimRow> rows;
    for (const CleanCore::ReclaimShare& share : causes) {
        const Words::ReclaimCauseText text = Words::reclaimCauseText(share.cause);
        rows.push_back(
            {titleOf(share, text), translated(text.detail), formatter.string(share.bytes)});
    }
    if (unexplainedBytes > 0) {
        const Words::ReclaimCauseText text = Words::unexplainedText();
        rows.push_back(
            {translated(text.title), translated(text.detail), formatter.string(unexplainedBytes)});
    }
    return rows;
}

QString reclaimText(const QString& lead, const CleanCore::Reclaim& reclaim,
                    const ByteCountFormatter& formatter)
{
    const QString least = formatter.string(reclaim.certainBytes);
    const QString most = formatter.string(reclaim.possibleBytes);
    return lead.arg(least == most
                        ? least
                        : QCoreApplication::translate("ReclaimRow", "%1 to %2").arg(least, most));
}

} // namespace Zorvane
