#include "tests/Zorvane/Support/LengthenedTexts.h"

#include <QMap>

namespace ZorvaneTests {

QString lengthened(const QString& text)
{
    static const QMap<QChar, QChar> dotted = {{u'a', u'ä'}, {u'o', u'ö'}, {u'u', u'ü'},
                                              {u'A', u'Ä'}, {u'O', u'Ö'}, {u'U', u'Ü'}};
    static const QString filler = QStringLiteral("Überprüfungsgenehmigungsverfahren");
    QString result;
    bool isMarkup = false;
    for (const QChar letter : text) {
        isMarkup = letter == u'<' || (isMarkup && letter != u'>');
        result += isMarkup ? letter : dotted.value(letter, letter);
    }
    if (text.isEmpty()) {
        return result;
    }
    // Long texts get long words, short ones a longer last word.
    qsizetype missing = (2 * text.size() + 4) / 5;
    const bool endsSentence = result.endsWith(u'.');
    if (endsSentence) {
        result.chop(1);
    }
    while (missing > 0) {
        if (missing > 4) {
            result += u' ';
        }
        result += filler.left(missing).toLower();
        missing -= filler.size() + 1;
    }
    return endsSentence ? result + u'.' : result;
}

QString LengthenedTexts::translate(const char* /*context*/, const char* text,
                                   const char* /*disambiguation*/, int /*n*/) const
{
    return lengthened(QString::fromUtf8(text));
}

} // namespace ZorvaneTests
