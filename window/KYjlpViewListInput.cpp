// What the user does to the list: a row activated by the mouse or by Enter, a
// heading clicked, and the view's commands (modes, sort, styles).
#include <array>

#include "app/KYjlpApp.h"
#include "document/KYjlpDoc.h"
#include "framework/CmdUI.h"
#include "window/KYjlpViewList.h"

namespace {
constexpr UINT kOpenSelection = 32782;
constexpr UINT kFirstMode = 32823, kLastMode = 32826;
constexpr UINT kAutoArrange = 32827, kArrange = 32837;
constexpr UINT kFirstSort = 32828, kLastSort = 32836;
constexpr UINT kFirstStyle = 32838, kLastStyle = 32844;
constexpr UINT kColumnHeaders = 32842;

// Command to mode: Details, Large icons, Small icons, List.
constexpr std::array<int, 4> kModeOfCommand = {KYjlpViewList::kDetails, KYjlpViewList::kLargeIcons,
                                               KYjlpViewList::kSmallIcons, KYjlpViewList::kList};
// The sort commands' columns: Attribs, Accessed, Created, Modified, Location, Name, Params, Size, Type.
constexpr std::array<int, 9> kColumnOfSortCommand = {24699, 24698, 24700, 24702, 24701, 24703, 24704, 24705, 24706};
// The extended style each style command toggles (the column headers command is a window style).
constexpr std::array<DWORD, 7> kStyleOfCommand = {LVS_EX_ONECLICKACTIVATE, LVS_EX_TWOCLICKACTIVATE,
                                                   LVS_EX_FULLROWSELECT,    LVS_EX_GRIDLINES,
                                                   0,                       LVS_EX_HEADERDRAGDROP,
                                                   LVS_EX_TRACKSELECT};

bool Classic() {
    KYjlpApp* app = TheApp();
    return app && app->m_bClassicDesktop;
}

using ViewCommand = fw::CommandEntry<KYjlpViewList>;
}  // namespace

bool KYjlpViewList::OnCmdMsg(UINT id, fw::CmdUI* ui) {
    static const ViewCommand kCommands[] = {
        {kOpenSelection, kOpenSelection, &KYjlpViewList::OnOpenSelectionCommand, &KYjlpViewList::OnUpdateOpenSelection},
        {kFirstMode, kLastMode, &KYjlpViewList::OnViewModeCommand, &KYjlpViewList::OnUpdateViewMode},
        {kFirstSort, kLastSort, &KYjlpViewList::OnSortCommand, nullptr},
        {kAutoArrange, kAutoArrange, &KYjlpViewList::OnStyleCommand, &KYjlpViewList::OnUpdateStyle},
        {kArrange, kArrange, &KYjlpViewList::OnStyleCommand, &KYjlpViewList::OnUpdateStyle},
        {kFirstStyle, kLastStyle, &KYjlpViewList::OnStyleCommand, &KYjlpViewList::OnUpdateStyle},
    };
    return Route<KYjlpViewList>(this, kCommands, id, ui) || fw::View::OnCmdMsg(id, ui);
}

void KYjlpViewList::OnViewModeCommand(UINT id) {
    const int mode = Classic() ? kLargeIcons : kModeOfCommand[id - kFirstMode];
    if (ViewModeOf() == mode) return;
    const bool factsArrive = mode == kDetails && !m_factsPresent;
    if (factsArrive) {
        // File facts cost nothing until the user first looks at Details.
        if (auto* doc = dynamic_cast<KYjlpDoc*>(GetDocument()); doc && doc->Items()) {
            if (KYjlpApp* app = TheApp()) app->m_nItemFillMask = kCheckFacts;
            doc->GatherListFacts(doc->Items());
            // The cells are formatted from the records when drawn: drawing them again shows the facts.
            SendMessageW(m_hwnd, WM_SETREDRAW, FALSE, 0);
            SendMessageW(m_hwnd, WM_SETREDRAW, TRUE, 0);
            InvalidateRect(m_hwnd, nullptr, TRUE);
        }
        m_factsPresent = true;
    }
    // Placed icons keep their places across a visit to another view.
    KYjlpApp* app = TheApp();
    if (m_sort.iconsPlaced && app && app->m_pRegistrar) SaveItemPositions(*app->m_pRegistrar);
    SetViewMode(mode);
    // Sizes and times came with the facts: a sort by them is made again now.
    if (factsArrive) SortItems(nullptr);
    RestoreIconPlaces();
}

void KYjlpViewList::OnUpdateViewMode(fw::CmdUI& ui) {
    const int mode = kModeOfCommand[ui.m_nID - kFirstMode];
    ui.Enable(!Classic() || mode == kLargeIcons);
    ui.SetRadio(ViewModeOf() == mode);
}

void KYjlpViewList::OnSortCommand(UINT id) {
    m_sort.columnId = kColumnOfSortCommand[id - kFirstSort];
    m_sort.direction = 1;
    SortItems(nullptr);
}

void KYjlpViewList::OnStyleCommand(UINT id) {
    if (id == kArrange) {
        ListView_Arrange(m_hwnd, LVA_SNAPTOGRID);
    } else if (id == kAutoArrange) {
        const bool on = !(Style() & LVS_AUTOARRANGE);
        SetWindowLongPtrW(m_hwnd, GWL_STYLE, on ? Style() | LVS_AUTOARRANGE : Style() & ~LVS_AUTOARRANGE);
        if (on) m_sort.iconsPlaced = true;
    } else if (id == kColumnHeaders) {
        SetHeaderShown(0);
    } else {
        SetStyleBit(kStyleOfCommand[id - kFirstStyle], 0);
    }
}

