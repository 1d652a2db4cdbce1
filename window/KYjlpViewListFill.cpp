// The list's window and its rows: the control made with the user's styles, the
// first fill from the document, the icons put back where the user left them,
// the four view modes and the style toggles.
#include <new>
#include <string>
#include <unordered_map>
#include <vector>

#include "app/KYjlpApp.h"
#include "document/KYjlpDoc.h"
#include "foundation/FoldCase.h"
#include "foundation/KYstdPgmStat.h"
#include "framework/FrameWnd.h"
#include "framework/ResourceModule.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpViewList.h"

#include <unordered_map>

namespace {
constexpr DWORD kDefaultStyle = 0x50000000;  // WS_CHILD | WS_VISIBLE, Large icons
constexpr DWORD kShareImages = LVS_SHAREIMAGELISTS;  // the document owns the image lists
// The extended styles the preferences carry, in the order they are applied.
constexpr DWORD kPreferenceStyleBits[] = {LVS_EX_ONECLICKACTIVATE, LVS_EX_TWOCLICKACTIVATE, LVS_EX_FULLROWSELECT,
                                          LVS_EX_GRIDLINES, LVS_EX_HEADERDRAGDROP, LVS_EX_TRACKSELECT};

KYjutlRegistrar_PREFS* Preferences() {
    KYjlpApp* app = TheApp();
    return app && app->m_pRegistrar ? app->m_pRegistrar->m_pPreferences : nullptr;
}

bool Classic() {
    KYjlpApp* app = TheApp();
    return app && app->m_bClassicDesktop;
}

// Drawing stays off while rows are added or places set, and comes back on every path.
class RedrawOff {
public:
    explicit RedrawOff(HWND window) : m_window(window) { SendMessageW(m_window, WM_SETREDRAW, FALSE, 0); }
    ~RedrawOff() {
        SendMessageW(m_window, WM_SETREDRAW, TRUE, 0);
        InvalidateRect(m_window, nullptr, TRUE);
    }
    RedrawOff(const RedrawOff&) = delete;
    RedrawOff& operator=(const RedrawOff&) = delete;

private:
    HWND m_window;
};

void AddToStatus(int number) {
    KYjlpApp* app = TheApp();
    if (app && app->m_pStatus && app->m_pStatus->Data())
        app->m_pStatus->Data()->AddSituation(static_cast<uint32_t>(number), KYstdPgmStat_DATA::kAfterLast);
}
}  // namespace

bool KYjlpViewList::CreateView(fw::FrameWnd& frame, UINT id) {
    DWORD style = kDefaultStyle;
    DWORD extended = 0;
    if (const KYjutlRegistrar_PREFS* prefs = Preferences()) {
        style = prefs->dwListViewStyle ? prefs->dwListViewStyle : kDefaultStyle;
        extended = prefs->dwListViewExtra1;
    } else {
        style &= ~static_cast<DWORD>(LVS_TYPEMASK);
    }
    if (Classic()) style = (style & ~static_cast<DWORD>(LVS_TYPEMASK)) | LVS_NOSCROLL;
    style |= WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | kShareImages;
    m_factsPresent = (style & LVS_TYPEMASK) == LVS_REPORT;
    if (!fw::LoadResString(24663, m_strDateFormat) || m_strDateFormat.empty())
        m_strDateFormat = L"%#m/%#d/%y %#I:%M %p";
    RECT r{};
    frame.GetClientRect(r);
    HWND hwnd = CreateWindowExW(extended, WC_LISTVIEWW, L"", style, r.left, r.top, r.right - r.left,
                                r.bottom - r.top, frame.Handle(),
                                reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), GetModuleHandleW(nullptr),
                                nullptr);
    return hwnd && Subclass(hwnd);
}

void KYjlpViewList::OnInitialUpdate() {
    KYjlpApp* app = TheApp();
    if (app && app->m_bShell) OnUpdate(0);
}

bool KYjlpViewList::SetViewMode(int mode) {
    if (!m_hwnd) return false;
    if (ViewModeOf() == mode) return true;
    const bool visible = IsWindowVisible(m_hwnd);
    if (visible) ShowWindow(m_hwnd, SW_HIDE);
    SetWindowLongPtrW(m_hwnd, GWL_STYLE, (Style() & ~static_cast<LONG_PTR>(LVS_TYPEMASK)) | mode);
    if (visible) ShowWindow(m_hwnd, SW_SHOWNA);
    return ViewModeOf() == mode;
}

