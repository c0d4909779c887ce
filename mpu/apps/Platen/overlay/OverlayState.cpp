#include "overlay/OverlayState.h"

#include "DiscViewController.h"

#include <algorithm>

bool OverlayState::IsClip(std::initializer_list<int> types) const {
    return std::find(types.begin(), types.end(), static_cast<int>(m_nCurPlayType)) != types.end();
}

void OverlayState::ToBeep() const {
    if (m_pController) {
        m_pController->ToBeep();
    }
}
