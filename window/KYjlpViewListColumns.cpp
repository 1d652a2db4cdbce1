// The Details columns of the list: made from the preferences, the text of each
// cell from the item's record, and the sort of the rows by any column.
#include <cwchar>
#include <ctime>
#include <string>

#include "app/KYjlpApp.h"
#include "document/KYjlpDoc.h"
#include "document/LV_TEXTLINE.h"
#include "foundation/KYstdPgmStat.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpmLocalizeHelpers.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpViewList.h"

namespace {
enum ColumnId {
    kAccessed = 24698, kAttribs, kCreated, kLocation, kModified, kName, kParams, kSize, kType
};

// The attribute letters in the order they show, with their string and situation.
struct AttributeLetter {
    uint8_t bit;
    UINT stringId;
    int situation;
};
constexpr AttributeLetter kLetters[] = {{FILE_ATTRIBUTE_ARCHIVE, 24657, 27563},  {FILE_ATTRIBUTE_DIRECTORY, 24658, 27564},
                                        {FILE_ATTRIBUTE_HIDDEN, 24659, 27565},   {FILE_ATTRIBUTE_READONLY, 24660, 27566},
                                        {FILE_ATTRIBUTE_SYSTEM, 24661, 27567},   {0x08, 24662, 27568}};

const wchar_t* TextField(const LV_TEXTLINE& item, int id) {
    switch (id) {
    case kLocation: return item.path;
    case kName: return item.name;
    case kParams: return item.parameters;
    case kType: return item.type;
    default: return nullptr;
    }
}

bool IsDateColumn(int id) { return id == kAccessed || id == kCreated || id == kModified; }

int64_t DateField(const LV_TEXTLINE& item, int id) {
    return id == kAccessed ? item.accessed : id == kCreated ? item.created : item.modified;
}

// A thousand bytes are one unit, and no file that holds anything shows 0.
uint64_t SizeUnits(uint64_t size) {
    if (size == 0) return 0;
    if (size < 500) return 1;
    return (size + 500) / 1000;
}

template <typename T>
int Order(T a, T b) {
    return a == b ? 0 : a < b ? -1 : 1;
}

KYjutlRegistrar_PREFS* Preferences() {
    KYjlpApp* app = TheApp();
    return app && app->m_pRegistrar ? app->m_pRegistrar->m_pPreferences : nullptr;
}
}  // namespace

bool KYjlpViewList::FormatColumnText(const LV_TEXTLINE* item, int id, wchar_t* buffer, size_t size) {
    if (!buffer) throw 27585;
    if (size == 0) throw 27584;
    buffer[0] = 0;
    if (!item) throw 27583;
    if (id < kAccessed || id > kType) throw 27561;
    if (IsDateColumn(id)) {
        const __time64_t moment = DateField(*item, id);
        struct tm local {};
        if (_localtime64_s(&local, &moment) == 0 &&
            wcsftime(buffer, size < 128 ? size : 128, m_strDateFormat.c_str(), &local) == 0)
            buffer[0] = 0;
    } else if (id == kAttribs) {
        std::wstring letters;
        for (const AttributeLetter& letter : kLetters) {
            if (!(item->attributes & letter.bit)) continue;
            std::wstring text;
            if (!fw::LoadResString(letter.stringId, text)) throw letter.situation;
            letters += text;
        }
        wcsncpy(buffer, letters.c_str(), size - 1);
        buffer[size - 1] = 0;
    } else if (id == kSize) {
        std::wstring unit;
        if (!fw::LoadResString(24665, unit)) throw 27569;
        wchar_t number[256] = {};
        const uint64_t units = SizeUnits(item->size);
        if (!KYbpmLocalizeHelpers::convertIntToPunctuatedStrW(static_cast<int64_t>(units), number, 256) || !number[0])
            _snwprintf(number, 255, L"%I64u", units);
        _snwprintf(buffer, size - 1, unit.c_str(), number);
        buffer[size - 1] = 0;
    } else if (const wchar_t* text = TextField(*item, id)) {
        wcsncpy(buffer, text, size - 1);
        buffer[size - 1] = 0;
    }
    return true;
}

