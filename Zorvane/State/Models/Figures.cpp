#include "Zorvane/State/Models/Figures.h"

#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/State/AppState.h"
#include "Zorvane/State/Models/RuleDisplay.h"

namespace Zorvane {

Figures::Figures(QObject* parent) : QObject(parent) {}

void Figures::setAppState(AppState* appState)
{
    if (m_appState != nullptr) {
        m_appState->disconnect(this);
    }
    m_appState = appState;
    connect(appState, &AppState::bytesFoundSoFarChanged, this, &Figures::bytesFoundChanged);
    connect(appState, &AppState::currentRuleIdChanged, this, &Figures::statusChanged);
    connect(appState, &AppState::selectionChanged, this, &Figures::refreshSelection);
    connect(appState, &AppState::isCleaningChanged, this, &Figures::canCleanChanged);
    emit appStateChanged();
    emit bytesFoundChanged();
    emit statusChanged();
    refreshSelection();
}

QString Figures::userName() const
{
    return m_appState == nullptr ? QString() : displayText(m_appState->userName().toStdString());
}

QString Figures::bytesFoundText() const
{
    return m_appState == nullptr
               ? QString()
               : m_appState->byteCountFormatter().string(m_appState->bytesFoundSoFar());
}

QString Figures::statusText() const
{
    if (m_appState == nullptr || !m_appState->currentRuleId()) {
        return tr("Preparing…");
    }
    return tr("Scanning: %1")
        .arg(RuleDisplay::title(*m_appState->currentRuleId(), m_appState->texts()));
}

QString Figures::selectedText() const
{
    return m_appState == nullptr ? QString()
                                 : m_appState->byteCountFormatter().string(m_selectedBytes);
}

bool Figures::hasSelectedBytes() const
{
    return m_selectedBytes != 0;
}

bool Figures::canClean() const
{
    return hasSelectedBytes() && !m_appState->isCleaning();
}

void Figures::refreshSelection()
{
    m_selectedBytes = m_appState->selection().selectedBytes();
    emit selectionChanged();
    emit canCleanChanged();
}

} // namespace Zorvane
