// The list brought in line with a changed catalogue without rebuilding it: rows
// of items that left go, rows of items that stayed change cell by cell, new
// items are added at the end, so that selection, focus, places and scroll
// position survive. Icons are found only for items whose icon source changed.
#include <cstdlib>
#include <unordered_map>
#include <utility>
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
        m_items.reserve(list.GetCount());
        for (POSITION pos = list.GetHeadPosition(); pos;) {
            POSITION here = pos;
            const LV_TEXTLINE* item = list.GetNext(pos);
            if (item && item->name && !IsBlankText(item->name))
                m_items[ky::FoldCase(item->name)].positions.push_back(here);
        }
    }
    // Whether any item of the list has that name; blank names never match.
    bool Has(const wchar_t* name) const { return !IsBlankText(name) && m_items.count(ky::FoldCase(name)) > 0; }
    // The first item of that name not yet taken, which is taken; null when none is left.
    POSITION Take(const wchar_t* name) {
        if (IsBlankText(name)) return nullptr;
        const auto found = m_items.find(ky::FoldCase(name));
        if (found == m_items.end() || found->second.taken == found->second.positions.size()) return nullptr;
        return found->second.positions[found->second.taken++];
    }

private:
    struct Named {
        std::vector<POSITION> positions;
        size_t taken = 0;
    };
    std::unordered_map<std::wstring, Named> m_items;
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

// A live item and the new item of its name that it takes its changes from.
struct Pair {
    POSITION live;
    POSITION fresh;
    bool iconChanged;
};

