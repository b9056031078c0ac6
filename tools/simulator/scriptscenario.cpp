// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptscenario.h"

#include <utility>

namespace ork2 {

ScriptScenario::ScriptScenario(Script script)
    : m_script(std::move(script))
{ }

std::optional<Step> ScriptScenario::next()
{
    if (m_at == m_script.steps.size() && m_script.repeats) {
        m_at = 0;
    }
    if (m_at == m_script.steps.size()) {
        return std::nullopt;
    }
    const ScriptStep &current = m_script.steps[m_at];
    if (++m_timesPlayed >= current.times) {
        m_timesPlayed = 0;
        ++m_at;
    }
    return current.step;
}

} // namespace ork2
