#include "benchmarks/LargeResults.h"

#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Reclaim/LinuxVolumeFacts.h"
#include "CleanCore/Support/TaskPool.h"

namespace LargeResults {

namespace {

/// A file system of flat folders of entries without content.
class FlatDisk : public CleanCore::LinuxFileManager
{
public:
    FlatDisk() : LinuxFileManager({}, std::nullopt, std::make_shared<CleanCore::TaskPool>()) {}

    [[nodiscard]] std::vector<std::string> namesInFolder(const std::string& path) const override
    {
        std::vector<std::string> names;
        if (path.starts_with("/area")) {
            for (std::size_t item = 0; item < itemsPerArea; ++item) {
                names.push_back("an item with a name of some length " + std::to_string(item));
            }
        }
        return names;
    }
    [[nodiscard]] std::vector<CleanCore::EntryMeasure>
    measure(const std::string& /*folder*/, std::span<const std::string> names,
            const std::stop_token& /*stop*/) const override
    {
        CleanCore::EntryMeasure measure;
        measure.sizeBytes = 4096;
        return std::vector<CleanCore::EntryMeasure>(names.size(), measure);
    }
    [[nodiscard]] bool exists(const std::string& /*path*/) const override { return true; }
};

} // namespace

CleanCore::CleaningRule rule(const std::string& id, const std::string& base)
{
    CleanCore::CleaningRule rule;
    rule.id = id;
    rule.tier = CleanCore::RuleTier::safe;
    rule.kind = CleanCore::RuleKind::fileSystem;
    rule.basePaths = {base};
    return rule;
}

Zorvane::Environment environment(const std::shared_ptr<const CleanCore::FileManager>& disk,
                                 CleanCore::RulesCatalog catalog)
{
    CleanCore::HomeEnvironment home;
    home.home = "/home/benchmark";
    home.isConfined = true;
    home.pool = std::make_shared<CleanCore::TaskPool>();
    home.fileManager = disk;
    home.volumeFacts = std::make_shared<CleanCore::LinuxVolumeFacts>();
    return {
        .home = home,
        .cloudDrives = {},
        .commandRunner = [](const std::stop_token&) { return nullptr; },
        .loadCatalog = [catalog = std::move(catalog)] { return catalog; },
        .texts = {},
        .locale = {},
        .preferences = Zorvane::Preferences(QStringLiteral("/dev/null/none")),
        .account = {},
        .reveal = [](const std::vector<std::string>&) {},
        .openPermissionSettings = [] {},
    };
}

Zorvane::Environment environment()
{
    CleanCore::RulesCatalog catalog;
    for (std::size_t area = 0; area < areas; ++area) {
        const std::string name = std::to_string(area);
        catalog.rules.push_back(rule("cache-" + name, "/area" + name));
    }
    return environment(std::make_shared<FlatDisk>(), std::move(catalog));
}

} // namespace LargeResults