// Everything a refresh works with: the live document and view, the new list, how
// its items pair with the live ones, and the images of the new items that need
// theirs found (new items, and items whose icon source changed), by their places.
struct Refresh {
    KYjlpDoc& doc;
    KYjlpViewList& view;
    KYjlpDoc::ItemListPtr fresh{};
    std::vector<POSITION> gone{};
    std::vector<Pair> pairs{};
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

// Live items whose name the new list no longer has are gone; each other live item
// takes the first new item of its name that no live item before it took.
void PairItems(Refresh& r) {
    NameIndex freshNames(*r.fresh);
    for (POSITION pos = r.doc.Items()->GetHeadPosition(); pos;) {
        POSITION here = pos;
        const LV_TEXTLINE* item = r.doc.Items()->GetNext(pos);
        if (!item || !freshNames.Has(item->name)) {
            r.gone.push_back(here);
            continue;
        }
        POSITION match = freshNames.Take(item->name);
        if (!match) continue;
        const bool iconChanged = KYjlpDoc::IconKeyOf(*item) != KYjlpDoc::IconKeyOf(*r.fresh->GetAt(match));
        r.pairs.push_back({here, match, iconChanged});
    }
}

// The icons of the new items that need them, and nothing for the others: an
// unchanged catalogue finds no icon at all.
bool BuildFreshImages(Refresh& r) {
    std::unordered_map<const void*, bool> paired;
    paired.reserve(r.pairs.size());
    for (const Pair& pair : r.pairs) paired.emplace(pair.fresh, pair.iconChanged);
    std::vector<const LV_TEXTLINE*> needing;
    for (POSITION pos = r.fresh->GetHeadPosition(); pos;) {
        POSITION here = pos;
        const LV_TEXTLINE* item = r.fresh->GetNext(pos);
        const auto found = paired.find(here);
        if (found != paired.end() && !found->second) continue;
        r.places[here] = static_cast<int>(needing.size());
        needing.push_back(item);
    }
    if (needing.empty()) return true;
    int largeSize = 32, smallSize = 16;
    r.doc.ObtainIconSizes(largeSize, smallSize);
    const int count = static_cast<int>(needing.size());
    r.large.reset(ImageList_Create(largeSize, largeSize, ILC_COLOR24 | ILC_MASK, count, 1));
    r.small.reset(ImageList_Create(smallSize, smallSize, ILC_COLOR24 | ILC_MASK, count, 1));
    if (!r.large) throw 27176;
    if (!r.small) throw 27183;
    return r.doc.LoadItemImages(needing, r.large.get(), r.small.get());
}

void RemoveGoneItems(Refresh& r, bool& removed) {
    KYjlpItemList& live = *r.doc.Items();
    for (auto it = r.gone.rbegin(); it != r.gone.rend(); ++it) {
        POSITION here = *it;
        LV_TEXTLINE* item = live.GetAt(here);
        r.RedrawOff();
        const int row = FindRow(r.view.Handle(), here);
        if (row >= 0) ListView_DeleteItem(r.view.Handle(), row);
        // The item's images stay, so that the other rows' image indices hold.
        live.RemoveAt(here);
        KYjlpDoc::FreeItem(&item);
        removed = true;
    }
}

// The row of a live item, asked only for items whose row must change. A refresh
// that changes a few items finds each row by itself; one that changes many asks
// every row once and keeps the answers. Merging changes cells, never which row
// holds which item, so the answers hold for the whole merge.
class RowFinder {
public:
    explicit RowFinder(HWND list) : m_list(list) {}
    int Row(POSITION pos) {
        constexpr int kSingleLookUps = 16;
        if (!m_built && ++m_asked <= kSingleLookUps) return FindRow(m_list, pos);
        if (!m_built) m_rows = RowsByPosition(m_list), m_built = true;
        const auto found = m_rows.find(pos);
        return found == m_rows.end() ? -1 : found->second;
    }

private:
    HWND m_list;
    int m_asked = 0;
    bool m_built = false;
    std::unordered_map<const void*, int> m_rows;
};

// One merged item's row, found when its first cell changes.
struct MergeRow {
    RowFinder& finder;
    POSITION live;
    int row = -1;
    int operator()() {
        if (row < 0 && (row = finder.Row(live)) < 0) throw 27109;
        return row;
    }
};

template <typename T>
void MergeNumber(Refresh& r, MergeRow& row, int id, T& live, T fresh, const LV_TEXTLINE& item) {
    if (live == fresh) return;
    live = fresh;
    r.RedrawOff();
    r.view.UpdateCell(row(), id, item);
    r.changed = true;
}

void MergeText(Refresh& r, MergeRow& row, int id, wchar_t*& live, wchar_t*& fresh, const LV_TEXTLINE& item) {
    if (!fresh || SameText(live, fresh)) return;
    std::free(live);
    live = std::exchange(fresh, nullptr);
    r.RedrawOff();
    r.view.UpdateCell(row(), id, item);
    r.changed = true;
}

void Replace(wchar_t*& live, wchar_t*& fresh) {
    std::free(live);
    live = std::exchange(fresh, nullptr);
}

// The row's icons replaced, in place, by the new item's.
void MergeIcons(Refresh& r, int row, POSITION freshPos) {
    LVITEMW entry{};
    entry.mask = LVIF_IMAGE;
    entry.iItem = row;
    const int place = r.places[freshPos];
    if (!ListView_GetItem(r.view.Handle(), &entry) || entry.iImage < 0) return;
    ky::UniqueHIcon big(ImageList_GetIcon(r.large.get(), place, ILD_NORMAL));
    ky::UniqueHIcon little(ImageList_GetIcon(r.small.get(), place, ILD_NORMAL));
    if (!big || !little) return;
    ImageList_ReplaceIcon(r.doc.LargeImages(), entry.iImage, big.get());
    ImageList_ReplaceIcon(r.doc.SmallImages(), entry.iImage, little.get());
    ListView_RedrawItems(r.view.Handle(), row, row);
}

// One item that stayed: its cells where they changed, its icons where their source did.
void MergeItem(Refresh& r, const Pair& pair, RowFinder& finder) {
    LV_TEXTLINE& item = *r.doc.Items()->GetAt(pair.live);
    LV_TEXTLINE& fresh = *r.fresh->GetAt(pair.fresh);
    MergeRow row{finder, pair.live};
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
    if (pair.iconChanged) MergeIcons(r, row(), pair.fresh);
}
}  // namespace

namespace {
// Every live item that is also in the new list takes its changes; the new list
// then holds only the items that are new.
void MergeItemChanges(Refresh& r) {
    RowFinder finder(r.view.Handle());
    for (const Pair& pair : r.pairs) {
        MergeItem(r, pair, finder);
        LV_TEXTLINE* used = r.fresh->GetAt(pair.fresh);
        r.fresh->RemoveAt(pair.fresh);
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
        PairItems(r);
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
