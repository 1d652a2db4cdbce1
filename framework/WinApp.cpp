#include "framework/WinApp.h"

#include <commctrl.h>
#include <objbase.h>

#include "framework/Dialog.h"

namespace fw {

namespace {
WinApp* g_app = nullptr;
constexpr UINT kSysTimer = 0x0118;  // the caret blink: never wakes idle work

// The thread's COM apartment for the application's whole run: the shell may
// carry a verb out through a COM handler, which needs a single-threaded
// apartment on the thread that asks. OLE 1's DDE, which nothing here speaks,
// stays off. Without the apartment the program still runs: a verb that needed
// it fails in the shell, and the launch tells that failure with the shell's error.
class ComApartment {
public:
    ComApartment() noexcept
        : m_result(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    ~ComApartment() {
        if (SUCCEEDED(m_result)) ::CoUninitialize();
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    HRESULT m_result;
};
}  // namespace

WinApp::WinApp(const wchar_t* appName) : m_strAppName(appName ? appName : L"") { g_app = this; }

WinApp::~WinApp() {
    CloseAllDocuments();
    if (g_app == this) g_app = nullptr;
}

WinApp* WinApp::Current() noexcept { return g_app; }

void WinApp::CloseAllDocuments() {
    m_pMainWnd = nullptr;
    m_templates.clear();
}

bool WinApp::IsIdleMessage(const MSG& msg) {
    if (msg.message == WM_MOUSEMOVE || msg.message == WM_NCMOUSEMOVE) {
        if (msg.message == m_nLastMouseMsg && msg.pt.x == m_ptLastMouse.x &&
            msg.pt.y == m_ptLastMouse.y)
            return false;
        m_ptLastMouse = msg.pt;
        m_nLastMouseMsg = msg.message;
        return true;
    }
    return msg.message != WM_PAINT && msg.message != kSysTimer;
}

int WinApp::Run() {
    bool idle = true;
    long idleCount = 0;
    MSG peek;
    for (;;) {
        while (idle && !::PeekMessageW(&peek, nullptr, 0, 0, PM_NOREMOVE)) {
            if (!OnIdle(idleCount++)) idle = false;
        }
        do {
            if (!PumpMessage()) return ExitInstance();
            if (IsIdleMessage(m_msgCur)) {
                idle = true;
                idleCount = 0;
            }
        } while (::PeekMessageW(&peek, nullptr, 0, 0, PM_NOREMOVE));
    }
}

bool WinApp::PumpMessage() {
    if (!::GetMessageW(&m_msgCur, nullptr, 0, 0)) {
        m_nExitCode = static_cast<int>(m_msgCur.wParam);
        return false;
    }
    if (m_msgCur.message == WM_KICKIDLE) return true;
    if (!PreTranslateMessage(m_msgCur)) {
        ::TranslateMessage(&m_msgCur);
        ::DispatchMessageW(&m_msgCur);
    }
    return true;
}

bool WinApp::PreTranslateMessage(MSG& msg) {
    // A modal dialog takes the messages of its own windows first: its keys and help.
    if (Dialog::PreTranslateForModal(msg)) return true;
    // From the window the message is for up to the main window: the innermost
    // of our windows that wants it takes it (a view before its frame).
    HWND stop = m_pMainWnd ? m_pMainWnd->Handle() : nullptr;
    for (HWND hwnd = msg.hwnd; hwnd; hwnd = ::GetParent(hwnd)) {
        if (WindowImpl* window = WindowImpl::FromHandle(hwnd); window && window->PreTranslateMessage(msg))
            return true;
        if (hwnd == stop) break;
    }
    return false;
}

bool WinApp::OnIdle(long count) {
    if (count <= 0) {
        if (m_pMainWnd && *m_pMainWnd) m_pMainWnd->Send(WM_IDLEUPDATECMDUI, TRUE);
        return true;
    }
    return false;
}

void WinApp::AddDocTemplate(std::unique_ptr<DocTemplate> t) { m_templates.push_back(std::move(t)); }

void WinApp::OnFileNew() {
    if (!m_templates.empty()) m_templates.front()->OpenDocumentFile(nullptr, m_nCmdShow != SW_HIDE);
}

Document* WinApp::OpenDocumentFile(const wchar_t* path) {
    return m_templates.empty() ? nullptr
                               : m_templates.front()->OpenDocumentFile(path, m_nCmdShow != SW_HIDE);
}

bool WinApp::OnCmdMsg(UINT id, CmdUI* ui) {
    if (id != ID_FILE_NEW) return false;
    if (ui) {
        ui->Enable(true);
        return true;
    }
    OnFileNew();
    return true;
}

int RunApplication(int showCommand) {
    WinApp* app = WinApp::Current();
    if (!app) return -1;
    ComApartment apartment;
    // The list, header and bar controls of common controls 6 (the manifest asks for them).
    INITCOMMONCONTROLSEX icc{sizeof icc, ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES | ICC_STANDARD_CLASSES};
    ::InitCommonControlsEx(&icc);
    app->m_nCmdShow = showCommand;
    try {
        if (!app->InitInstance()) return app->ExitInstance();
        return app->Run();
    } catch (...) {
        // The application reports its own failures; one that escaped it still
        // ends the program in order rather than through the runtime's abort.
        return -1;
    }
}

}  // namespace fw
