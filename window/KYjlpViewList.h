// The list of published applications: a report-style list control that is the
// view of the document (hidden in launch use), and the road from an item to a
// running process.
#pragma once
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>
#include <string>
#include <unordered_map>
#include <vector>

#include "foundation/UniqueHandle.h"

#include "document/KYjlpItemList.h"
#include "framework/View.h"

class KYjutlRegistrar;
struct KYjutlRegistrar_PREFS;
struct LV_TEXTLINE;

class KYjlpViewList : public fw::View {
public:
    KYjlpViewList() = default;
    ~KYjlpViewList() override { ResetDrag(); }

    // View modes: the low two bits of the control's style.
    enum ViewMode { kLargeIcons = 0, kDetails = 1, kSmallIcons = 2, kList = 3 };
    static constexpr int kColumnCount = 9;
    static constexpr int kFirstColumnId = 24698;
    static constexpr int kNameColumnId = 24703;
    // The sort of the rows: a column id and a direction (1 up, -1 down).
    struct SortInfo {
        int columnId = kNameColumnId;
        int direction = 1;
        bool iconsPlaced = false;  // icons stand where the user put them: not sorted away
        const KYjlpItemList* items = nullptr;  // set during a sort only
    };

    bool CreateView(fw::FrameWnd& frame, UINT id) override;
    void OnInitialUpdate() override;
    bool OnCmdMsg(UINT id, fw::CmdUI* ui) override;
    bool OnReflectedNotify(NMHDR& header, LRESULT& result) override;

    // hint 0: the first fill; 1: the preferences were restored and apply to the rows there are.
    void OnUpdate(int hint);
    int GetItemCount() const { return ListView_GetItemCount(m_hwnd); }
    int ViewModeOf() const { return static_cast<int>(Style() & LVS_TYPEMASK); }
    bool SetViewMode(int mode);
    // how: 1 on, -1 off, 0 toggle; a single extended style bit below 256.
    bool SetStyleBit(DWORD bit, int how);
    bool SetHeaderShown(int how);
    // The list's background (behind the rows and their texts) and text colours.
    bool SetColors(COLORREF background, COLORREF text);
    // Rows for the items of list (from start), column texts from the records.
    // firstImage: the image of the first row added, -1 for its place in the list.
    bool PopulateList(const KYjlpItemList* list, POSITION start, int firstImage = -1);
    // The cell of that column id in row, written anew from item (if the column is shown).
    void UpdateCell(int row, int id, const LV_TEXTLINE& item);
    void OnGetCellText(NMLVDISPINFOW& info);
    // The rows in order after a change: in Details, and in the icon views unless placed by hand.
    void SortAgain();
    // The failures of a list operation, gathered in the program status, told once.
    void ReportStatus();
    bool FormatColumnText(const LV_TEXTLINE* item, int id, wchar_t* buffer, size_t size);
    bool SortItems(const KYjlpItemList* list);
    static int CALLBACK CompareItems(LPARAM first, LPARAM second, LPARAM sort) noexcept;
    // Gives the column ids in display order (-1 behind the last) for the preferences.
    bool ObtainColumnOrder(int& count, int ids[kColumnCount]) const;
    const SortInfo& Sort() const { return m_sort; }
    bool HasIconsPlaced() const { return m_sort.iconsPlaced; }
    const int* ColumnIds() const { return m_aColumnIds; }
    // Every row's places in the two icon views, for the preferences.
    bool SaveItemPositions(KYjutlRegistrar& registrar);
    void OnOpenSelection();
    // The saved places of the icons in the icon view that stands.
    void RestoreIconPlaces();

    // All of one launch: check, start, hand the process over; true when started.
    // index names an item without a name.
    virtual bool LaunchItem(LV_TEXTLINE* item, int index, POSITION pos);
    // Checks the target anew (the state at list building may be old); sets m_launchCleared.
    virtual bool ValidateItemForLaunch(LV_TEXTLINE* item, const std::wstring& shownName, HWND* frameOut);
    // The shell call; a code on the scale of hInstApp, above 32 meaning success.
    virtual INT_PTR ExecuteItem(HWND owner, LV_TEXTLINE* item);
    // The hint that closes a launch failure's report.
    std::wstring LaunchHint() const;

    // True between a passed validation and the end of ExecuteItem.
    bool m_launchCleared = false;
    // The command line's launch: no message loop follows the shell call.
    bool m_bLaunchWithoutUI = false;

protected:
    LRESULT OnMessage(UINT msg, WPARAM w, LPARAM l) override;
    // The right button's menu: the item's on a row, the list's elsewhere, with the printers.
    void OnContextMenu(int x, int y);
    bool OnEraseBkgnd(HDC dc);
    std::unordered_map<std::wstring, int> RowsByName(int rows) const;
    // The one place where the program asks the shell to start something.
    virtual BOOL CallShell(SHELLEXECUTEINFOW& info);

private:
    bool SetColumns(bool first);
    bool ApplyPreferences(const KYjutlRegistrar_PREFS& prefs);
    void PlaceSavedIcons(const KYjutlRegistrar_PREFS& prefs, bool& missing);
    void SortForDisplay();
    void MarkSortColumn();
    bool OnItemActivate(const NMITEMACTIVATE& activate);
    void OnColumnClick(int column);
    void OnViewModeCommand(UINT id);
    void OnUpdateViewMode(fw::CmdUI& ui);
    void OnSortCommand(UINT id);
    void OnStyleCommand(UINT id);
    void OnUpdateStyle(fw::CmdUI& ui);
    void OnOpenSelectionCommand(UINT id);
    void OnUpdateOpenSelection(fw::CmdUI& ui);
    void BeginItemDrag(const NMLISTVIEW& begin);
    void TrackDrag(POINT client);
    void EndDrag(POINT client);
    void ResetDrag();
    POSITION RowPosition(int row) const;
    void ShowBusy(UINT messageId, const std::wstring& name);
    void EndBusy();
    void QueueLaunchRequest(const wchar_t* name, HANDLE process);

    bool m_bFirstFill = true;
    int m_aColumnIds[kColumnCount] = {-1, -1, -1, -1, -1, -1, -1, -1, -1};
    bool m_factsPresent = false;
    std::wstring m_strDateFormat;
    SortInfo m_sort;
    // The rows being dragged, the grabbed one first, and how the drag looks.
    struct DragContext {
        std::vector<int> rows{};
        bool track = true;
        ky::UniqueHImageList image{};
        bool captured = false;
        POINT origin{};  // the view's origin when the drag began
        POINT grab{};    // the cursor relative to the grabbed row's place
        POINT hot{};     // the hot spot of the drag image
        HCURSOR cursorOld = nullptr;
    };
    DragContext m_drag;
};
