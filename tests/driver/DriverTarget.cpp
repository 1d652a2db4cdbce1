// The program that the driver tests drive: a top-level window with a list of
// three columns and a status bar, a message box on request, and exit codes that
// show from outside which command or button reached it.
//
// What the user does to the list shows in the frame's title, one event after the
// other ("Driver Target: column 2 up, double-click 1, activated 1"), so that a test
// sees from outside what reached the program:
//   column <i> up|down        a click on a heading (the heading shows that sort arrow)
//   double-click <row>        NM_DBLCLK on a row
//   return / key <vk>         NM_RETURN, LVN_KEYDOWN
//   activated <row>           LVN_ITEMACTIVATE, naming the focused row
//   drag <row>                LVN_BEGINDRAG; the list then holds the mouse capture
//   dropped <row> at <x>,<y>  the button went up there (client point of the list):
//                             the row moved by as much as the mouse did
//
//   /exit <code>        end at once with that code
//   /msgbox             ask a Yes/No question, exit with the button's id
//   /delay <ms>         wait before the window appears
//   /rows <n>           add n generated rows after the fixed ones
//   /select <row>       select that row
//   /exit-on <id> <code> end with that code on WM_COMMAND of that id
//   /view <name>        icon, smallicon, list or details (the default)
//   /topmost            stay above the other windows (to cover another target)
//   /dialog             show the dialog of the resources (check boxes, an edit field,
//                       a list box, a colour button); its echo line tells what
//                       reached it; the exit code is 100 plus the first box's check
//                       on OK, 2 on Cancel
//   /menu               give the frame a menu bar; its update handler (WM_INITMENUPOPUP)
//                       sets which items are enabled and checked
//   /wizard, /sheet     show the property sheet of DriverTargetSheet.cpp as a wizard
//                       or with tabs
#include <windows.h>
#include <windowsx.h>
#include <commctrl.h>
#include <shellapi.h>
#include <commdlg.h>
#include "foundation/UniqueHandle.h"
#include "tests/driver/DriverTargetSheet.h"
#include <cwchar>
#include <string>

namespace {

constexpr const wchar_t* kClassName = L"LpDriverTarget";
constexpr const wchar_t* kTitle = L"Driver Target";
constexpr int kListId = 100;
constexpr int kStatusId = 101;
// WM_COMMAND of this id opens a modal box and answers with the pressed button.
constexpr WORD kModalCommand = 40100;
// Any other command answers its own id plus this, so that a test sees it arrived whole.
constexpr LRESULT kCommandAnswerBase = 1000;
// The exit code after WM_CLOSE.
constexpr int kClosedExit = 40;
// The menu bar (/menu) and what its update handler reads: command 40230 turns the
// network on, which enables Network printer; command 40300 answers 1 while the
// driver's menu probe is loaded into this process, else 0.
constexpr int kMenuResource = 200;
constexpr WORD kNetworkCommand = 40230;
constexpr WORD kProbeLoadedCommand = 40300;
constexpr UINT kDefaultPrinterItem = 40211, kNetworkPrinterItem = 40212;
constexpr UINT kStatusBarItem = 40221, kRefreshItem = 40222;

struct Options {
    int exitAtOnce = -1;
    bool messageBox = false;
    DWORD delayMs = 0;
    int extraRows = 0;
    int selectRow = -1;
    WORD exitCommand = 0;
    int exitCode = 0;
    DWORD viewStyle = LVS_REPORT;
    bool topmost = false;
    bool dialog = false;
    bool menu = false;
    bool wizard = false;
    bool sheet = false;
};

Options g_options;

// The row being dragged and the client point where the button went down on it.
struct Drag {
    int row = -1;
    POINT grab{};
};

Drag g_drag;
std::wstring g_events;
bool g_network = false;

const wchar_t* const kRows[][3] = {
    {L"Alpha", L"Program", L"12 KB"},
    {L"C:\\new\\Beta", L"Path", L""},
    {L"\u03A9mega \u00FCber", L"Unicode", L"3"},
};

DWORD ViewStyle(const std::wstring& name) {
    if (name == L"icon") return LVS_ICON;
    if (name == L"smallicon") return LVS_SMALLICON;
    if (name == L"list") return LVS_LIST;
    return LVS_REPORT;
}

Options ParseOptions() {
    Options options;
    int count = 0;
    const ky::UniqueHLocal owner(::CommandLineToArgvW(::GetCommandLineW(), &count));
    wchar_t** words = static_cast<wchar_t**>(owner.get());
    for (int i = 1; i < count; ++i) {
        const std::wstring word = words[i];
        const bool hasNext = i + 1 < count;
        if (word == L"/msgbox") options.messageBox = true;
        else if (word == L"/topmost") options.topmost = true;
        else if (word == L"/dialog") options.dialog = true;
        else if (word == L"/menu") options.menu = true;
        else if (word == L"/wizard") options.wizard = true;
        else if (word == L"/sheet") options.sheet = true;
        else if (word == L"/exit" && hasNext) options.exitAtOnce = std::wcstol(words[++i], nullptr, 10);
        else if (word == L"/delay" && hasNext) options.delayMs = std::wcstoul(words[++i], nullptr, 10);
        else if (word == L"/rows" && hasNext) options.extraRows = std::wcstol(words[++i], nullptr, 10);
        else if (word == L"/select" && hasNext) options.selectRow = std::wcstol(words[++i], nullptr, 10);
        else if (word == L"/view" && hasNext) options.viewStyle = ViewStyle(words[++i]);
        else if (word == L"/exit-on" && i + 2 < count) {
            options.exitCommand = static_cast<WORD>(std::wcstoul(words[++i], nullptr, 10));
            options.exitCode = std::wcstol(words[++i], nullptr, 10);
        }
    }
    return options;
}

void AddRow(HWND list, int index, const wchar_t* const cells[3]) {
    LVITEMW item{};
    item.mask = LVIF_TEXT | LVIF_IMAGE;
    item.iItem = index;
    item.iImage = 0;
    item.pszText = const_cast<wchar_t*>(cells[0]);
    ::SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    for (int column = 1; column < 3; ++column) {
        item.iSubItem = column;
        item.pszText = const_cast<wchar_t*>(cells[column]);
        ::SendMessageW(list, LVM_SETITEMTEXTW, index, reinterpret_cast<LPARAM>(&item));
    }
}

// Every row shows the application icon, large and small: the icon views lay rows
// out around their icons. The list destroys the image lists with itself.
void GiveIcons(HWND list) {
    const HICON icon = ::LoadIconW(nullptr, IDI_APPLICATION);
    const struct { int kind, size; } lists[] = {{LVSIL_NORMAL, ::GetSystemMetrics(SM_CXICON)},
                                                {LVSIL_SMALL, ::GetSystemMetrics(SM_CXSMICON)}};
    for (const auto& [kind, size] : lists) {
        const HIMAGELIST images = ::ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 1, 0);
        ::ImageList_AddIcon(images, icon);
        ::SendMessageW(list, LVM_SETIMAGELIST, kind, reinterpret_cast<LPARAM>(images));
    }
}

