#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <optional>

namespace Zorvane {

/// The content of an update feed: a JSON object with the texts "version" ("1.2.0"), "notes" (plain
/// text) and "link" (an https address of a page that opens in the browser).
struct UpdateFeed
{
    QString version;
    QString notes;
    QUrl link;

    /// Nothing unless all three are there and the link is an https address.
    [[nodiscard]] static std::optional<UpdateFeed> parse(const QByteArray& json);

    /// Compares the numbers of the versions, not their texts.
    [[nodiscard]] bool isNewerThan(const QString& installed) const;
};

} // namespace Zorvane
