#pragma once

#include "CleanCore/CloudDrive/ICloudItem.h"
#include "Zorvane/State/Models/CloudDriveTexts.h"
#include "Zorvane/State/Models/RowModel.h"

#include <QStringList>
#include <QtQml/qqmlregistration.h>
#include <cstdint>
#include <vector>

namespace Zorvane {

class ByteCountFormatter;
class CloudState;

/// The content of the cloud drive's sheet and card. The rows are the measured entries, largest
/// first, then those whose measuring ran out of time. Main thread only.
class ICloudModel : public Zorvane::RowModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Models has one.")
    /// Whether measuring has ever been started.
    Q_PROPERTY(bool isMeasured READ isMeasured NOTIFY changed)
    Q_PROPERTY(bool isMeasuring READ isMeasuring NOTIFY changed)
    Q_PROPERTY(QString measuringText READ measuringText NOTIFY changed)
    Q_PROPERTY(QString downloadedText READ downloadedText NOTIFY changed)
    /// Empty unless a release has reported its progress.
    Q_PROPERTY(QString freeingText READ freeingText NOTIFY changed)
    /// Told when everything is measured and nothing is downloaded; else empty.
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed)
    /// Empty unless there are entries to measure again because they ran out of time.
    Q_PROPERTY(QString busyText READ busyText NOTIFY changed)
    Q_PROPERTY(QString selectedText READ selectedText NOTIFY changed)
    Q_PROPERTY(bool hasSelectedBytes READ hasSelectedBytes NOTIFY changed)
    Q_PROPERTY(bool canRelease READ canRelease NOTIFY changed)
    /// The effort of releasing the selected entries; empty when it is not shown.
    Q_PROPERTY(QString beforeFreeingText READ beforeFreeingText NOTIFY changed)
    Q_PROPERTY(bool hasReport READ hasReport NOTIFY changed)
    Q_PROPERTY(bool hasFreed READ hasFreed NOTIFY changed)
    Q_PROPERTY(QString reportText READ reportText NOTIFY changed)
    /// Why files stayed, a sentence for each reason.
    Q_PROPERTY(QStringList refusals READ refusals NOTIFY changed)
    /// The names of the drives found; the given one's when none is.
    Q_PROPERTY(QString driveNames READ driveNames NOTIFY changed)
    /// The same as a title.
    Q_PROPERTY(QString driveTitle READ driveTitle NOTIFY changed)
    /// How released files come back.
    Q_PROPERTY(QString returnText READ returnText NOTIFY changed)
    /// Whether what is true of the given drive only is told.
    Q_PROPERTY(bool showsGiven READ showsGiven NOTIFY changed)
    /// Empty unless something is being fetched.
    Q_PROPERTY(QString fetchingText READ fetchingText NOTIFY changed)
    /// Why files stayed in the cloud, a sentence for each reason.
    Q_PROPERTY(QStringList fetchRefusals READ fetchRefusals NOTIFY changed)
    /// The folders of drives in which nothing can be released, each with the reason.
    Q_PROPERTY(QStringList closedTexts READ closedTexts NOTIFY changed)
    /// The applications that a release leaves: before it those of the selected entries, after it
    /// those still downloaded. The title is empty if there are none.
    Q_PROPERTY(QString appsTitle READ appsTitle NOTIFY changed)
    /// Names and sizes of the first of them, and the number of the others.
    Q_PROPERTY(QStringList appNames READ appNames NOTIFY changed)
    Q_PROPERTY(QStringList appSizes READ appSizes NOTIFY changed)
    Q_PROPERTY(QString moreAppsText READ moreAppsText NOTIFY changed)