void FillList(HWND list) {
    GiveIcons(list);
    const wchar_t* const headings[] = {L"Name", L"Kind", L"Size"};
    for (int column = 0; column < 3; ++column) {
        LVCOLUMNW record{};
        record.mask = LVCF_TEXT | LVCF_WIDTH;
        record.cx = 150;
        record.pszText = const_cast<wchar_t*>(headings[column]);
        ::SendMessageW(list, LVM_INSERTCOLUMNW, column, reinterpret_cast<LPARAM>(&record));
    }
    int index = 0;
    for (const auto& row : kRows) AddRow(list, index++, row);
    for (int extra = 0; extra < g_options.extraRows; ++extra) {
        const std::wstring name = L"Item " + std::to_wstring(extra);
        const std::wstring size = std::to_wstring(extra * 7);
        const wchar_t* const cells[3] = {name.c_str(), L"Generated", size.c_str()};
        AddRow(list, index++, cells);
    }
    if (g_options.selectRow >= 0) {
        LVITEMW state{};
        state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        state.state = LVIS_SELECTED | LVIS_FOCUSED;
        ::SendMessageW(list, LVM_SETITEMSTATE, g_options.selectRow, reinterpret_cast<LPARAM>(&state));
    }
}

void Record(HWND frame, const std::wstring& event) {
    g_events += (g_events.empty() ? L": " : L", ") + event;
    ::SetWindowTextW(frame, (kTitle + g_events).c_str());
}

std::wstring PointText(POINT point) {
    return std::to_wstring(point.x) + L"," + std::to_wstring(point.y);
}

// The row follows the mouse: it moves by as much as the mouse did since the button
// went down on it, as a desktop's icons do.
void Drop(HWND list, POINT at) {
    const int row = g_drag.row;
    g_drag.row = -1;
    POINT position{};
    ::SendMessageW(list, LVM_GETITEMPOSITION, row, reinterpret_cast<LPARAM>(&position));
    position.x += at.x - g_drag.grab.x;
    position.y += at.y - g_drag.grab.y;
    ::SendMessageW(list, LVM_SETITEMPOSITION32, row, reinterpret_cast<LPARAM>(&position));
    ::ReleaseCapture();
    Record(::GetParent(list), L"dropped " + std::to_wstring(row) + L" at " + PointText(at));
}

