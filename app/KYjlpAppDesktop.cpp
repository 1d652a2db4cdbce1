// The Classic desktop: the preferences read for it are bent so that the window
// fills the whole screen, behind every other window, with no bars and its
// border outside the screen, showing large icons.
#include "app/KYjlpApp.h"
#include "app/KYjlpCmdLineInfo.h"
#include "registrar/KYjutlRegistrar.h"

namespace {
constexpr DWORD kDefaultFrameStyle = 0x04CFC000;
constexpr DWORD kViewModeBits = 3;  // the list's view bits; 0 is icon view

// The border of a sizing frame lies outside the screen: the frame's width plus 4 on each side.
void PushBorderOutside(RECT& r) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (!SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) return;
    const int frame = metrics.iBorderWidth + 4;
    r.left -= frame;
    r.top -= frame;
    r.right += frame;
    r.bottom += frame;
}
}  // namespace

int KYjlpApp::HarmonizeDesktopSettings() {
    try {
        if (!m_pCmdLine) throw 27038;
        if (!m_pRegistrar) throw 27007;
        KYjutlRegistrar_PREFS* prefs = m_pRegistrar->m_pPreferences;
        if (!prefs) throw 27006;
        if (!m_pCmdLine->m_bClassic) return 0;
        m_bClassicDesktop = true;
        prefs->uControlBarsStates = 0;
        for (bool& show : m_abShow) show = false;
        WINDOWPLACEMENT& placement = prefs->wpPlacement;
        placement.length = sizeof placement;
        placement.flags = 0;
        placement.showCmd = SW_MAXIMIZE;
        placement.ptMaxPosition = {-1, -1};
        placement.rcNormalPosition = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
        const DWORD frameStyle = prefs->dwFrameStyle ? prefs->dwFrameStyle : kDefaultFrameStyle;
        if (frameStyle & WS_THICKFRAME) PushBorderOutside(placement.rcNormalPosition);
        if (placement.rcNormalPosition.right <= placement.rcNormalPosition.left) throw 27041;
        prefs->dwListViewStyle &= ~kViewModeBits;
        prefs->dwFrameExtra1 |= WS_EX_TOOLWINDOW;
    } catch (int number) {
        return number;
    } catch (...) {
        return 27039;
    }
    return 0;
}
