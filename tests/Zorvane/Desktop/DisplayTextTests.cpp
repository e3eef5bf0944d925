#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/Desktop/StyledText.h"

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

TEST(DisplayTextTest, MakesWhatCannotBeSeenVisible)
{
    const struct
    {
        std::string_view bytes;
        const char* text;
    } cases[] = {
        {"plain <b>text</b> & more", "plain <b>text</b> & more"},
        {"line\nbreak\ttab\x1B[31m", "line⟨U+000A⟩break⟨U+0009⟩tab⟨U+001B⟩[31m"},
        {"\x7F", "⟨U+007F⟩"},
        {std::string_view("a\0b", 3), "a⟨U+0000⟩b"},
        {"\xC2\x85", "⟨U+0085⟩"},
        {"abc\xE2\x80\xAE"
         "fdp.exe",
         "abc⟨U+202E⟩fdp.exe"},
        {"\xE2\x81\xA6x\xE2\x81\xA9", "⟨U+2066⟩x⟨U+2069⟩"},
        {"a\xE2\x80\xA8"
         "b",
         "a⟨U+2028⟩b"},
        {"soft\xC2\xADhyphen", "soft⟨U+00AD⟩hyphen"},
        {"tag\xF3\xA0\x81\x81", "tag⟨U+E0041⟩"},
        {"bad\xFF\xFE", "bad\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"👩\xE2\x80\x8D🚀", "👩\xE2\x80\x8D🚀"},
        {"", ""},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(Zorvane::displayText(bytes).toStdString(), text);
    }
}

TEST(DisplayTextTest, NamesAnEntryByItsLastComponent)
{
    EXPECT_EQ(Zorvane::displayName("/a/b\n").toStdString(), "b⟨U+000A⟩");
    EXPECT_EQ(Zorvane::displayName("/a/b/").toStdString(), "b");
}

TEST(StyledTextTest, EmphasisesAndEscapesTheRest)
{
    const struct
    {
        const char* text;
        const char* styled;
        const char* plain;
    } cases[] = {
        {"a **b** c **d**", "a <b>b</b> c <b>d</b>", "a b c d"},
        {"<i>&**x**", "&lt;i&gt;&amp;<b>x</b>", "<i>&x"},
        {"**a** b** c", "<b>a</b> b c", "a b c"},
        {"", "", ""},
    };
    for (const auto& [text, styled, plain] : cases) {
        EXPECT_EQ(Zorvane::styledText(QString::fromUtf8(text)).toStdString(), styled);
        EXPECT_EQ(Zorvane::plainText(QString::fromUtf8(text)).toStdString(), plain);
    }
}

} // namespace
} // namespace ZorvaneTests