void KYjlpViewList::OnUpdateStyle(fw::CmdUI& ui) {
    const UINT id = ui.m_nID;
    const bool iconMode = ViewModeOf() == kLargeIcons || ViewModeOf() == kSmallIcons;
    if (id == kArrange) {
        ui.Enable(iconMode);
    } else if (id == kAutoArrange) {
        ui.Enable(iconMode);
        ui.SetCheck(iconMode && (Style() & LVS_AUTOARRANGE));
    } else if (id == kColumnHeaders) {
        KYjlpApp* app = TheApp();
        const bool allowed = app && app->m_abShow[0] && ListView_GetHeader(m_hwnd);
        ui.Enable(allowed);
        ui.SetCheck(allowed && !(Style() & LVS_NOCOLUMNHEADER));
    } else {
        ui.Enable(!Classic());
        ui.SetCheck((ListView_GetExtendedListViewStyle(m_hwnd) & kStyleOfCommand[id - kFirstStyle]) != 0);
    }
}

void KYjlpViewList::OnOpenSelectionCommand(UINT) { OnOpenSelection(); }

void KYjlpViewList::OnUpdateOpenSelection(fw::CmdUI& ui) {
    ui.Enable(GetItemCount() > 0 && ListView_GetSelectedCount(m_hwnd) > 0);
}

POSITION KYjlpViewList::RowPosition(int row) const {
    LVITEMW item{};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    if (row < 0 || !ListView_GetItem(m_hwnd, &item)) return nullptr;
    return reinterpret_cast<POSITION>(item.lParam);
}

// The selected rows, from the last to the first; one that fails to start does
// not keep the others from starting.
void KYjlpViewList::OnOpenSelection() {
    auto* doc = dynamic_cast<KYjlpDoc*>(GetDocument());
    if (!doc || !doc->Items() || GetItemCount() <= 0) return;
    int selected = static_cast<int>(ListView_GetSelectedCount(m_hwnd));
    m_launchCleared = false;
    for (int row = GetItemCount() - 1; row >= 0 && selected > 0; --row) {
        if (!(ListView_GetItemState(m_hwnd, row, LVIS_SELECTED) & LVIS_SELECTED)) continue;
        --selected;
        if (POSITION pos = RowPosition(row)) LaunchItem(doc->Items()->GetAt(pos), row, pos);
    }
}

// The row under the cursor when the control says a row was activated; a
// keyboard activation has no cursor on a row and takes the control's row.
bool KYjlpViewList::OnItemActivate(const NMITEMACTIVATE& activate) {
    auto* doc = dynamic_cast<KYjlpDoc*>(GetDocument());
    if (!doc || !doc->Items()) return false;
    const DWORD where = GetMessagePos();
    LVHITTESTINFO hit{};
    hit.pt = {static_cast<short>(LOWORD(where)), static_cast<short>(HIWORD(where))};
    ScreenToClient(m_hwnd, &hit.pt);
    int row = ListView_HitTest(m_hwnd, &hit);
    if (row < 0 || !(hit.flags & LVHT_ONITEM)) row = activate.iItem;
    POSITION pos = RowPosition(row);
    if (!pos) return false;
    return LaunchItem(doc->Items()->GetAt(pos), row, pos);
}

bool KYjlpViewList::OnReflectedNotify(NMHDR& header, LRESULT& result) {
    result = 0;
    switch (header.code) {
    case LVN_ITEMACTIVATE:
        OnItemActivate(reinterpret_cast<NMITEMACTIVATE&>(header));
        return true;
    case LVN_BEGINDRAG:
    case LVN_BEGINRDRAG:
        BeginItemDrag(reinterpret_cast<NMLISTVIEW&>(header));
        return true;
    case LVN_GETDISPINFOW:
        OnGetCellText(reinterpret_cast<NMLVDISPINFOW&>(header));
        return true;
    case LVN_COLUMNCLICK:
        OnColumnClick(reinterpret_cast<NMLISTVIEW&>(header).iSubItem);
        result = 1;
        return true;
    default:
        return false;
    }
}

LRESULT KYjlpViewList::OnMessage(UINT msg, WPARAM w, LPARAM l) {
    if (msg == WM_CONTEXTMENU) OnContextMenu(static_cast<short>(LOWORD(l)), static_cast<short>(HIWORD(l)));
    if (msg == WM_ERASEBKGND && OnEraseBkgnd(reinterpret_cast<HDC>(w))) return TRUE;
    if (msg == WM_KEYDOWN && w == VK_RETURN) {
        OnOpenSelection();
        return 0;
    }
    if (!m_drag.rows.empty()) {
        const POINT client{static_cast<short>(LOWORD(l)), static_cast<short>(HIWORD(l))};
        if (msg == WM_MOUSEMOVE) TrackDrag(client);
        else if (msg == WM_LBUTTONUP || msg == WM_RBUTTONUP) EndDrag(client);
        else if (msg == WM_CAPTURECHANGED && reinterpret_cast<HWND>(l) != m_hwnd) ResetDrag();
    }
    if (msg == WM_GETDLGCODE && l && reinterpret_cast<const MSG*>(l)->wParam == VK_RETURN)
        return DefaultProc(msg, w, l) | DLGC_WANTALLKEYS;
    return fw::View::OnMessage(msg, w, l);
}