// First fill: the shown columns of the preferences, Name always the first
// control column (it is the row's label), the user's order as the header's.
// Later: headings, formats and widths of the columns there are.
bool KYjlpViewList::SetColumns(bool first) {
    KYjutlRegistrar_PREFS* prefs = Preferences();
    if (!prefs || !prefs->pColumns) return false;
    const auto& columns = *prefs->pColumns;
    const int count = static_cast<int>(columns.size());
    if (count < 1 || count > kColumnCount || count != prefs->nColumnsShown) throw 27560;
    if (prefs->iNameColumn < 0 || prefs->iNameColumn >= count) throw 27560;
    int order[kColumnCount];
    int made = 0;
    wchar_t heading[260];
    auto place = [&](const LVCOLUMNW* column, int at) {
        if (!column) throw 27561;
        LVCOLUMNW copy = *column;
        wcsncpy(heading, column->pszText ? column->pszText : L"", 259);
        heading[259] = 0;
        copy.pszText = heading;
        copy.mask &= ~static_cast<UINT>(LVCF_ORDER | LVCF_SUBITEM);
        if (first) {
            if (ListView_InsertColumn(m_hwnd, at, &copy) != at) throw 27750;
            m_aColumnIds[at] = column->iSubItem;
        } else {
            ListView_SetColumn(m_hwnd, at, &copy);
        }
    };
    if (first) {
        place(columns[static_cast<size_t>(prefs->iNameColumn)], made++);
        for (int i = 0; i < count; ++i)
            if (i != prefs->iNameColumn) place(columns[static_cast<size_t>(i)], made++);
    } else {
        for (int at = 0; at < kColumnCount && m_aColumnIds[at] >= 0; ++at)
            for (const LVCOLUMNW* column : columns)
                if (column && column->iSubItem == m_aColumnIds[at]) place(column, at);
    }
    // The user's order: the array order of the preferences, as control columns.
    int shown = 0;
    for (int i = 0; i < count; ++i)
        for (int at = 0; at < kColumnCount; ++at)
            if (columns[static_cast<size_t>(i)] && m_aColumnIds[at] == columns[static_cast<size_t>(i)]->iSubItem)
                order[shown++] = at;
    if (shown == count && !ListView_SetColumnOrderArray(m_hwnd, count, order)) throw 27751;
    return true;
}

bool KYjlpViewList::ObtainColumnOrder(int& count, int ids[kColumnCount]) const {
    count = 0;
    for (int i = 0; i < kColumnCount; ++i) ids[i] = -1;
    HWND header = ListView_GetHeader(m_hwnd);
    const int columns = header ? Header_GetItemCount(header) : 0;
    if (columns <= 0 || columns > kColumnCount) return false;
    int order[kColumnCount];
    if (!ListView_GetColumnOrderArray(m_hwnd, columns, order)) return false;
    for (int i = 0; i < columns; ++i) {
        if (order[i] < 0 || order[i] >= kColumnCount || m_aColumnIds[order[i]] < 0) return false;
        ids[i] = m_aColumnIds[order[i]];
    }
    count = columns;
    return true;
}

int CALLBACK KYjlpViewList::CompareItems(LPARAM first, LPARAM second, LPARAM sortParam) noexcept {
    const auto* sort = reinterpret_cast<const SortInfo*>(sortParam);
    if (!first || !second || !sort || !sort->items || (sort->direction != 1 && sort->direction != -1) ||
        sort->columnId < kAccessed || sort->columnId > kType)
        return 0;
    const LV_TEXTLINE* a = sort->items->GetAt(reinterpret_cast<POSITION>(first));
    const LV_TEXTLINE* b = sort->items->GetAt(reinterpret_cast<POSITION>(second));
    if (!a || !b) return 0;
    const int id = sort->columnId;
    int result = 0;
    if (IsDateColumn(id)) {
        result = Order(DateField(*a, id), DateField(*b, id));
    } else if (id == kAttribs) {
        result = Order(a->attributes, b->attributes);
    } else if (id == kSize) {
        result = Order(a->size, b->size);
    } else {
        const wchar_t* x = TextField(*a, id);
        const wchar_t* y = TextField(*b, id);
        result = x && y ? _wcsicmp(x, y) : 0;
        result = result < 0 ? -1 : result > 0 ? 1 : 0;
    }
    return result * sort->direction;
}

bool KYjlpViewList::SortItems(const KYjlpItemList* list) {
    auto* doc = dynamic_cast<KYjlpDoc*>(GetDocument());
    m_sort.items = list ? list : doc ? doc->Items() : nullptr;
    bool sorted = false;
    if (m_hwnd && m_sort.items && (m_sort.direction == 1 || m_sort.direction == -1) &&
        m_sort.columnId >= kAccessed && m_sort.columnId <= kType) {
        if (GetItemCount() > 1)
            ListView_SortItems(m_hwnd, &KYjlpViewList::CompareItems, reinterpret_cast<LPARAM>(&m_sort));
        // A sort in an icon view lays the icons out anew.
        const int mode = ViewModeOf();
        if (mode == kLargeIcons || mode == kSmallIcons || GetItemCount() == 0) m_sort.iconsPlaced = false;
        MarkSortColumn();
        sorted = true;
    }
    m_sort.items = nullptr;
    return sorted;
}

// The arrow in the heading of the sorted column, and none in the others.
void KYjlpViewList::MarkSortColumn() {
    HWND header = ListView_GetHeader(m_hwnd);
    if (!header) return;
    for (int at = 0; at < kColumnCount && m_aColumnIds[at] >= 0; ++at) {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        if (!Header_GetItem(header, at, &item)) continue;
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (m_aColumnIds[at] == m_sort.columnId) item.fmt |= m_sort.direction > 0 ? HDF_SORTUP : HDF_SORTDOWN;
        Header_SetItem(header, at, &item);
    }
}

// A click on the sorted column turns its direction; on another, it sorts upwards.
void KYjlpViewList::OnColumnClick(int column) {
    if (column < 0 || column >= kColumnCount || m_aColumnIds[column] < 0) return;
    const int id = m_aColumnIds[column];
    m_sort.direction = id == m_sort.columnId ? -m_sort.direction : 1;
    m_sort.columnId = id;
    SortItems(nullptr);
}
