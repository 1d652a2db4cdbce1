// The user's preferences at the end of shell use: the window's state gathered
// into the registrar's record and written to the user's store.
#include "app/KYjlpApp.h"
#include "foundation/KYstdPgmStat.h"
#include "framework/FrameWnd.h"
#include "registrar/KYjutlRegistrar.h"
#include "registrar/KYjutlRegistrar_PREFS.h"
#include "window/KYjlpFrameMain.h"
#include "window/KYjlpViewList.h"

// The list's part: its three style words, the sort, the columns in the user's
// order with their widths, and the places of the icons the user has placed.
void KYjlpApp::CollectListPreferences(KYjlpViewList& view, KYjutlRegistrar_PREFS& prefs) {
    HWND list = view.Handle();
    prefs.dwListViewStyle = static_cast<DWORD>(view.Style()) | WS_CHILD | WS_VISIBLE;
    prefs.dwListViewExtra1 = static_cast<DWORD>(view.ExStyle());
    prefs.dwListViewExtra2 = ListView_GetExtendedListViewStyle(list);
    const KYjlpViewList::SortInfo& sort = view.Sort();
    prefs.uSortColumnId = static_cast<uint32_t>(sort.columnId);
    prefs.iSortDirection = sort.direction;
    prefs.bItemsPlaced = sort.iconsPlaced;
    int count = 0, ids[KYjlpViewList::kColumnCount];
    if (view.ObtainColumnOrder(count, ids)) {
        if (!m_pRegistrar->ReorderColumns(static_cast<uint32_t>(count), ids)) throw 0;
        for (int at = 0; at < KYjlpViewList::kColumnCount && view.ColumnIds()[at] >= 0; ++at)
            for (LVCOLUMNW* column : prefs.pColumns ? *prefs.pColumns : KYjutlRegistrar_ColumnArray{})
                if (column && column->iSubItem == view.ColumnIds()[at]) column->cx = ListView_GetColumnWidth(list, at);
    }
    if (sort.iconsPlaced && !view.SaveItemPositions(*m_pRegistrar)) throw 0;
}

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
        uint32_t bars = prefs.uControlBarsStates & 1;
        if (auto* main = dynamic_cast<KYjlpFrameMain*>(frame)) bars = main->ObtainBarState();
        if (KYjlpViewList* view = GetListView(); view && *view) {
            bars = (bars & ~1u) | ((view->Style() & LVS_NOCOLUMNHEADER) ? 0u : 1u);
            CollectListPreferences(*view, prefs);
        }
        // The Classic desktop shows no bars and keeps none in its store.
        prefs.uControlBarsStates = m_bClassicDesktop ? 0 : (bars & 31);
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
