// The user's preferences at the end of shell use: the window's state gathered
// into the registrar's record and written to the user's store.
#include "app/KYjlpApp.h"
#include "foundation/KYstdPgmStat.h"
#include "framework/FrameWnd.h"
#include "registrar/KYjutlRegistrar.h"
#include "registrar/KYjutlRegistrar_PREFS.h"
#include "window/KYjlpViewList.h"

bool KYjlpApp::CollectPreferences() {
    try {
        if (!m_pRegistrar || !m_pRegistrar->m_pPreferences) throw 0;
        fw::FrameWnd* frame = MainWindow();
        if (!frame || !*frame) throw 0;
        KYjutlRegistrar_PREFS& prefs = *m_pRegistrar->m_pPreferences;
        WINDOWPLACEMENT placement{};
        placement.length = sizeof placement;
        if (!GetWindowPlacement(frame->Handle(), &placement)) throw 0;
        prefs.wpPlacement = placement;
        prefs.dwFrameStyle = static_cast<DWORD>(frame->Style());
        prefs.dwFrameExtra1 = static_cast<DWORD>(frame->ExStyle());
        // The bars' states, the view mode, the columns and the sort order are
        // gathered here once the frame's bars and the details view stand; until
        // then the record keeps what was read at start, so nothing is lost.
    } catch (int) {
        return false;
    } catch (...) {
        return false;
    }
    return true;
}

bool KYjlpApp::SavePreferences() {
    if (m_pStatus) m_pStatus->ClearStatus();
    KYstdPgmStat_DATA* status = m_pStatus ? m_pStatus->Data() : nullptr;
    auto add = [status](uint32_t number) {
        if (status) status->AddSituation(number, KYstdPgmStat_DATA::kAfterLast);
    };
    try {
        if (!m_pRegistrar) throw 27007;
        if (!CollectPreferences()) throw 27119;
        if (!m_pRegistrar->StorePreferences()) {
            const int first = MapRegistrarError(m_pRegistrar->m_uError);
            add(static_cast<uint32_t>(first));
            add(m_pRegistrar->m_uErrorDetail);
            if (status) status->AddDetail(static_cast<uint32_t>(m_pRegistrar->m_iErrorItem),
                                          KYstdPgmStat_DATA::kAfterLast);
            throw first;
        }
    } catch (int number) {
        if (number != 0 && (!m_pStatus || m_pStatus->FirstSituation() != static_cast<uint32_t>(number)))
            add(static_cast<uint32_t>(number));
    } catch (...) {
        add(27118);
    }
    return !m_pStatus || m_pStatus->IsClean();
}
