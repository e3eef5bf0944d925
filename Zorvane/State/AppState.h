#pragma once

#include "CleanCore/Cleaning/Clean.h"
#include "CleanCore/Cleaning/CleaningReport.h"
#include "CleanCore/Cleaning/SelectionState.h"
#include "CleanCore/Scanning/CategoryResult.h"
#include "Zorvane/Desktop/ByteCountFormatter.h"
#include "Zorvane/State/Binding.h"
#include "Zorvane/State/CloudState.h"
#include "Zorvane/State/Environment.h"
#include "Zorvane/State/MainThreadQueue.h"
#include "Zorvane/State/Models/RingSegment.h"
#include "Zorvane/State/Phase.h"
#include "Zorvane/State/ReclaimState.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace Zorvane {

/// The application's one state: the content of the screens and the operations behind their
/// controls.
///
/// Main thread only. Work is done by threads that share nothing with it and post their findings as
/// tasks. Every write of a published field emits its signal, also when the value stays the
/// same. Byte counts are allocated sizes.
///
/// Destroying the state ends a scan at once, without waiting for a tool or a file system that
/// hangs, and waits for the item that a clean or a release is working on. Neither emits a signal
/// any more.
class AppState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one state.")
    /// The name of the case of Phase.
    Q_PROPERTY(QString phaseName READ phaseName NOTIFY phaseChanged)
    Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY hasFullDiskAccessChanged)
    Q_PROPERTY(bool showConfirmation READ showConfirmation WRITE setShowConfirmation NOTIFY
                   showConfirmationChanged)
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY isCleaningChanged)
    Q_PROPERTY(bool hasCleaningReport READ hasCleaningReport NOTIFY cleaningReportChanged)
    Q_PROPERTY(Zorvane::CloudState* cloud READ cloud CONSTANT)
    Q_PROPERTY(bool isClosing READ isClosing NOTIFY isClosingChanged)

public:
    /// A review-required area with selected items: its title, and their bytes and number.
    struct TierBCategory
    {
        QString title;
        std::int64_t bytes = 0;
        std::int64_t count = 0;
    };

    explicit AppState(Environment environment, QObject* parent = nullptr);
    ~AppState() override;

    // Phases and scanning

    [[nodiscard]] Phase phase() const { return m_phase; }
    [[nodiscard]] QString phaseName() const;
    /// The last scan's results, filtered and sorted; empty while one runs.
    [[nodiscard]] const std::vector<CleanCore::CategoryResult>& categories() const;
    /// The last rule that the running scan has started.
    [[nodiscard]] const std::optional<std::string>& currentRuleId() const;
    [[nodiscard]] std::int64_t bytesFoundSoFar() const { return m_bytesFoundSoFar; }
    [[nodiscard]] bool hasFullDiskAccess() const { return m_hasFullDiskAccess; }
    [[nodiscard]] std::int64_t totalRecoverableBytes() const;
    [[nodiscard]] bool anyAccessErrors() const;
    [[nodiscard]] std::vector<RingSegment> ringSegments() const;
    [[nodiscard]] QString userName() const { return m_environment.account.userName(); }

    /// Stores the acceptance of the current terms and checks the disk permission.
    Q_INVOKABLE void acceptTerms();
    /// Checks, by one listing, whether the home's files are visible; if so, leaves needsPermission.
    Q_INVOKABLE void refreshPermissionState();
    /// Leaves needsPermission without the permission.
    Q_INVOKABLE void continueWithoutPermission();
    Q_INVOKABLE void openPermissionSettings();
    /// Does nothing while a scan or a clean runs. A catalog that cannot be loaded leads back to
    /// ready.
    Q_INVOKABLE void startScan();
    /// The cancelled scan publishes nothing any more. A running tool goes on to its end.
    Q_INVOKABLE void cancelScan();

    // Selecting and cleaning

    [[nodiscard]] const CleanCore::SelectionState& selection() const { return m_selection; }
    [[nodiscard]] bool showConfirmation() const { return m_showConfirmation; }
    [[nodiscard]] bool isCleaning() const { return m_isCleaning; }
    [[nodiscard]] const std::optional<CleanCore::CleaningReport>& cleaningReport() const;
    [[nodiscard]] bool hasCleaningReport() const { return m_cleaningReport.has_value(); }
    /// How much the free space grew during the last clean; never negative.
    [[nodiscard]] std::optional<std::int64_t> lastVisibleFreedBytes() const;
    /// The same by volume, and whether it is all.
    [[nodiscard]] const CleanCore::FreeSpaceWatch::Growth& lastGrowth() const
    {
        return m_lastGrowth;
    }
    /// Why the last clean gained less than its report says is freed.
    [[nodiscard]] const CleanCore::Shortfall& lastShortfall() const { return m_lastShortfall; }
    [[nodiscard]] const ReclaimState& reclaim() const { return m_reclaim; }

    [[nodiscard]] BooleanBinding itemBinding(std::string ruleId, std::string path);
    /// Reads as true if the category has items and all are selected. A write selects all or none
    /// and publishes once, if that changes anything. `category` is a position in categories();
    /// after the next scan the binding is dead.
    [[nodiscard]] BooleanBinding categoryBinding(std::size_t category);
    /// `category` is a position in categories().
    [[nodiscard]] std::int64_t selectedBytes(std::size_t category) const;
    [[nodiscard]] std::vector<QString> selectedTierBWarnings() const;
    [[nodiscard]] std::vector<TierBCategory> selectedTierBCategories() const;
    void selectAll(std::string_view ruleId);
    void deselectAll(std::string_view ruleId);

    void setShowConfirmation(bool isShown);
    Q_INVOKABLE void requestClean();
    /// Removes the items that are selected now. Does nothing while a clean runs.
    Q_INVOKABLE void performClean();
    Q_INVOKABLE void closeReport();

    [[nodiscard]] CloudState* cloud() { return &m_cloud; }

    // Closing

    [[nodiscard]] bool isClosing() const { return m_isClosing; }
    /// Lets a clean or a release finish the item that it is working on, then emits readyToClose().
    /// Emits it at once if neither is running.
    Q_INVOKABLE void requestClose();

    // For the screens

    [[nodiscard]] const CleanCore::TextTable& texts() const { return m_environment.texts; }
    [[nodiscard]] const ByteCountFormatter& byteCountFormatter() const { return m_formatter; }

