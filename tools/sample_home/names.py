"""Names that are hard to show, to store or to pass on; each is legal on Linux."""

LONGEST = 255

HARD_NAMES = (
    "with several  spaces",
    " leading space",
    "trailing space ",
    "two\nlines",
    "tab\there",
    "colour \x1b[31mred\x1b[0m",
    "emoji \U0001f9f9 \U0001f469\u200d\U0001f4bb",
    "<b>bold<b>",
    "<img src=x>",
    "&amp; entity",
    "right-to-left \u202egnp.exe",
    "-rf",
    "--help",
    "...",
    "100%41 percent",
    "$HOME",
    "quotes ' \" `",
    "back\\slash",
    "star * [x]",
    "composed \u00e9",
    "composed e\u0301",
    b"invalid \xff\xfe utf-8",
    b"cut \xe2\x82",
)


def longest(length=LONGEST):
    return ("long-" + "x" * length)[:length]
