// Launch use: the launch requests that watch started programs come up, and the
// launch command (32781) that the command line's launch and Node Manager
// options end in.
#include <cwchar>
#include <memory>

#include "app/KYjlpApp.h"
#include "app/KYjlpCmdLineInfo.h"
#include "app/KYjlpItemLaunchRequest.h"
#include "document/KYjlpDoc.h"
#include "foundation/KYstdPgmStat.h"
#include "framework/FrameWnd.h"
#include "monitor/KYbpm.h"
#include "window/KYjlpViewList.h"

namespace {
constexpr UINT_PTR kLaunchTimer = 1;
constexpr UINT kLaunchTimerMs = 200;
constexpr DWORD kDrainPauseMs = 200;
// A console program has no input idle state: it gets this long, once.
constexpr DWORD kConsolePauseMs = 5000;

struct TextLineDeleter {
    void operator()(LV_TEXTLINE* item) const noexcept { FreeTextLine(item); }
};
using UniqueTextLine = std::unique_ptr<LV_TEXTLINE, TextLineDeleter>;

// Node Manager is not in the catalogue: its record is made from the command line's.
// It keeps a new record's show state, 1 (normal), on purpose: a record of all
// zeroes would have 0 and start Node Manager hidden, out of the user's reach.
void FillNodeManagerItem(LAUNCH_INFO& info, LV_TEXTLINE& item) {
    item.name = info.pszName.release();
    item.fileName = DuplicateText(L"nm.exe");
    item.baseName = DuplicateText(L"nm");
    item.path = info.pszPath.release();
    item.type = info.pszClass.release();
    item.parameters = info.pszArguments.release();
    item.startDir = info.pszDirectory.release();
}

// A program that is no published application, found as the system finds programs.
void FillSearchedItem(const wchar_t* name, LV_TEXTLINE& item) {
    if (IsBlankText(name)) throw 27193;
    wchar_t drive[_MAX_DRIVE] = {}, dir[_MAX_DIR] = {}, fname[_MAX_FNAME] = {}, ext[_MAX_EXT] = {};
    if (_wsplitpath_s(name, drive, _MAX_DRIVE, dir, _MAX_DIR, fname, _MAX_FNAME, ext, _MAX_EXT) != 0)
        throw 27193;
    wchar_t directory[MAX_PATH] = {}, file[256] = {}, found[MAX_PATH] = {};
    _snwprintf(directory, MAX_PATH - 1, L"%s%s", drive, dir);
    _snwprintf(file, 255, L"%s%s", fname, ext);
    DWORD length = SearchPathW(*directory ? directory : nullptr, file, L".exe", MAX_PATH, found, nullptr);
    if (length == 0 || length >= MAX_PATH) throw 27193;
    if (_wsplitpath_s(found, drive, _MAX_DRIVE, dir, _MAX_DIR, nullptr, 0, nullptr, 0) != 0) throw 27193;
    _snwprintf(directory, MAX_PATH - 1, L"%s%s", drive, dir);
    item.name = DuplicateText(found);
    item.path = DuplicateText(found);
    item.startDir = DuplicateText(directory);
    item.showState = SW_SHOWNORMAL;
    if (!item.name || !item.path || !item.startDir) throw 27193;
}

// What the command line says overrides what the catalogue says.
void ApplyCommandLine(LAUNCH_INFO& info, LV_TEXTLINE& item) {
    if (info.pszArguments) {
        std::free(item.parameters);
        item.parameters = info.pszArguments.release();
    }
    if (info.pszDirectory) {
        std::free(item.startDir);
        item.startDir = info.pszDirectory.release();
    }
    switch (info.nWindowState) {
    case 0: item.showState = SW_SHOWNORMAL; break;
    case 1: item.showState = SW_SHOWMINIMIZED; break;
    case 2: item.showState = SW_SHOWMAXIMIZED; break;
    default: break;
    }
}
// The item the command line names: Node Manager's own record, a published
// application found by name, or a program found by search path.
LV_TEXTLINE* PrepareLaunchItem(KYjlpDoc& doc, int command, LAUNCH_INFO& info, UniqueTextLine& own) {
    if (command == KYjlpCmdLineInfo::kLaunchNodeManager) {
        FillNodeManagerItem(info, *own);
        return own.get();
    }
    if (command != KYjlpCmdLineInfo::kLaunchProgram) throw 27075;
    LV_TEXTLINE* item = own.get();
    if (POSITION pos = doc.FindItemByName(info.pszName.get(), nullptr)) {
        item = doc.Items()->GetAt(pos);
        if (!item) throw 27004;
    } else {
        FillSearchedItem(info.pszName.get(), *own);
    }
    ApplyCommandLine(info, *item);
    return item;
}

// Launch use ends when InitInstance returns: this keeps the process until the
// started program is up, or the request gives up on it.
// A pause that still answers messages sent to this thread: a program coming up
// may send to every top-level window, the hidden frame among them, and must not
// stall on a program that only sleeps.
void PauseAnsweringSentMessages(DWORD ms) {
    const DWORD start = GetTickCount();
    for (DWORD elapsed = 0; elapsed < ms; elapsed = GetTickCount() - start) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, ms - elapsed, QS_SENDMESSAGE);
        MSG msg;
        PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
}