signals:
    void phaseChanged();
    void categoriesChanged();
    void currentRuleIdChanged();
    void bytesFoundSoFarChanged();
    void hasFullDiskAccessChanged();
    void selectionChanged();
    void showConfirmationChanged();
    void isCleaningChanged();
    void cleaningReportChanged();
    void lastVisibleFreedBytesChanged();

    void isClosingChanged();
    void readyToClose();

private:
    void setPhase(Phase phase);
    void setCurrentRuleId(std::optional<std::string> ruleId);
    void setBytesFoundSoFar(std::int64_t bytes);
    void setCleaningReport(std::optional<CleanCore::CleaningReport> report);
    void changeSelection(const std::function<void(CleanCore::SelectionState&)>& change);
    void publishResults(const CleanCore::SelectionState& results);
    void finishClean(CleanCore::Clean::Outcome outcome);
    /// Emits readyToClose() if closing was requested and neither a clean nor a release is running.
    void closeWhenReady();

    const Environment m_environment;
    const ByteCountFormatter m_formatter;

    Phase m_phase = Phase::needsPermission;
    std::optional<std::string> m_currentRuleId;
    std::int64_t m_bytesFoundSoFar = 0;
    bool m_hasFullDiskAccess = false;
    CleanCore::SelectionState m_selection;
    /// False while a scan runs, when there are no categories; otherwise they are the selection's.
    bool m_hasCategories = true;
    bool m_showConfirmation = false;
    bool m_isCleaning = false;
    std::optional<CleanCore::CleaningReport> m_cleaningReport;
    std::optional<std::int64_t> m_lastVisibleFreedBytes;
    CleanCore::FreeSpaceWatch::Growth m_lastGrowth;
    CleanCore::Shortfall m_lastShortfall;

    bool m_isClosing = false;
    const std::shared_ptr<MainThreadQueue> m_queue;
    const MainThreadRunner m_runner;
    /// Ends the running tools of scans when the state is destroyed.
    std::stop_source m_end;
    /// Cancels the current scan; tasks of other scans are ignored.
    std::shared_ptr<std::stop_source> m_scan;
    std::jthread m_clean;
    CloudState m_cloud;
    ReclaimState m_reclaim;
};

} // namespace Zorvane
