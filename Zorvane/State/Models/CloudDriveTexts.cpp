#include "Zorvane/State/Models/CloudDriveTexts.h"

#include "Words/CloudRefusalText.h"
#include "Zorvane/Desktop/ByteCountFormatter.h"
#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/State/CloudState.h"

#include <QCoreApplication>
#include <algorithm>
#include <cstdint>
#include <map>
#include <span>

namespace Zorvane {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("ICloudModel", text);
}

QString nameOf(const CloudSection& section)
{
    return QString::fromStdString(section.drive);
}

} // namespace

QString CloudDriveTexts::namesOf(const std::vector<std::string>& paths) const
{
    QStringList names;
    for (const std::string& path : paths) {
        const QString name = nameOf(m_cloud.sectionOf(path));
        if (!names.contains(name)) {
            names.push_back(name);
        }
    }
    return names.isEmpty() ? nameOf(m_cloud.sections().front()) : names.join(QStringLiteral(", "));
}

QString CloudDriveTexts::names() const
{
    std::vector<std::string> containers;
    for (const CloudSection& section : m_cloud.sections()) {
        containers.push_back(section.container.path);
    }
    if (!m_cloud.hasDrive() && containers.size() > 1) {
        containers.erase(containers.begin());
    }
    return namesOf(containers);
}

QString CloudDriveTexts::title() const
{
    QStringList titles = names().split(QStringLiteral(", "));
    for (QString& title : titles) {
        if (title == nameOf(m_cloud.sections().front())) {
            title = tr("%1 Drive").arg(title);
        }
    }
    return titles.join(QStringLiteral(", "));
}

QString CloudDriveTexts::folderTitle(const std::string& path) const
{
    if (m_cloud.sections().size() == 1) {
        return {};
    }
    const CloudSection& section = m_cloud.sectionOf(path);
    return &section == &m_cloud.sections().front()
               ? tr("%1 Drive").arg(nameOf(section))
               : nameOf(section) + QStringLiteral(" — ") + displayText(section.container.path);
}

QString CloudDriveTexts::howFilesReturn() const
{
    const auto shown = std::span(m_cloud.sections()).subspan(m_cloud.hasDrive() ? 0 : 1);
    if (!shown.empty() && std::ranges::none_of(shown, &CloudSection::fetchesWhenOpened)) {
        return tr("they come back when you fetch them.");
    }
    return std::ranges::all_of(shown, &CloudSection::fetchesWhenOpened)
               ? tr("they come back when you open them (internet required).")
               : tr("they come back when you open them, or, with git-annex, when you fetch them.");
}

QString CloudDriveTexts::fetching() const
{
    const auto& progress = m_cloud.fetchProgress();
    if (!progress) {
        return {};
    }
    const QString drive = nameOf(m_cloud.sectionOf(progress->path));
    // The name comes last, since it may contain "%1".
    const QString text = progress->totalBytes > 0
                             ? tr("%1 is fetching %4… %2 of %3")
                                   .arg(drive, m_formatter.string(progress->bytes),
                                        m_formatter.string(progress->totalBytes))
                             : tr("%1 is fetching %4…").arg(drive);
    return QString(text).replace(QStringLiteral("%4"), displayName(progress->path));
}

QStringList CloudDriveTexts::closedFolders() const
{
    QStringList texts;
    for (const CloudSection& section : m_cloud.sections()) {
        if (section.container.closed) {
            texts.push_back(QStringLiteral("%1: %2: ")
                                .arg(nameOf(section), displayText(section.container.path)) +
                            QString::fromStdString(Words::refusalText(*section.container.closed)));
        }
    }
    return texts;
}

QStringList CloudDriveTexts::reasons(const std::vector<CleanCore::CloudRefusal>& refusals) const
{
    std::map<std::string, std::vector<std::string>> pathsByReason;
    for (const CleanCore::CloudRefusal& refusal : refusals) {
        pathsByReason[Words::refusalText(refusal.failure)].push_back(refusal.path);
    }
    QStringList sentences;
    for (const auto& [reason, paths] : pathsByReason) {
        const auto others = static_cast<std::int64_t>(paths.size()) - 1;
        const QString name = displayName(paths.front());
        // The name comes last, since it may contain "%1".
        sentences.push_back(
            (others == 0 ? tr("%2: %1").arg(QString::fromStdString(reason))
                         : tr("%3 and %1 more: %2")
                               .arg(m_formatter.count(others), QString::fromStdString(reason)))
                .arg(name));
    }
    return sentences;
}

} // namespace Zorvane