bool KYjlpViewList::SetStyleBit(DWORD bit, int how) {
    if (!m_hwnd || bit == 0 || bit >= 256 || (bit & (bit - 1))) return false;
    const DWORD now = ListView_GetExtendedListViewStyle(m_hwnd);
    const bool on = how > 0 || (how == 0 && !(now & bit));
    ListView_SetExtendedListViewStyleEx(m_hwnd, bit, on ? bit : 0);
    return true;
}

bool KYjlpViewList::SetHeaderShown(int how) {
    if (!m_hwnd) return false;
    const bool hidden = (Style() & LVS_NOCOLUMNHEADER) != 0;
    const bool show = how > 0 || (how == 0 && hidden);
    LONG_PTR style = Style();
    style = show ? (style & ~static_cast<LONG_PTR>(LVS_NOCOLUMNHEADER)) : (style | LVS_NOCOLUMNHEADER);
    SetWindowLongPtrW(m_hwnd, GWL_STYLE, style);
    return true;
}

// The rows of the items from start, in list order; image i of the document's
// lists belongs to the i-th item of the live list.
bool KYjlpViewList::PopulateList(const KYjlpItemList* list, POSITION start, int firstImage) {
    if (!list) throw 27586;
    auto* doc = dynamic_cast<KYjlpDoc*>(GetDocument());
    if (!doc || !doc->LargeImages()) throw 27529;
    if (!doc->SmallImages()) throw 27530;
    int row = GetItemCount();
    if (row < 0) throw 27749;
    int image = firstImage >= 0 ? firstImage : 0;
    if (start && firstImage < 0)
        for (POSITION pos = list->GetHeadPosition(); pos && pos != start; list->GetNext(pos)) ++image;
    wchar_t cell[260];
    RedrawOff quiet(m_hwnd);
    for (POSITION pos = start ? start : list->GetHeadPosition(); pos; ++row, ++image) {
        POSITION here = pos;
        const LV_TEXTLINE* item = list->GetNext(pos);
        if (!item) throw 27583;
        if (!FormatColumnText(item, kNameColumnId, cell, 260)) throw 27571;
        LVITEMW entry{};
        entry.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
        entry.iItem = row;
        entry.pszText = cell;
        entry.iImage = image;
        entry.lParam = reinterpret_cast<LPARAM>(here);
        // The other cells are never stored in the control: it asks for them when
        // it draws them (OnGetCellText), so that a row costs one insertion.
        if (SendMessageW(m_hwnd, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&entry)) < 0) --row;
    }
    if (m_bFirstFill) {
        ListView_SetImageList(m_hwnd, doc->LargeImages(), LVSIL_NORMAL);
        ListView_SetImageList(m_hwnd, doc->SmallImages(), LVSIL_SMALL);
        m_bFirstFill = false;
    }
    return true;
}

// The row of each name, the first where two rows share one: one pass over the
// rows instead of a search of the list for every saved place.
std::unordered_map<std::wstring, int> KYjlpViewList::RowsByName(int rows) const {
    std::unordered_map<std::wstring, int> rowOfName;
    rowOfName.reserve(static_cast<size_t>(rows));
    std::vector<wchar_t> text(512, L'\0');
    for (int row = 0; row < rows; ++row) {
        text[0] = L'\0';
        ListView_GetItemText(m_hwnd, row, 0, text.data(), static_cast<int>(text.size()));
        rowOfName.emplace(ky::FoldCase(text.data()), row);
    }
    return rowOfName;
}

// The icons go back to the places the user gave them, in the icon view that
// stands; missing tells that an item has no saved place (it is new to the
// user). Wine's list lays the icons out anew whenever it enters an icon view,
// so places are set once the view is entered, and read without leaving it.
void KYjlpViewList::PlaceSavedIcons(const KYjutlRegistrar_PREFS& prefs, bool& missing) {
    missing = false;
    const KYjutlRegistrar_LVISPArray* saved = prefs.pItemPositions;
    const int rows = GetItemCount();
    const int mode = ViewModeOf();
    if (!saved || saved->empty()) {
        missing = rows > 0;
        return;
    }
    std::vector<bool> found(static_cast<size_t>(rows), false);
    const std::unordered_map<std::wstring, int> rowOfName = RowsByName(rows);
    for (const KYjutlRegistrar_LVISP* place : *saved) {
        if (!place || !place->pszItemName) continue;
        const auto match = rowOfName.find(ky::FoldCase(place->pszItemName));
        if (match == rowOfName.end()) continue;
        const int row = match->second;
        found[static_cast<size_t>(row)] = true;
        const POINT at = mode == kSmallIcons ? place->ptSmallIconView : place->ptIconView;
        if ((mode == kLargeIcons || mode == kSmallIcons) && at.x != kRegistrarUnknownCoordinate)
            ListView_SetItemPosition32(m_hwnd, row, at.x, at.y);
    }
    for (bool here : found) missing = missing || !here;
}

