#include "Zorvane/State/Models/Models.h"

#include "Zorvane/State/AppState.h"

namespace Zorvane {

Models::Models(AppState& state)
    : m_figures(state), m_results(state), m_summary(state), m_confirmation(state), m_report(state),
      m_icloud(*state.cloud(), state.byteCountFormatter())
{
}

} // namespace Zorvane