// The list's own messages: the end of a drag is ours, as the capture is.
LRESULT CALLBACK ListProc(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                          DWORD_PTR) noexcept {
    if (message == WM_LBUTTONUP && g_drag.row >= 0 && ::GetCapture() == list)
        Drop(list, POINT{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
    else if (message == WM_CAPTURECHANGED && g_drag.row >= 0) {
        g_drag.row = -1;
        Record(::GetParent(list), L"drag lost");
    }
    return ::DefSubclassProc(list, message, wParam, lParam);
}

void CreateChildren(HWND frame) {
    RECT client{};
    ::GetClientRect(frame, &client);
    const HWND status = ::CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0,
                                          frame, reinterpret_cast<HMENU>(kStatusId), nullptr, nullptr);
    int edges[] = {200, -1};
    ::SendMessageW(status, SB_SETPARTS, 2, reinterpret_cast<LPARAM>(edges));
    ::SendMessageW(status, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(L"3 items"));
    ::SendMessageW(status, SB_SETTEXTW, 1, reinterpret_cast<LPARAM>(L"Ready \u2013 C:\\new"));
    const DWORD style = WS_CHILD | WS_VISIBLE | LVS_SHOWSELALWAYS | g_options.viewStyle;
    const HWND list = ::CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"", style, 0, 0, client.right,
                                        client.bottom - 30, frame, reinterpret_cast<HMENU>(kListId),
                                        nullptr, nullptr);
    ::SetWindowSubclass(list, ListProc, 1, 0);
    FillList(list);
}

// A click on a heading makes that column the sort column: its arrow points up first,
// then turns on each further click. Only the arrow shows it; the rows stay in place.
std::wstring ShowSortArrow(HWND list, int clicked) {
    const HWND header = reinterpret_cast<HWND>(::SendMessageW(list, LVM_GETHEADER, 0, 0));
    const int count = static_cast<int>(::SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
    bool up = true;
    for (int column = 0; column < count; ++column) {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        ::SendMessageW(header, HDM_GETITEMW, column, reinterpret_cast<LPARAM>(&item));
        if (column == clicked) up = (item.fmt & HDF_SORTUP) == 0;
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (column == clicked) item.fmt |= up ? HDF_SORTUP : HDF_SORTDOWN;
        ::SendMessageW(header, HDM_SETITEMW, column, reinterpret_cast<LPARAM>(&item));
    }
    return up ? L"up" : L"down";
}

LRESULT OnListNotify(HWND frame, const NMHDR& header) {
    const HWND list = header.hwndFrom;
    switch (header.code) {
    case LVN_COLUMNCLICK: {
        const int column = reinterpret_cast<const NMLISTVIEW&>(header).iSubItem;
        Record(frame, L"column " + std::to_wstring(column) + L" " + ShowSortArrow(list, column));
        break;
    }
    case NM_DBLCLK:
        Record(frame, L"double-click " + std::to_wstring(reinterpret_cast<const NMITEMACTIVATE&>(header).iItem));
        break;
    case NM_RETURN:
        Record(frame, L"return");
        break;
    case LVN_KEYDOWN:
        Record(frame, L"key " + std::to_wstring(reinterpret_cast<const NMLVKEYDOWN&>(header).wVKey));
        break;
    case LVN_ITEMACTIVATE: {
        // Not every control sends the item with this notice (a key sends the bare
        // header): the row activated is the one with the focus.
        const LRESULT focused = ::SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED);
        Record(frame, L"activated " + std::to_wstring(focused));
        break;
    }
    case LVN_BEGINDRAG: {
        const NMLISTVIEW& start = reinterpret_cast<const NMLISTVIEW&>(header);
        g_drag.row = start.iItem;
        g_drag.grab = start.ptAction;
        ::SetCapture(list);
        Record(frame, L"drag " + std::to_wstring(start.iItem));
        break;
    }
    default:
        break;
    }
    return 0;
}

LRESULT OnCommand(HWND frame, WORD id) {
    if (g_options.exitCommand != 0 && id == g_options.exitCommand) {
        ::DestroyWindow(frame);
        ::PostQuitMessage(g_options.exitCode);
        return 0;
    }
    if (id == kModalCommand)
        return ::MessageBoxW(frame, L"Opened by a command", L"Command box", MB_OKCANCEL);
    if (id == kNetworkCommand) g_network = true;
    if (id == kProbeLoadedCommand) return ::GetModuleHandleW(L"lpmenuprobe.dll") != nullptr ? 1 : 0;
    return id + kCommandAnswerBase;
}

// The update handler of the menu bar: the states of the items of the submenu about
// to open, as the program's state has them now.
void UpdatePopup(HMENU popup) {
    ::CheckMenuItem(popup, kDefaultPrinterItem, MF_BYCOMMAND | MF_CHECKED);
    ::EnableMenuItem(popup, kNetworkPrinterItem, MF_BYCOMMAND | (g_network ? MF_ENABLED : MF_GRAYED));
    ::CheckMenuItem(popup, kStatusBarItem, MF_BYCOMMAND | MF_CHECKED);
    ::EnableMenuItem(popup, kRefreshItem, MF_BYCOMMAND | MF_ENABLED);
}

