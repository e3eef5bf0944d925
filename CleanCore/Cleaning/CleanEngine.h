#pragma once

#include "CleanCore/Cleaning/CleaningReport.h"
#include "CleanCore/Cleaning/CleaningSelection.h"
#include "CleanCore/Rules/SafetyGuard.h"

#include <memory>
#include <span>
#include <stop_token>
#include <string>

namespace CleanCore {

class FileManager;

/// Permanently removes chosen items under the safety guard. An immutable value; clean() blocks and
/// is safe from any thread, one clean at a time being the caller's business.
class CleanEngine
{
public:
    /// `furtherProtected`: folders that are never cleaned beside those that the guard knows.
    CleanEngine(std::string home, std::shared_ptr<const FileManager> fileManager,
                std::span<const std::string> furtherProtected = {});

    /// Handles the items one after the other and never fails as a whole: every item ends up in
    /// exactly one list of the report. A dry run takes the same way and stops short of the removal:
    /// what a clean would refuse to begin with is skipped in it too.
    /// The stop token is looked at before each item: what was begun is finished, what was not
    /// reached is in neither list.
    [[nodiscard]] CleaningReport clean(std::span<const CleaningSelection> selections, bool dryRun,
                                       const std::stop_token& stop = {}) const;

private:
    [[nodiscard]] const std::string* allowingBase(const std::string& path,
                                                  std::span<const std::string> bases) const;

    std::string m_home;
    std::shared_ptr<const FileManager> m_fileManager;
    SafetyGuard m_safetyGuard;
};

} // namespace CleanCore
