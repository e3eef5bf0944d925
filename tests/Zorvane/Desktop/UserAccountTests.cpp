#include "Zorvane/Desktop/UserAccount.h"

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

TEST(UserAccountTest, CallsPeopleByTheFirstPieceOfTheirName)
{
    const struct
    {
        const char* fullName;
        const char* userName;
    } cases[] = {
        {"Ada Lovelace", "Ada"}, {"Ada", "Ada"}, {" Ada", ""},           {"Ada  L", "Ada"},
        {"", "login"},           {" ", ""},      {"Jörg\tM", "Jörg\tM"},
    };
    for (const auto& [fullName, userName] : cases) {
        const Zorvane::UserAccount account{QString::fromUtf8(fullName), QStringLiteral("login")};
        EXPECT_EQ(account.userName().toStdString(), userName) << '"' << fullName << '"';
    }
}

} // namespace
} // namespace ZorvaneTests