LRESULT CALLBACK FrameProc(HWND frame, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    switch (message) {
    case WM_CREATE:
        CreateChildren(frame);
        return 0;
    case WM_COMMAND:
        return OnCommand(frame, LOWORD(wParam));
    case WM_INITMENUPOPUP:
        UpdatePopup(reinterpret_cast<HMENU>(wParam));
        return 0;
    case WM_NOTIFY: {
        const NMHDR& header = *reinterpret_cast<const NMHDR*>(lParam);
        return header.idFrom == kListId ? OnListNotify(frame, header) : 0;
    }
    case WM_SETFOCUS:
        // The keyboard goes to the list, the frame's one view.
        ::SetFocus(::GetDlgItem(frame, kListId));
        return 0;
    case WM_CLOSE:
        ::DestroyWindow(frame);
        ::PostQuitMessage(kClosedExit);
        return 0;
    default:
        return ::DefWindowProcW(frame, message, wParam, lParam);
    }
}

void Echo(HWND dialog, const std::wstring& text) { ::SetDlgItemTextW(dialog, 1006, text.c_str()); }

void PickColour(HWND dialog) {
    static COLORREF custom[16] = {};
    CHOOSECOLORW choose{};
    choose.lStructSize = sizeof choose;
    choose.hwndOwner = dialog;
    choose.rgbResult = RGB(255, 255, 255);
    choose.lpCustColors = custom;
    choose.Flags = CC_RGBINIT;
    if (!::ChooseColorW(&choose)) {
        Echo(dialog, L"colour cancelled");
        return;
    }
    wchar_t text[32];
    std::swprintf(text, 32, L"colour %06lX", static_cast<unsigned long>(choose.rgbResult));
    Echo(dialog, text);
}

INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) noexcept {
    if (message == WM_INITDIALOG) {
        for (const wchar_t* item : {L"First item", L"Zweite \u00DCbung"})
            ::SendDlgItemMessageW(dialog, 1004, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item));
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    const int id = LOWORD(wParam);
    const int code = HIWORD(wParam);
    if (id == 1001 && code == BN_CLICKED)
        Echo(dialog, L"first " + std::to_wstring(::IsDlgButtonChecked(dialog, 1001)));
    else if (id == 1003 && code == EN_CHANGE) {
        wchar_t text[64] = {};
        ::GetDlgItemTextW(dialog, 1003, text, 64);
        Echo(dialog, std::wstring(L"edit ") + text);
    } else if (id == 1005 && code == BN_CLICKED)
        PickColour(dialog);
    else if (id == IDOK)
        ::EndDialog(dialog, 100 + ::IsDlgButtonChecked(dialog, 1001));
    else if (id == IDCANCEL)
        ::EndDialog(dialog, IDCANCEL);
    return TRUE;
}

int RunWindow(HINSTANCE instance, int show) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = FrameProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = kClassName;
    ::RegisterClassW(&windowClass);
    const DWORD exStyle = g_options.topmost ? WS_EX_TOPMOST : 0;
    // The frame owns its menu bar and destroys it with itself.
    const HMENU menu = g_options.menu ? ::LoadMenuW(instance, MAKEINTRESOURCEW(kMenuResource)) : nullptr;
    const HWND frame = ::CreateWindowExW(exStyle, kClassName, kTitle, WS_OVERLAPPEDWINDOW, 40, 40, 640, 480,
                                         nullptr, menu, instance, nullptr);
    if (frame == nullptr) return 100;
    ::ShowWindow(frame, show == SW_HIDE ? SW_SHOWNORMAL : show);
    ::UpdateWindow(frame);
    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show) {
    g_options = ParseOptions();
    if (g_options.exitAtOnce >= 0) return g_options.exitAtOnce;
    INITCOMMONCONTROLSEX controls{sizeof controls,
                                  ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES | ICC_TAB_CLASSES};
    ::InitCommonControlsEx(&controls);
    if (g_options.delayMs) ::Sleep(g_options.delayMs);
    if (g_options.messageBox)
        return ::MessageBoxW(nullptr, L"Launch C:\\new\\tool.exe?\n\u00DCbung \u03A9", L"Driver Target \u2013 Question",
                             MB_YESNO | MB_ICONQUESTION);
    if (g_options.dialog)
        return static_cast<int>(::DialogBoxParamW(instance, MAKEINTRESOURCEW(100), nullptr, DialogProc, 0));
    if (g_options.wizard || g_options.sheet) return lpdrivertarget::ShowSheet(instance, g_options.wizard);
    return RunWindow(instance, show);
}
