// The list brought in line with a changed catalogue without rebuilding it: rows
// of items that left go, rows of items that stayed change cell by cell, new
// items are added at the end, so that selection, focus, places and scroll
// position survive. Icons are found only for items whose icon source changed.
#include <cstdlib>
#include <deque>
#include <unordered_map>
#include <utility>
#include <unordered_set>
#include <vector>

#include "app/KYjlpApp.h"
#include "document/KYjlpDoc.h"
#include "foundation/FoldCase.h"
#include "foundation/KYstdPgmStat.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpViewList.h"

namespace {
void AddToStatus(KYstdPgmStat* status, int number) {
    if (status && status->Data() && number)
        status->Data()->AddSituation(static_cast<uint32_t>(number), KYstdPgmStat_DATA::kAfterLast);
}

bool SameText(const wchar_t* a, const wchar_t* b) {
    if (!a || !b) return a == b;
    return _wcsicmp(a, b) == 0;
}

// The items of a list by name, each name's items in list order: a refresh looks
// names up once per item instead of searching the list each time.
class NameIndex {
public:
    explicit NameIndex(const KYjlpItemList& list) {
        for (POSITION pos = list.GetHeadPosition(); pos;) {
            POSITION here = pos;
            const LV_TEXTLINE* item = list.GetNext(pos);
            if (item && item->name && !IsBlankText(item->name)) m_items[ky::FoldCase(item->name)].push_back(here);
        }
    }
    // The first item of that name still in the index; blank names never match.
    POSITION Find(const wchar_t* name) const {
        if (IsBlankText(name)) return nullptr;
        const auto found = m_items.find(ky::FoldCase(name));
        return found == m_items.end() || found->second.empty() ? nullptr : found->second.front();
    }
    // The first item of that name leaves the index (it was merged and freed).
    void TakeFirst(const wchar_t* name) {
        const auto found = m_items.find(ky::FoldCase(name));
        if (found != m_items.end() && !found->second.empty()) found->second.pop_front();
    }

private:
    std::unordered_map<std::wstring, std::deque<POSITION>> m_items;
};

// The row of each live item, by the position the row carries.
std::unordered_map<const void*, int> RowsByPosition(HWND list) {
    std::unordered_map<const void*, int> rows;
    const int count = ListView_GetItemCount(list);
    rows.reserve(static_cast<size_t>(count));
    for (int row = 0; row < count; ++row) {
        LVITEMW entry{};
        entry.mask = LVIF_PARAM;
        entry.iItem = row;
        if (ListView_GetItem(list, &entry)) rows.emplace(reinterpret_cast<const void*>(entry.lParam), row);
    }
    return rows;
}

int FindRow(HWND list, POSITION pos) {
    LVFINDINFOW find{};
    find.flags = LVFI_PARAM;
    find.lParam = reinterpret_cast<LPARAM>(pos);
    return ListView_FindItem(list, -1, &find);
}

// Everything a refresh works with: the live document and view, and the new list
// with the places its items had when it was built (their images' indices).
struct Refresh {
    KYjlpDoc& doc;
    KYjlpViewList& view;
    KYjlpDoc::ItemListPtr fresh{};
    ky::UniqueHImageList large{}, small{};
    std::unordered_map<const void*, int> places{};
    bool redrawOff = false;
    bool changed = false;

