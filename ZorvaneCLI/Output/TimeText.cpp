#include "ZorvaneCLI/Output/TimeText.h"

#include <cstdio>

namespace ZorvaneCLI {

namespace {

using namespace std::chrono;
using namespace std::chrono_literals;

/// Reads the fixed fields of RFC 3339 one after the other from the front of a text.
class Reader
{
public:
    explicit Reader(std::string_view text) : m_text(text) {}

    [[nodiscard]] bool isOk() const { return m_isOk; }
    [[nodiscard]] bool isAtEnd() const { return m_text.empty(); }

    int number(std::size_t digits)
    {
        int value = 0;
        for (std::size_t i = 0; i < digits; ++i) {
            value = value * 10 + digit();
        }
        return value;
    }

    bool accept(std::string_view characters)
    {
        if (m_text.empty() || characters.find(m_text.front()) == std::string_view::npos) {
            return false;
        }
        m_text.remove_prefix(1);
        return true;
    }

    void expect(std::string_view characters) { m_isOk = accept(characters) && m_isOk; }

    nanoseconds fraction()
    {
        std::int64_t value = 0;
        std::int64_t scale = 1'000'000'000;
        do {
            scale /= 10;
            value += digit() * scale;
        } while (!m_text.empty() && m_text.front() >= '0' && m_text.front() <= '9');
        return nanoseconds(value);
    }

private:
    int digit()
    {
        if (m_text.empty() || m_text.front() < '0' || m_text.front() > '9') {
            m_isOk = false;
            return 0;
        }
        const int value = m_text.front() - '0';
        m_text.remove_prefix(1);
        return value;
    }

    std::string_view m_text;
    bool m_isOk = true;
};

} // namespace

std::optional<CleanCore::Timestamp> parseTime(std::string_view text)
{
    Reader reader(text);
    const year years(reader.number(4));
    reader.expect("-");
    const month months(static_cast<unsigned>(reader.number(2)));
    reader.expect("-");
    const day days(static_cast<unsigned>(reader.number(2)));
    reader.expect("Tt ");
    const int hourOfDay = reader.number(2);
    reader.expect(":");
    const int minuteOfHour = reader.number(2);
    reader.expect(":");
    const int secondOfMinute = reader.number(2);
    const nanoseconds fraction = reader.accept(".") ? reader.fraction() : nanoseconds(0);
    minutes offset(0);
    if (!reader.accept("Zz")) {
        const bool isWest = reader.accept("-");
        if (!isWest) {
            reader.expect("+");
        }
        const int offsetHours = reader.number(2);
        reader.expect(":");
        const int offsetMinutes = reader.number(2);
        if (offsetHours > 23 || offsetMinutes > 59) {
            return std::nullopt;
        }
        offset = hours(offsetHours) + minutes(offsetMinutes);
        offset = isWest ? -offset : offset;
    }
    const year_month_day date(years, months, days);
    // A Timestamp covers parts of 1677 and 2262 and all the years between.
    const bool isInRange = years >= year(1678) && years <= year(2261);
    if (!reader.isOk() || !reader.isAtEnd() || !date.ok() || !isInRange || hourOfDay > 23 ||
        minuteOfHour > 59 || secondOfMinute > 60) {
        return std::nullopt;
    }
    return sys_days(date) + hours(hourOfDay) + minutes(minuteOfHour) + seconds(secondOfMinute) +
           fraction - offset;
}

std::string formatTime(CleanCore::Timestamp time)
{
    // Whole seconds first: the midnight before the first Timestamp is out of its range.
    const auto second = floor<seconds>(time);
    const auto date = floor<days>(second);
    const year_month_day calendar(date);
    const hh_mm_ss clock(second - date);
    std::string text(32, '\0');
    const int length = std::snprintf(
        text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d",
        static_cast<int>(calendar.year()), static_cast<unsigned>(calendar.month()),
        static_cast<unsigned>(calendar.day()), static_cast<int>(clock.hours().count()),
        static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    text.resize(static_cast<std::size_t>(length));
    const auto fraction = (time.time_since_epoch() % 1s + 1s).count() % nanoseconds(1s).count();
    if (fraction != 0) {
        std::string decimals = std::to_string(1'000'000'000 + fraction);
        decimals.erase(decimals.find_last_not_of('0') + 1);
        text += '.' + decimals.substr(1);
    }
    return text + 'Z';
}

} // namespace ZorvaneCLI
