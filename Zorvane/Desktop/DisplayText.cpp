#include "Zorvane/Desktop/DisplayText.h"

#include "CleanCore/Support/PathText.h"

#include <QChar>
#include <QList>

namespace Zorvane {

namespace {

constexpr char32_t zeroWidthNonJoiner = 0x200C;
constexpr char32_t zeroWidthJoiner = 0x200D;

/// Joiners are parts of words and emoji, and cannot move anything.
bool isHarmful(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Format:
        return character != zeroWidthJoiner && character != zeroWidthNonJoiner;
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

void append(QString& text, char32_t character)
{
    if (isHarmful(character)) {
        constexpr int digits = 4;
        constexpr int hexadecimal = 16;
        text += QStringLiteral("⟨U+%1⟩").arg(
            QString::number(character, hexadecimal).toUpper().rightJustified(digits, u'0'));
    } else {
        text += QChar::fromUcs4(character);
    }
}

} // namespace

QString displayText(std::string_view bytes)
{
    const auto size = static_cast<qsizetype>(bytes.size());
    QString text;
    text.reserve(size);
    const QList<uint> characters = QString::fromUtf8(bytes.data(), size).toUcs4();
    for (const uint character : characters) {
        append(text, char32_t{character});
    }
    return text;
}

QString displayName(std::string_view path)
{
    return displayText(CleanCore::PathText::lastComponent(path));
}

} // namespace Zorvane
