#include "Zorvane/State/Mailbox.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QCoreApplication>
#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace ZorvaneTests {
namespace {

using Zorvane::Mailbox;
using Zorvane::MailboxReader;

TEST(MailboxTest, RunsLettersOfManyThreadsOnTheReadersThreadInEachSendersOrder)
{
    constexpr int senders = 4;
    constexpr int letters = 1000;
    const auto mailbox = std::make_shared<Mailbox>();
    const MailboxReader reader(mailbox);
    std::array<int, senders> next = {};
    int received = 0;
    int strangers = 0;
    int outOfTurn = 0;
    const auto mainThread = std::this_thread::get_id();
    std::vector<std::jthread> threads;
    threads.reserve(senders);
    for (int& expected : next) {
        threads.emplace_back([&] {
            for (int letter = 0; letter < letters; ++letter) {
                mailbox->post([&, letter] {
                    ++received;
                    outOfTurn += expected++ == letter ? 0 : 1;
                    strangers += std::this_thread::get_id() == mainThread ? 0 : 1;
                });
            }
        });
    }
    waitUntil([&] { return received == senders * letters; });
    EXPECT_EQ(strangers, 0);
    EXPECT_EQ(outOfTurn, 0);
}

TEST(MailboxTest, LetsOtherEventsHaveTheirTurnBetweenLetters)
{
    const auto mailbox = std::make_shared<Mailbox>();
    const MailboxReader reader(mailbox);
    QObject receiver;
    std::string order;
    const auto takeLong = [] {
        const auto end = std::chrono::steady_clock::now() + 2 * MailboxReader::patience;
        while (std::chrono::steady_clock::now() < end) {
        }
    };
    mailbox->post([&] {
        QMetaObject::invokeMethod(
            &receiver, [&] { order += "event "; }, Qt::QueuedConnection);
        takeLong();
        order += "first ";
    });
    mailbox->post([&] { order += "second "; });
    mailbox->post([&] { order += "last"; });
    waitUntil([&] { return order.ends_with("last"); });
    EXPECT_EQ(order, "first event second last");
}

TEST(MailboxTest, DropsWhatComesAfterItsReaderHasGone)
{
    const auto mailbox = std::make_shared<Mailbox>();
    auto reader = std::make_unique<MailboxReader>(mailbox);
    const auto held = std::make_shared<int>(0);
    bool hasRun = false;
    mailbox->post([&, held] { hasRun = true; });
    reader.reset();
    mailbox->post([&, held] { hasRun = true; });
    QCoreApplication::processEvents();
    EXPECT_FALSE(hasRun);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(MailboxTest, LetsALetterEndTheReader)
{
    const auto mailbox = std::make_shared<Mailbox>();
    auto reader = std::make_unique<MailboxReader>(mailbox);
    bool hasRun = false;
    mailbox->post([&] { reader.reset(); });
    mailbox->post([&] { hasRun = true; });
    waitUntil([&] { return reader == nullptr; });
    EXPECT_FALSE(hasRun);
}

} // namespace
} // namespace ZorvaneTests