void WaitForLaunchedProgram(KYjlpApp& app) {
    int status = KYjlpItemLaunchRequest::kUnchecked;
    while (app.DrainLaunchRequests(KYjlpApp::kLaunchLimitSeconds, &status, nullptr))
        PauseAnsweringSentMessages(kDrainPauseMs);
    switch (status) {
    case KYjlpItemLaunchRequest::kWaitFailed:
        PauseAnsweringSentMessages(kConsolePauseMs);  // a console program: it started, it has no idle
        break;
    case KYjlpItemLaunchRequest::kTimedOut:
        app.SetExitCode(KYjlpApp::kExitNotIdle);
        break;
    case KYjlpItemLaunchRequest::kInvalid:
    case KYjlpItemLaunchRequest::kUnforeseen:
        app.SetExitCode(KYjlpApp::kExitFailed);
        break;
    default:
        break;
    }
}
}  // namespace

// The launch command belongs to the command line's launch use; no menu offers it.
void KYjlpApp::OnUpdateAppLaunch(fw::CmdUI& ui) { ui.Enable(false); }


bool KYjlpApp::AddLaunchRequest(std::unique_ptr<KYjlpItemLaunchRequest>& request) {
    m_nFailure = 0;
    int number = 0;
    try {
        if (!request || !request->IsValid()) throw 27076;
        for (const auto& queued : m_listLaunchRequests)
            if (queued && queued->hProcess.get() == request->hProcess.get()) throw 27077;
        // Used as a stack: the newest start is the one the user waits for.
        m_listLaunchRequests.push_front(std::move(request));
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27078;
    }
    if (number == 0) {
        if (m_bShell && MainWindow()) MainWindow()->SetTimer(kLaunchTimer, kLaunchTimerMs);
        return true;
    }
    const wchar_t* name = request && request->pszName ? request->pszName.get() : L"(NULL)";
    if (m_pMonitor) {
        m_pMonitor->respondToSituation(number, 0, name);
        m_pMonitor->forgetSituation();
    }
    m_nFailure = 0;
    return false;
}

bool KYjlpApp::DrainLaunchRequests(uint32_t limitSeconds, int* status, HANDLE* process) {
    if (status) *status = KYjlpItemLaunchRequest::kUnchecked;
    if (process) *process = nullptr;
    bool starting = false;
    while (!m_listLaunchRequests.empty()) {
        std::unique_ptr<KYjlpItemLaunchRequest>& head = m_listLaunchRequests.front();
        if (!head) {
            m_listLaunchRequests.pop_front();
            continue;
        }
        starting = head->CheckStartup(limitSeconds);
        if (status) *status = head->eStatus;
        if (starting) break;
        if (process) {
            ky::UniqueHandle earlier(*process);  // only the last settled request's handle is given
            *process = head->TakeProcess();
        }
        m_listLaunchRequests.pop_front();
    }
    // No handler: the timer only keeps the idle cycle turning while a start is watched.
    if (m_bShell && MainWindow()) MainWindow()->SetTimer(kLaunchTimer, kLaunchTimerMs);
    return starting;
}