void KYjlpViewList::RestoreIconPlaces() {
    KYjutlRegistrar_PREFS* prefs = Preferences();
    if (!prefs || !m_hwnd || !m_sort.iconsPlaced) return;
    bool missing = false;
    PlaceSavedIcons(*prefs, missing);
}

// The sort of the preferences: in Details right away, and in the icon views
// too unless the icons stand where the user put them.
void KYjlpViewList::SortForDisplay() {
    if (!SetViewMode(kDetails)) throw 27748;
    SortItems(nullptr);
    if (!m_sort.iconsPlaced) {
        if (!SetViewMode(Classic() ? kLargeIcons : kSmallIcons)) throw 27748;
        SortItems(nullptr);
    }
}

bool KYjlpViewList::ApplyPreferences(const KYjutlRegistrar_PREFS& prefs) {
    ListView_SetBkColor(m_hwnd, prefs.crBackground);
    ListView_SetTextBkColor(m_hwnd, prefs.crBackground);
    ListView_SetTextColor(m_hwnd, prefs.crForeground);
    for (DWORD bit : kPreferenceStyleBits) SetStyleBit(bit, (prefs.dwListViewExtra2 & bit) ? 1 : -1);
    SetHeaderShown((prefs.uControlBarsStates & 1) ? 1 : -1);
    m_sort.columnId = static_cast<int>(prefs.uSortColumnId);
    m_sort.direction = prefs.iSortDirection == -1 ? -1 : 1;
    m_sort.iconsPlaced = prefs.bItemsPlaced;
    return true;
}

void KYjlpViewList::OnUpdate(int hint) {
    KYjlpApp* app = TheApp();
    if (!app || !app->m_bShell || !m_hwnd) return;
    if (app->m_pStatus) app->m_pStatus->ClearStatus();
    const bool first = hint == 0;
    const int mode = Classic() ? kLargeIcons : ViewModeOf();
    const bool visible = IsWindowVisible(m_hwnd);
    if (!first && visible) ShowWindow(m_hwnd, SW_HIDE);
    const bool autoArrange = (Style() & LVS_AUTOARRANGE) != 0;
    try {
        KYjutlRegistrar_PREFS* prefs = Preferences();
        if (!prefs) throw 27007;
        auto* doc = dynamic_cast<KYjlpDoc*>(GetDocument());
        if (!doc || !doc->Items()) throw 27005;
        ApplyPreferences(*prefs);
        // Nothing may arrange the icons while their places are set.
        SetWindowLongPtrW(m_hwnd, GWL_STYLE, Style() & ~static_cast<LONG_PTR>(LVS_AUTOARRANGE));
        if (!SetViewMode(kDetails)) throw 27748;
        if (!SetColumns(first)) throw 27750;
        if (first && !PopulateList(doc->Items(), nullptr)) throw 27571;
        // Sorted first, then the view the user left is entered and its icons placed.
        SortForDisplay();
        if (!SetViewMode(mode)) throw 27748;
        bool missing = false;
        if (GetItemCount() > 0) {
            RedrawOff quiet(m_hwnd);
            PlaceSavedIcons(*prefs, missing);
        }
        if (first && missing && app->m_pRegistrar) SaveItemPositions(*app->m_pRegistrar);
        if (autoArrange) {
            SetWindowLongPtrW(m_hwnd, GWL_STYLE, Style() | LVS_AUTOARRANGE);
            m_sort.iconsPlaced = m_sort.iconsPlaced || (Style() & LVS_AUTOARRANGE);
        }
    } catch (int number) {
        AddToStatus(number);
    } catch (...) {
        AddToStatus(27571);
    }
    SetViewMode(mode);
    if (!first && visible) ShowWindow(m_hwnd, SW_SHOWNA);
    ReportStatus();
}

void KYjlpViewList::UpdateCell(int row, int id, const LV_TEXTLINE& item) {
    for (int column = 0; column < kColumnCount && m_aColumnIds[column] >= 0; ++column) {
        if (m_aColumnIds[column] != id) continue;
        wchar_t cell[260];
        if (column > 0) ListView_RedrawItems(m_hwnd, row, row);
        else if (FormatColumnText(&item, id, cell, 260)) ListView_SetItemText(m_hwnd, row, column, cell);
    }
}