    void RedrawOff() {
        if (redrawOff) return;
        SendMessageW(view.Handle(), WM_SETREDRAW, FALSE, 0);
        redrawOff = true;
    }
};

// The icons of the new list, found only for items that are new or whose icon
// source changed: for the others the live list's images stand.
bool BuildFreshImages(Refresh& r) {
    int largeSize = 32, smallSize = 16;
    r.doc.ObtainIconSizes(largeSize, smallSize);
    const int count = static_cast<int>(r.fresh->GetCount());
    r.large.reset(ImageList_Create(largeSize, largeSize, ILC_COLOR24 | ILC_MASK, count ? count : 1, 1));
    r.small.reset(ImageList_Create(smallSize, smallSize, ILC_COLOR24 | ILC_MASK, count ? count : 1, 1));
    if (!r.large) throw 27176;
    if (!r.small) throw 27183;
    std::unordered_set<std::wstring> kept;
    for (POSITION pos = r.doc.Items()->GetHeadPosition(); pos;)
        if (const LV_TEXTLINE* item = r.doc.Items()->GetNext(pos); item && item->name)
            kept.insert(KYjlpDoc::IconKeyOf(*item) + L'\n' + item->name);
    int place = 0;
    for (POSITION pos = r.fresh->GetHeadPosition(); pos; ++place) r.places[pos] = place, r.fresh->GetNext(pos);
    return r.doc.LoadItemImages(r.fresh.get(), r.large.get(), r.small.get(), [&kept](const LV_TEXTLINE& item) {
        return item.name && kept.count(KYjlpDoc::IconKeyOf(item) + L'\n' + item.name) > 0;
    });
}

void RemoveGoneItems(Refresh& r, bool& removed) {
    KYjlpItemList& live = *r.doc.Items();
    const NameIndex freshNames(*r.fresh);
    for (POSITION pos = live.GetTailPosition(); pos;) {
        POSITION here = pos;
        LV_TEXTLINE* item = live.GetPrev(pos);
        if (item && freshNames.Find(item->name)) continue;
        r.RedrawOff();
        const int row = FindRow(r.view.Handle(), here);
        if (row >= 0) ListView_DeleteItem(r.view.Handle(), row);
        // The item's images stay, so that the other rows' image indices hold.
        live.RemoveAt(here);
        KYjlpDoc::FreeItem(&item);
        removed = true;
    }
}

template <typename T>
void MergeNumber(Refresh& r, int row, int id, T& live, T fresh, const LV_TEXTLINE& item) {
    if (live == fresh) return;
    live = fresh;
    r.RedrawOff();
    r.view.UpdateCell(row, id, item);
    r.changed = true;
}

void MergeText(Refresh& r, int row, int id, wchar_t*& live, wchar_t*& fresh, const LV_TEXTLINE& item) {
    if (!fresh || SameText(live, fresh)) return;
    std::free(live);
    live = std::exchange(fresh, nullptr);
    r.RedrawOff();
    r.view.UpdateCell(row, id, item);
    r.changed = true;
}

void Replace(wchar_t*& live, wchar_t*& fresh) {
    std::free(live);
    live = std::exchange(fresh, nullptr);
}

// One item that stayed: its cells where they changed, its icons where their source did.
void MergeItem(Refresh& r, POSITION livePos, POSITION freshPos, const std::unordered_map<const void*, int>& rows) {
    LV_TEXTLINE& item = *r.doc.Items()->GetAt(livePos);
    LV_TEXTLINE& fresh = *r.fresh->GetAt(freshPos);
    const auto found = rows.find(livePos);
    const int row = found == rows.end() ? -1 : found->second;
    if (row < 0) throw 27109;
    const bool iconChanged = KYjlpDoc::IconKeyOf(item) != KYjlpDoc::IconKeyOf(fresh);
    MergeNumber(r, row, 24699, item.attributes, fresh.attributes, item);
    MergeNumber(r, row, 24698, item.accessed, fresh.accessed, item);
    MergeNumber(r, row, 24700, item.created, fresh.created, item);
    MergeNumber(r, row, 24702, item.modified, fresh.modified, item);
    MergeNumber(r, row, 24705, item.size, fresh.size, item);
    MergeText(r, row, 24701, item.path, fresh.path, item);
    MergeText(r, row, 24706, item.type, fresh.type, item);
    MergeText(r, row, 24704, item.parameters, fresh.parameters, item);
    Replace(item.fileName, fresh.fileName);
    Replace(item.baseName, fresh.baseName);
    Replace(item.startDir, fresh.startDir);
    Replace(item.iconPath, fresh.iconPath);
    item.iconIndex = fresh.iconIndex;
    item.isDocument = fresh.isDocument;
    item.showState = fresh.showState;
    if (iconChanged) {
        LVITEMW entry{};
        entry.mask = LVIF_IMAGE;
        entry.iItem = row;
        const int place = r.places[freshPos];
        if (ListView_GetItem(r.view.Handle(), &entry) && entry.iImage >= 0) {
            ky::UniqueHIcon big(ImageList_GetIcon(r.large.get(), place, ILD_NORMAL));
            ky::UniqueHIcon little(ImageList_GetIcon(r.small.get(), place, ILD_NORMAL));
            if (big && little) {
                ImageList_ReplaceIcon(r.doc.LargeImages(), entry.iImage, big.get());
                ImageList_ReplaceIcon(r.doc.SmallImages(), entry.iImage, little.get());
                ListView_RedrawItems(r.view.Handle(), row, row);
            }
        }
    }
}
}  // namespace

