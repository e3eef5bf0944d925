#include "Zorvane/State/Models/StateListModel.h"

#include "Zorvane/State/AppState.h"

namespace Zorvane {

void StateListModel::setAppState(AppState* appState)
{
    if (m_appState != nullptr) {
        m_appState->disconnect(this);
    }
    m_appState = appState;
    follow(*appState);
    emit appStateChanged();
}

} // namespace Zorvane
