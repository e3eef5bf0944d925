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

/// Permanently removes chosen items that the safety guard allows. An immutable value; clean()
/// blocks and is safe from any thread. Callers run one clean at a time.
class CleanEngine
{
public:
    /// `furtherProtected`: folders to protect in addition to those that the guard knows.
    CleanEngine(std::string home, std::shared_ptr<const FileManager> fileManager,
                std::span<const std::string> furtherProtected = {});

    /// Handles the items one after the other and never fails as a whole: every item ends up in
    /// exactly one list of the report. A dry run makes the same checks and stops short of the
    /// removal, so it skips every item that a clean would refuse to start on. A stop request lets
    /// the current item finish and leaves the following ones out of the report.
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
