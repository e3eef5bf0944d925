#include "Zorvane/Desktop/StyledText.h"

#include <QStringList>

namespace Zorvane {

namespace {

const QString emphasis = QStringLiteral("**");

} // namespace

QString styledText(const QString& text)
{
    const QStringList parts = text.toHtmlEscaped().split(emphasis);
    QString styled;
    for (qsizetype part = 0; part < parts.size(); ++part) {
        // Every second part is between two marks, unless the last mark has no partner.
        const bool isBold = part % 2 == 1 && part + 1 < parts.size();
        styled +=
            isBold ? QStringLiteral("<b>") + parts[part] + QStringLiteral("</b>") : parts[part];
    }
    return styled;
}

QString plainText(QString text)
{
    return text.remove(emphasis);
}

} // namespace Zorvane
