// The program that the driver tests drive: a top-level window with a report list
// of three columns and a status bar, a message box on request, and exit codes
// that show from outside which command or button reached it.
//
//   /exit <code>        end at once with that code
//   /msgbox             ask a Yes/No question, exit with the button's id
//   /delay <ms>         wait before the window appears
//   /rows <n>           add n generated rows after the fixed ones
//   /select <row>       select that row
//   /exit-on <id> <code> end with that code on WM_COMMAND of that id
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>
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

struct Options {
    int exitAtOnce = -1;
    bool messageBox = false;
    DWORD delayMs = 0;
    int extraRows = 0;
    int selectRow = -1;
    WORD exitCommand = 0;
    int exitCode = 0;
};

Options g_options;

const wchar_t* const kRows[][3] = {
    {L"Alpha", L"Program", L"12 KB"},
    {L"C:\\new\\Beta", L"Path", L""},
    {L"\u03A9mega \u00FCber", L"Unicode", L"3"},
};

Options ParseOptions() {
    Options options;
    int count = 0;
    wchar_t** words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    for (int i = 1; i < count; ++i) {
        const std::wstring word = words[i];
        const bool hasNext = i + 1 < count;
        if (word == L"/msgbox") options.messageBox = true;
        else if (word == L"/exit" && hasNext) options.exitAtOnce = std::wcstol(words[++i], nullptr, 10);
        else if (word == L"/delay" && hasNext) options.delayMs = std::wcstoul(words[++i], nullptr, 10);
        else if (word == L"/rows" && hasNext) options.extraRows = std::wcstol(words[++i], nullptr, 10);
        else if (word == L"/select" && hasNext) options.selectRow = std::wcstol(words[++i], nullptr, 10);
        else if (word == L"/exit-on" && i + 2 < count) {
            options.exitCommand = static_cast<WORD>(std::wcstoul(words[++i], nullptr, 10));
            options.exitCode = std::wcstol(words[++i], nullptr, 10);
        }
    }
    ::LocalFree(words);
    return options;
}

void AddRow(HWND list, int index, const wchar_t* const cells[3]) {
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = index;
    item.pszText = const_cast<wchar_t*>(cells[0]);
    ::SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    for (int column = 1; column < 3; ++column) {
        item.iSubItem = column;
        item.pszText = const_cast<wchar_t*>(cells[column]);
        ::SendMessageW(list, LVM_SETITEMTEXTW, index, reinterpret_cast<LPARAM>(&item));
    }
}

void FillList(HWND list) {
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

void CreateChildren(HWND frame) {
    RECT client{};
    ::GetClientRect(frame, &client);
    const HWND status = ::CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0,
                                          frame, reinterpret_cast<HMENU>(kStatusId), nullptr, nullptr);
    int edges[] = {200, -1};
    ::SendMessageW(status, SB_SETPARTS, 2, reinterpret_cast<LPARAM>(edges));
    ::SendMessageW(status, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(L"3 items"));
    ::SendMessageW(status, SB_SETTEXTW, 1, reinterpret_cast<LPARAM>(L"Ready \u2013 C:\\new"));
    const HWND list = ::CreateWindowExW(
        WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS,
        0, 0, client.right, client.bottom - 30, frame, reinterpret_cast<HMENU>(kListId), nullptr, nullptr);
    FillList(list);
}

LRESULT OnCommand(HWND frame, WORD id) {
    if (g_options.exitCommand != 0 && id == g_options.exitCommand) {
        ::DestroyWindow(frame);
        ::PostQuitMessage(g_options.exitCode);
        return 0;
    }
    if (id == kModalCommand)
        return ::MessageBoxW(frame, L"Opened by a command", L"Command box", MB_OKCANCEL);
    return id + kCommandAnswerBase;
}

LRESULT CALLBACK FrameProc(HWND frame, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    switch (message) {
    case WM_CREATE:
        CreateChildren(frame);
        return 0;
    case WM_COMMAND:
        return OnCommand(frame, LOWORD(wParam));
    case WM_CLOSE:
        ::DestroyWindow(frame);
        ::PostQuitMessage(kClosedExit);
        return 0;
    default:
        return ::DefWindowProcW(frame, message, wParam, lParam);
    }
}

int RunWindow(HINSTANCE instance, int show) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = FrameProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = kClassName;
    ::RegisterClassW(&windowClass);
    const HWND frame = ::CreateWindowExW(0, kClassName, kTitle, WS_OVERLAPPEDWINDOW, 40, 40, 640, 480,
                                         nullptr, nullptr, instance, nullptr);
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
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES};
    ::InitCommonControlsEx(&controls);
    if (g_options.delayMs) ::Sleep(g_options.delayMs);
    if (g_options.messageBox)
        return ::MessageBoxW(nullptr, L"Launch C:\\new\\tool.exe?\n\u00DCbung \u03A9", L"Driver Target \u2013 Question",
                             MB_YESNO | MB_ICONQUESTION);
    return RunWindow(instance, show);
}