// A cell other than the name, formatted from its item's record when the control
// draws it or is asked for it.
void KYjlpViewList::OnGetCellText(NMLVDISPINFOW& info) {
    LVITEMW& cell = info.item;
    if (!(cell.mask & LVIF_TEXT) || !cell.pszText || cell.cchTextMax <= 0) return;
    cell.pszText[0] = L'\0';
    auto* doc = dynamic_cast<KYjlpDoc*>(GetDocument());
    if (cell.iSubItem <= 0 || cell.iSubItem >= kColumnCount || !doc || !doc->Items()) return;
    const int id = m_aColumnIds[cell.iSubItem];
    POSITION pos = cell.lParam ? reinterpret_cast<POSITION>(cell.lParam) : RowPosition(cell.iItem);
    const LV_TEXTLINE* item = pos ? doc->Items()->GetAt(pos) : nullptr;
    if (id < 0 || !item) return;
    wchar_t text[260];
    try {
        if (FormatColumnText(item, id, text, 260)) lstrcpynW(cell.pszText, text, cell.cchTextMax);
    } catch (int) {
        cell.pszText[0] = L'\0';  // a cell that can't be formatted shows empty
    }
}

void KYjlpViewList::SortAgain() {
    m_factsPresent = m_factsPresent || ViewModeOf() == kDetails;
    const int mode = ViewModeOf();
    const bool iconMode = mode == kLargeIcons || mode == kSmallIcons;
    const bool placed = m_sort.iconsPlaced;
    if (SetViewMode(kDetails)) SortItems(nullptr);
    if (!placed) {
        SetViewMode(iconMode ? mode : kLargeIcons);
        SortItems(nullptr);
    }
    m_sort.iconsPlaced = placed;
    SetViewMode(mode);
}

void KYjlpViewList::ReportStatus() {
    KYjlpApp* app = TheApp();
    if (!app || !app->m_pStatus || app->m_pStatus->IsClean()) return;
    KYstdPgmStat_DATA* data = app->m_pStatus->Data();
    const int first = static_cast<int>(app->m_pStatus->FirstSituation());
    const int second = data && data->SituationCount() > 1 ? static_cast<int>(data->Situation(1)) : 0;
    uint32_t index = data && data->DetailCount() > 0 ? data->Detail(0) : 0xFFFFFFFF;
    if (first == 27583 && index != 0xFFFFFFFF) ++index;  // counted from 1 for the user
    app->ReportProblem(first, second, index, nullptr, MB_ICONERROR);
    app->m_pStatus->ClearStatus();
}

// The places of the icon view that stands are read; those of the other icon
// view stay as they were saved.
bool KYjlpViewList::SaveItemPositions(KYjutlRegistrar& registrar) {
    KYjutlRegistrar_PREFS* prefs = registrar.m_pPreferences;
    if (!prefs || !m_hwnd) return false;
    const int mode = ViewModeOf();
    if (mode != kLargeIcons && mode != kSmallIcons) return true;
    auto* places = new (std::nothrow) KYjutlRegistrar_LVISPArray();
    if (!places) throw 27768;
    bool ok = true;
    const int rows = GetItemCount();
    // The places kept so far by name, the first of a name winning: one pass, not a search per row.
    std::unordered_map<std::wstring, const KYjutlRegistrar_LVISP*> kept;
    if (prefs->pItemPositions) {
        kept.reserve(prefs->pItemPositions->size());
        for (const KYjutlRegistrar_LVISP* old : *prefs->pItemPositions)
            if (old && old->pszItemName) kept.emplace(ky::FoldCase(old->pszItemName), old);
    }
    wchar_t name[260];
    for (int row = 0; row < rows && ok; ++row) {
        name[0] = 0;
        ListView_GetItemText(m_hwnd, row, 0, name, 260);
        if (!name[0]) continue;
        KYjutlRegistrar_LVISP place{name, {kRegistrarUnknownCoordinate, kRegistrarUnknownCoordinate},
                                    {kRegistrarUnknownCoordinate, kRegistrarUnknownCoordinate}};
        if (const auto old = kept.find(ky::FoldCase(name)); old != kept.end()) {
            place.ptIconView = old->second->ptIconView;
            place.ptSmallIconView = old->second->ptSmallIconView;
        }
        ListView_GetItemPosition(m_hwnd, row, mode == kSmallIcons ? &place.ptSmallIconView : &place.ptIconView);
        ok = registrar.AddItemScreenPosition(place, places);
    }
    if (!ok) {
        registrar.FreeItemScreenPositions(&places);
        AddToStatus(KYjlpApp::MapRegistrarError(registrar.m_uError));
        return false;
    }
    registrar.FreeItemScreenPositions(&prefs->pItemPositions);
    prefs->pItemPositions = places;
    return true;
}
