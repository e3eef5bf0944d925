#pragma once

#include "CleanCore/CloudDrive/ICloudEvictor.h"
#include "Zorvane/State/CloudSections.h"
#include "Zorvane/State/Environment.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace Zorvane {

class MainThreadQueue;

/// The part of the application's state about the cloud drives: their folders, the downloaded
/// entries, the selected ones, and how far measuring, a release and fetching are.
///
/// Main thread only. Work is done by threads that share nothing with it and post what they find.
/// Every write of a published field emits its signal, also when the value stays the same. Byte
/// counts are allocated sizes.
///
/// Its destructor waits for the item that a release or fetching is working on, and not for
/// measuring.
class CloudState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("AppState makes the only one.")
    Q_PROPERTY(bool showICloud READ showICloud WRITE setShowICloud NOTIFY showICloudChanged)
    Q_PROPERTY(bool isEvicting READ isEvicting NOTIFY isEvictingChanged)
    Q_PROPERTY(bool isFetching READ isFetching NOTIFY isFetchingChanged)

public:
    struct MeasureProgress
    {
        std::int64_t files = 0;
        std::int64_t bytes = 0;
    };
    /// `index` counts from 1; `name` is the last component of the item's path, `drive` the name of
    /// its drive.
    struct EvictProgress
    {
        std::int64_t index = 0;
        std::int64_t total = 0;
        std::string name;
        std::string drive;
    };
    using EvictReport = CleanCore::ICloudEvictor::EvictReport;

    /// `environment` outlives the state. The runner of `queue` does not run tasks after it.
    CloudState(const Environment& environment, std::shared_ptr<MainThreadQueue> queue);

    [[nodiscard]] bool showICloud() const { return m_showICloud; }
    /// Absent until measuring starts for the first time; then the downloaded entries by section,
    /// largest first in each.
    [[nodiscard]] const std::optional<std::vector<CleanCore::ICloudItem>>& icloudItems() const;
    [[nodiscard]] const std::set<std::string>& icloudSelection() const;
    [[nodiscard]] bool isEvicting() const { return m_isEvicting; }
    /// Paths of entries whose measuring ran into the time limit.
    [[nodiscard]] const std::vector<std::string>& icloudBusyFolders() const;
    /// Paths of entries that were released since the last full measuring. Those of which files were
    /// refused are not among them.
    [[nodiscard]] const std::set<std::string>& icloudReleasedPaths() const;
    /// The number of entries that are being measured, and of drives whose folders are searched.
    [[nodiscard]] std::int64_t icloudPending() const { return m_icloudPending; }
    [[nodiscard]] std::int64_t icloudMeasuredFiles() const { return m_icloudMeasured.files; }
    [[nodiscard]] std::int64_t icloudMeasuredBytes() const { return m_icloudMeasured.bytes; }
    [[nodiscard]] const std::optional<EvictProgress>& icloudEvictProgress() const;
    [[nodiscard]] const std::optional<EvictReport>& icloudEvictReport() const;
    /// Whether the given drive's folder was there when it was measured last.
    [[nodiscard]] bool hasDrive() const { return m_hasDrive; }
    /// Where the given drive's folder belongs.
    [[nodiscard]] std::string container() const;
    /// The folders of all drives that have been found, closed ones included; first always that of
    /// the given drive.
    [[nodiscard]] const std::vector<CloudSection>& sections() const { return m_sections.all(); }
    /// The section of the entry at `path`.
    [[nodiscard]] const CloudSection& sectionOf(const std::string& path) const;
    [[nodiscard]] bool isFetching() const { return m_isFetching; }
    /// How far the file is that is being fetched.
    [[nodiscard]] const std::optional<CleanCore::CloudProgress>& fetchProgress() const;
    /// What stayed in the cloud when an entry was fetched last.
    [[nodiscard]] const std::vector<CleanCore::CloudRefusal>& fetchRefusals() const;
    /// The present path of an entry, which its release may have renamed.
    [[nodiscard]] const std::string& presentPath(const std::string& path) const;
    /// The number of files in the entry at `path` that the last release left.
    [[nodiscard]] std::int64_t refusedFiles(const std::string& path) const;
    [[nodiscard]] std::int64_t icloudDownloadedBytes() const;
    [[nodiscard]] std::vector<CleanCore::ICloudItem> icloudSelectedItems() const;
    [[nodiscard]] std::int64_t icloudSelectedBytes() const;
    [[nodiscard]] std::int64_t icloudSelectedFileCount() const;
    /// The bundles of the selected items, largest first.
    [[nodiscard]] std::vector<CleanCore::ICloudAppBundle> icloudSelectedApps() const;
    [[nodiscard]] std::int64_t icloudSelectedAppBytes() const;

    void setShowICloud(bool isShown);
    void setICloudSelected(const std::string& path, bool isSelected);
    Q_INVOKABLE void openICloud();
    Q_INVOKABLE void reloadICloud();
    Q_INVOKABLE void retryBusyICloudFolders();
    /// Releases the selected entries. Does nothing if none is selected, or during a release.
    Q_INVOKABLE void requestEvict();
    /// Fetches an entry that was released. Does nothing for another one, or while something is
    /// released or fetched.
    void requestFetch(const std::string& path);
    void revealICloudApps(std::span<const CleanCore::ICloudAppBundle> apps) const;
    /// Ends a release, or fetching, after the item that it is working on, or earlier where the
    /// drive can.
    void stopRelease() { m_work.request_stop(); }
    [[nodiscard]] bool isWorking() const { return m_isEvicting || m_isFetching; }

