#pragma once

#include <QTranslator>

namespace ZorvaneTests {

/// `text` as in a language that takes two fifths more room and has dots on its vowels. Markup and
/// placeholders stay.
[[nodiscard]] QString lengthened(const QString& text);

class LengthenedTexts : public QTranslator
{
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* /*context*/, const char* text,
                                    const char* /*disambiguation*/, int /*n*/) const override
    {
        return lengthened(QString::fromUtf8(text));
    }
};

} // namespace ZorvaneTests
