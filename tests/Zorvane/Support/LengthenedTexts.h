#pragma once

#include <QString>
#include <QTranslator>

namespace ZorvaneTests {

/// `text` as a language might have it that takes two fifths more room and puts dots on its vowels.
/// Places for values and markup stay.
[[nodiscard]] QString lengthened(const QString& text);

/// Translates every text into that language.
class LengthenedTexts : public QTranslator
{
public:
    using QTranslator::QTranslator;

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* context, const char* text,
                                    const char* disambiguation, int n) const override;
};

} // namespace ZorvaneTests
