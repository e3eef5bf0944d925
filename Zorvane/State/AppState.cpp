#include "Zorvane/State/AppState.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/SaturatingSum.h"
#include "CleanCore/Support/TaskPool.h"

#include <QDateTime>
#include <QPointer>
#include <algorithm>
#include <system_error>
#include <utility>

namespace Zorvane {

namespace {

const QString currentTermsVersion = QStringLiteral("0.1");

} // namespace

AppState::AppState(Environment environment, QObject* parent)
    : QObject(parent), m_environment(std::move(environment)), m_formatter(m_environment.locale),
      m_queue(std::make_shared<MainThreadQueue>()), m_runner(m_queue),
      m_cloud(m_environment, m_queue), m_reclaim(m_environment, m_queue)
{
    connect(&m_cloud, &CloudState::isEvictingChanged, this, &AppState::closeWhenReady);
    connect(&m_cloud, &CloudState::isFetchingChanged, this, &AppState::closeWhenReady);
    if (m_environment.preferences.acceptedTermsVersion() != currentTermsVersion) {
        m_phase = Phase::termsAcceptance;
    }
}

AppState::~AppState()
{
    m_end.request_stop();
    if (m_scan) {
        m_scan->request_stop();
    }
}

QString AppState::phaseName() const
{
    switch (m_phase) {
    case Phase::termsAcceptance:
        return QStringLiteral("termsAcceptance");
    case Phase::needsPermission:
        return QStringLiteral("needsPermission");
    case Phase::ready:
        return QStringLiteral("ready");
    case Phase::scanning:
        return QStringLiteral("scanning");
    case Phase::results:
        return QStringLiteral("results");
    }
    return {};
}

std::int64_t AppState::totalRecoverableBytes() const
{
    std::int64_t bytes = 0;
    for (const CleanCore::CategoryResult& category : categories()) {
        bytes = CleanCore::saturatingSum(bytes, category.totalBytes());
    }
    return bytes;
}

bool AppState::anyAccessErrors() const
{
    return std::ranges::any_of(categories(), &CleanCore::CategoryResult::hadAccessErrors);
}

std::vector<RingSegment> AppState::ringSegments() const
{
    return Zorvane::ringSegments(categories());
}

void AppState::acceptTerms()
{
    const auto now = std::chrono::floor<std::chrono::milliseconds>(m_environment.now());
    m_environment.preferences.storeAcceptedTerms(
        currentTermsVersion, QDateTime::fromMSecsSinceEpoch(now.time_since_epoch().count()));
    setPhase(Phase::needsPermission);
    refreshPermissionState();
}

void AppState::refreshPermissionState()
{
    // A sandbox without access to files has no such folder.
    const std::string probe = CleanCore::PathText::join(m_environment.home.home, ".cache");
    try {
        [[maybe_unused]] const auto names = m_environment.home.fileManager->namesInFolder(probe);
        m_hasFullDiskAccess = true;
    } catch (const std::system_error&) {
        // Without access the probe is expected to fail.
        m_hasFullDiskAccess = false;
    }
    emit hasFullDiskAccessChanged();
    if (m_hasFullDiskAccess && m_phase == Phase::needsPermission) {
        setPhase(Phase::ready);
    }
}

void AppState::continueWithoutPermission()
{
    setPhase(Phase::ready);
}

void AppState::openPermissionSettings()
{
    m_environment.openPermissionSettings();
}

void AppState::requestClose()
{
    m_clean.request_stop();
    m_cloud.stopRelease();
    m_isClosing = true;
    emit isClosingChanged();
    closeWhenReady();
}

void AppState::closeWhenReady()
{
    if (m_isClosing && !m_isCleaning && !m_cloud.isWorking()) {
        emit readyToClose();
    }
}

void AppState::setPhase(Phase phase)
{
    m_phase = phase;
    emit phaseChanged();
}

} // namespace Zorvane