bool KYjlpApp::IsItemStarting(const wchar_t* name) const {
    if (!name || !*name) return false;
    for (const auto& request : m_listLaunchRequests)
        if (request && request->pszName && wcscmp(request->pszName.get(), name) == 0 &&
            request->IsStillStarting(kLaunchLimitSeconds))
            return true;
    return false;
}

void KYjlpApp::OnAppLaunch(UINT id) {
    (void)id;
    if (m_pStatus) m_pStatus->ClearStatus();
    KYjlpViewList* view = nullptr;
    std::wstring name;
    try {
        KYjlpDoc* doc = GetDocument();
        if (!doc) throw 27005;
        view = GetListView(doc);
        if (!view) throw 27011;
        HWND desktop = GetDesktopWindow();
        if (!desktop) throw 27008;
        if (!m_pCmdLine) throw 27038;
        LAUNCH_INFO* info = m_pCmdLine->m_pLaunchInfo.get();
        if (!info) throw 27074;
        if (info->pszName) name = info->pszName.get();
        UniqueTextLine own(new LV_TEXTLINE());
        LV_TEXTLINE* item = PrepareLaunchItem(*doc, m_pCmdLine->m_nShellCommand, *info, own);
        // The command line's launch passes validation by: the list was checked as it was built.
        view->m_bLaunchWithoutUI = true;
        bool cleared = view->m_launchCleared;
        view->m_launchCleared = true;
        INT_PTR code = view->ExecuteItem(desktop, item);
        view->m_launchCleared = cleared;
        if (code <= 32) {
            if (m_pStatus && m_pStatus->Data()) {
                m_pStatus->Data()->AddSituation(27010, KYstdPgmStat_DATA::kAfterLast);
                m_pStatus->Data()->AddDetail(static_cast<uint32_t>(code), KYstdPgmStat_DATA::kAfterLast);
            }
            throw 27010;
        }
        WaitForLaunchedProgram(*this);
    } catch (int n) {
        if (m_pStatus && m_pStatus->Data() && n != 0 && m_pStatus->FirstSituation() != static_cast<uint32_t>(n))
            m_pStatus->Data()->AddSituation(static_cast<uint32_t>(n), KYstdPgmStat_DATA::kAfterLast);
    } catch (...) {
        if (m_pStatus && m_pStatus->Data()) m_pStatus->Data()->AddSituation(27073, KYstdPgmStat_DATA::kAfterLast);
    }
    if (!m_pStatus || m_pStatus->IsClean()) return;
    SetExitCode(m_pStatus->FirstSituation() == 27193 ? kExitNotFound : kExitFailed);
    if (view) view->m_bLaunchWithoutUI = false;
    ReportLaunchFailure(name);
    m_pStatus->ClearStatus();
}

// Launch use has no window to show a failure in: only a name found nowhere is
// told (through the monitor, which logs it); in shell use every failure is shown.
void KYjlpApp::ReportLaunchFailure(const std::wstring& name) {
    int first = static_cast<int>(m_pStatus->FirstSituation());
    if (first != 27193) {
        if (m_bShell) {
            int second = m_pStatus->Data()->SituationCount() > 1 ? static_cast<int>(m_pStatus->Data()->Situation(1)) : 0;
            ReportProblem(first, second, static_cast<uint32_t>(first), nullptr, MB_ICONERROR);
        }
        return;
    }
    if (m_pMonitor) {
        m_pMonitor->respondToSituation(first, 0, name.empty() ? L"NULL" : name.c_str());
        m_pMonitor->forgetSituation();
    }
}