signals:
    void showICloudChanged();
    void icloudItemsChanged();
    void icloudSelectionChanged();
    void isEvictingChanged();
    void isFetchingChanged();
    /// The folders of drives, or what is fetched.
    void sectionsChanged();
    void fetchProgressChanged();
    void icloudBusyFoldersChanged();
    void icloudReleasedPathsChanged();
    void icloudPendingChanged();
    /// The number of files or of bytes changed.
    void icloudMeasuredChanged();
    void icloudEvictProgressChanged();
    void icloudEvictReportChanged();

private:
    void setReleaseReport(std::optional<EvictReport> report);
    void searchFolders(const std::shared_ptr<const CleanCore::CloudDrive>& drive);
    void addFolders(int batch, const std::shared_ptr<const CleanCore::CloudDrive>& drive,
                    const std::vector<CleanCore::CloudContainer>& containers);
    void measure(const CloudSection& section, const std::vector<std::string>& children);
    [[nodiscard]] int beginBatch();
    void finishFetch(const std::string& path, const CleanCore::ICloudEvictor::FetchReport& report);
    void handleMeasureProgress(const std::string& path, MeasureProgress progress);
    void handleMeasureResult(int batch, const CleanCore::ICloudEvictor::MeasureResult& result);
    void giveUp(int batch);
    void addBusy(const std::string& path);
    void performEvict();
    void setReleaseProgress(std::optional<EvictProgress> progress);
    void finishRelease(const EvictReport& report);

    const Environment& m_environment;
    CloudSections m_sections;
    const std::shared_ptr<MainThreadQueue> m_queue;

    bool m_showICloud = false;
    std::optional<std::vector<CleanCore::ICloudItem>> m_icloudItems;
    std::set<std::string> m_icloudSelection;
    bool m_isEvicting = false;
    std::vector<std::string> m_icloudBusyFolders;
    std::set<std::string> m_icloudReleasedPaths;
    std::int64_t m_icloudPending = 0;
    bool m_hasDrive = false;
    int m_batch = 0;
    /// What is being measured: the number of its batch, and its path.
    std::set<std::pair<int, std::string>> m_beingMeasured;
    /// The batches that search the folders of a drive.
    std::set<int> m_searches;
    MeasureProgress m_icloudMeasured;
    std::map<std::string, MeasureProgress> m_icloudMeasureByChild;
    std::optional<EvictProgress> m_icloudEvictProgress;
    std::optional<EvictReport> m_icloudEvictReport;
    bool m_isFetching = false;
    std::optional<CleanCore::CloudProgress> m_fetchProgress;
    std::vector<CleanCore::CloudRefusal> m_fetchRefusals;
    std::map<std::string, std::string> m_renamed;
    std::jthread m_work;
};

} // namespace Zorvane