namespace {
// Every live item that is also in the new list takes its changes; the new list
// then holds only the items that are new.
void MergeItemChanges(Refresh& r) {
    NameIndex freshNames(*r.fresh);
    // Merging changes cells, never which row holds which item.
    const std::unordered_map<const void*, int> rows = RowsByPosition(r.view.Handle());
    for (POSITION pos = r.doc.Items()->GetHeadPosition(); pos;) {
        POSITION here = pos;
        const LV_TEXTLINE* item = r.doc.Items()->GetNext(pos);
        POSITION match = item ? freshNames.Find(item->name) : nullptr;
        if (!match) continue;
        MergeItem(r, here, match, rows);
        freshNames.TakeFirst(item->name);
        LV_TEXTLINE* used = r.fresh->GetAt(match);
        r.fresh->RemoveAt(match);
        KYjlpDoc::FreeItem(&used);
    }
}

// New items: their images appended to the live lists, their records to the
// live list, their rows after the others.
void AddNewItems(Refresh& r) {
    KYjlpDoc& doc = r.doc;
    const int firstImage = ImageList_GetImageCount(doc.LargeImages());
    for (POSITION pos = r.fresh->GetHeadPosition(); pos; r.fresh->GetNext(pos)) {
        const int place = r.places[pos];
        ky::UniqueHIcon big(ImageList_GetIcon(r.large.get(), place, ILD_NORMAL));
        ky::UniqueHIcon little(ImageList_GetIcon(r.small.get(), place, ILD_NORMAL));
        if (!big || !little) throw 27168;
        if (ImageList_ReplaceIcon(doc.LargeImages(), -1, big.get()) < 0) throw 27166;
        if (ImageList_ReplaceIcon(doc.SmallImages(), -1, little.get()) < 0) throw 27166;
    }
    POSITION first = doc.Items()->GetTailPosition();
    if (!doc.MoveItemsToEnd(r.fresh.get(), true)) throw 27014;
    if (first) doc.Items()->GetNext(first);
    else first = doc.Items()->GetHeadPosition();
    if (!r.view.PopulateList(doc.Items(), first, firstImage)) throw 27571;
}
}  // namespace

// A catalogue that an administrator's script is changing can fail a read half
// way (a key deleted under the reader); when the key changed again meanwhile,
// the read is made again rather than told, up to a few times.
bool KYjlpApp::ReadChangingCatalogue() {
    constexpr int kAttempts = 4;
    m_pRegistrar->m_pszOnlyApp = nullptr;
    for (int attempt = 1;; ++attempt) {
        if (m_pRegistrar->ObtainInstalledApps() && m_pRegistrar->m_uError == 0) return true;
        HANDLE watch = m_hWatchEvents[kWatchCatalogue].get();
        if (attempt == kAttempts || !watch || WaitForSingleObject(watch, 0) != WAIT_OBJECT_0) return false;
        WatchRegistryKey(m_hKeyCatalogue, L"SOFTWARE\\Veltran\\Corvane\\AppServer\\InstalledApps", kWatchCatalogue);
        Sleep(50);  // let the script finish its change
    }
}

bool KYjlpApp::RefreshItems() {
    if (m_pStatus) m_pStatus->ClearStatus();
    KYjlpDoc* doc = GetDocument();
    KYjlpViewList* view = GetListView(doc);
    bool redrawOff = false;
    try {
        if (!m_pRegistrar) throw 27007;
        if (!doc) throw 27005;
        if (!view) throw 27011;
        if (!*view) throw 27749;
        if (!doc->Items()) throw 27586;
        if (!doc->LargeImages()) throw 27529;
        if (!doc->SmallImages()) throw 27530;
        if (!ReadChangingCatalogue()) {
            AddToStatus(m_pStatus, MapRegistrarError(m_pRegistrar->m_uError));
            throw 0;
        }
        m_nItemFillMask = view->ViewModeOf() == KYjlpViewList::kDetails ? kCheckBinary | kCheckFacts : kCheckBinary;
        Refresh r{*doc, *view};
        if (!doc->BuildItemList(&r.fresh) || !r.fresh) throw 27014;
        if (!BuildFreshImages(r)) throw 27014;
        bool removed = false;
        RemoveGoneItems(r, removed);
        MergeItemChanges(r);
        const bool added = !r.fresh->IsEmpty();
        if (added) {
            r.RedrawOff();
            AddNewItems(r);
        }
        redrawOff = r.redrawOff;
        const bool changed = r.changed;
        if ((removed || added) && view->HasIconsPlaced() && view->SaveItemPositions(*m_pRegistrar))
            m_pRegistrar->StoreItemScreenPositions();
        if (added || changed) view->SortAgain();
    } catch (int number) {
        AddToStatus(m_pStatus, number);
    } catch (...) {
        AddToStatus(m_pStatus, 27106);
    }
    if (redrawOff && view && *view) {
        SendMessageW(view->Handle(), WM_SETREDRAW, TRUE, 0);
        InvalidateRect(view->Handle(), nullptr, TRUE);
    }
    if (view) view->ReportStatus();
    return !m_pStatus || m_pStatus->IsClean();
}

void KYjlpApp::OnViewRefresh(UINT) { RefreshItems(); }

// The user's settings stored now, not only at the end of the session.
void KYjlpApp::OnFileSave(UINT) {
    if (SavePreferences() || !m_pStatus || m_pStatus->IsClean()) return;
    KYstdPgmStat_DATA* data = m_pStatus->Data();
    const int second = data && data->SituationCount() > 1 ? static_cast<int>(data->Situation(1)) : 0;
    const uint32_t index = data && data->DetailCount() > 0 ? data->Detail(0) : 0xFFFFFFFF;
    ReportProblem(static_cast<int>(m_pStatus->FirstSituation()), second, index, nullptr, MB_ICONERROR);
    m_pStatus->ClearStatus();
}
