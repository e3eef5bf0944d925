#include "tests/Zorvane/Support/LengthenedTexts.h"

namespace ZorvaneTests {

QString lengthened(const QString& text)
{
    static const QString plain = QStringLiteral("aouAOU");
    static const QString dotted = QStringLiteral("äöüÄÖÜ");
    static const QString filler = QStringLiteral("überprüfungsgenehmigungsverfahren");
    QString result;
    bool isMarkup = false;
    for (const QChar letter : text) {
        isMarkup = letter == u'<' || (isMarkup && letter != u'>');
        const qsizetype vowel = isMarkup ? -1 : plain.indexOf(letter);
        result += vowel < 0 ? letter : dotted[vowel];
    }
    for (qsizetype missing = (2 * text.size() + 4) / 5; missing > 0; missing -= filler.size() + 1) {
        // A short text gets a longer last word, a long one further words.
        result += (missing > 4 ? QStringLiteral(" ") : QString()) + filler.left(missing);
    }
    return result;
}

} // namespace ZorvaneTests