public:
    enum Role {
        NameRole = firstRole,
        /// Whether its measuring ran out of time; such a row has no figures and cannot be selected.
        IsBusyRole,
        IsReleasedRole,
        IsSelectedRole,
        /// Whether it can be selected. An application itself cannot.
        IsOfferedRole,
        /// About what stays of it; may be empty.
        RestTextRole,
        /// May be empty.
        FilesTextRole,
        SizeTextRole,
        /// The name of its drive.
        DriveRole,
        /// The title above the rows of its folder, of the first of them; empty while only the given
        /// drive is there.
        SectionRole,
        /// Whether it was released and can be fetched now.
        CanFetchRole,
    };
    Q_ENUM(Role)

    ICloudModel(CloudState& cloud, const ByteCountFormatter& formatter);

    [[nodiscard]] bool isMeasured() const;
    [[nodiscard]] bool isMeasuring() const;
    [[nodiscard]] QString measuringText() const;
    [[nodiscard]] QString downloadedText() const;
    [[nodiscard]] QString freeingText() const;
    [[nodiscard]] QString emptyText() const;
    [[nodiscard]] QString busyText() const;
    [[nodiscard]] QString selectedText() const;
    [[nodiscard]] bool hasSelectedBytes() const;
    [[nodiscard]] bool canRelease() const;
    [[nodiscard]] QString beforeFreeingText() const;
    [[nodiscard]] bool hasReport() const;
    [[nodiscard]] bool hasFreed() const;
    [[nodiscard]] QString reportText() const;
    [[nodiscard]] QStringList refusals() const;
    [[nodiscard]] QString driveNames() const { return m_texts.names(); }
    [[nodiscard]] QString driveTitle() const { return m_texts.title(); }
    [[nodiscard]] QString returnText() const { return m_texts.howFilesReturn(); }
    [[nodiscard]] bool showsGiven() const;
    [[nodiscard]] QString fetchingText() const { return m_texts.fetching(); }
    [[nodiscard]] QStringList fetchRefusals() const;
    [[nodiscard]] QStringList closedTexts() const { return m_texts.closedFolders(); }
    [[nodiscard]] QString appsTitle() const;
    [[nodiscard]] QStringList appNames() const;
    [[nodiscard]] QStringList appSizes() const;
    [[nodiscard]] QString moreAppsText() const;

    /// Opens the sheet and, the first time, starts measuring.
    Q_INVOKABLE void open();
    /// Ticks the check box of a measured entry.
    Q_INVOKABLE void setSelected(int row, bool isSelected);
    /// Fetches the content of a released entry.
    Q_INVOKABLE void fetch(int row);
    /// Shows all applications of the notice, not only the listed ones, in the file manager.
    Q_INVOKABLE void revealApps();

    /// The time that releasing so many files usually takes.
    [[nodiscard]] static QString estimate(std::int64_t files);

protected:
    [[nodiscard]] std::size_t rows() const override { return m_paths.size(); }
    [[nodiscard]] QVariant value(std::size_t row, int role) const override;

private:
    [[nodiscard]] const std::vector<CleanCore::ICloudItem>& items() const;
    [[nodiscard]] std::vector<CleanCore::ICloudAppBundle> noticeApps() const;
    [[nodiscard]] bool showsSelection() const;
    /// Whether the whole item is an application that is never released.
    [[nodiscard]] bool isKept(const CleanCore::ICloudItem& item) const;
    [[nodiscard]] QString bytes(std::int64_t count) const;
    [[nodiscard]] QString count(std::int64_t number) const;
    [[nodiscard]] QString restText(const CleanCore::ICloudItem& item) const;
    [[nodiscard]] QVariant dataOfItem(const CleanCore::ICloudItem& item, int role) const;
    /// The path that belongs in a row according to the state.
    [[nodiscard]] const std::string& pathAt(std::size_t row) const;
    void updateRows();
    void refreshRows();

    CloudState& m_cloud;
    const ByteCountFormatter& m_formatter;
    const CloudDriveTexts m_texts;
    /// The paths of the rows that the views know.
    std::vector<std::string> m_paths;
    std::size_t m_itemCount = 0;
};

} // namespace Zorvane
