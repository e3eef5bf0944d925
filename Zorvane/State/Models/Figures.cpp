#include "Zorvane/State/Models/Figures.h"

#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/State/AppState.h"
#include "Zorvane/State/Models/RuleDisplay.h"

namespace Zorvane {

Figures::Figures(const AppState& state) : m_state(state)
{
    connect(&state, &AppState::bytesFoundSoFarChanged, this, &Figures::bytesFoundChanged);
    connect(&state, &AppState::currentRuleIdChanged, this, &Figures::statusChanged);
    connect(&state, &AppState::selectionChanged, this, &Figures::updateSelection);
    connect(&state, &AppState::isCleaningChanged, this, &Figures::selectionChanged);
    updateSelection();
}

QString Figures::userName() const
{
    return displayText(m_state.userName().toStdString());
}

QString Figures::bytesFoundText() const
{
    return m_state.byteCountFormatter().string(m_state.bytesFoundSoFar());
}

QString Figures::statusText() const
{
    const auto& ruleId = m_state.currentRuleId();
    return ruleId ? tr("Scanning: %1").arg(RuleDisplay::title(*ruleId, m_state.texts()))
                  : tr("Preparing…");
}

QString Figures::selectedText() const
{
    return m_state.byteCountFormatter().string(m_selectedBytes);
}

bool Figures::canClean() const
{
    return hasSelectedBytes() && !m_state.isCleaning();
}

void Figures::updateSelection()
{
    m_selectedBytes = m_state.selection().selectedBytes();
    emit selectionChanged();
}

} // namespace Zorvane
