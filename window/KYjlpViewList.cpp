#include "window/KYjlpViewList.h"

#include <shlobj.h>

#include <cwctype>
#include <memory>

#include "app/KYjlpApp.h"
#include "app/KYjlpItemLaunchRequest.h"
#include "document/KYjlpDoc.h"
#include "document/SituationReport.h"
#include "framework/FrameWnd.h"
#include "framework/ResourceModule.h"
#include "window/KYjlpFrameMain.h"

namespace {
const wchar_t kSourceName[] = L"KYjlpViewList";
constexpr ULONG kExecuteMask = SEE_MASK_INVOKEIDLIST | SEE_MASK_NOCLOSEPROCESS | SEE_MASK_DOENVSUBST;  // 588

struct IdListDeleter {
    void operator()(ITEMIDLIST* list) const noexcept { ILFree(list); }
};
using UniqueIdList = std::unique_ptr<ITEMIDLIST, IdListDeleter>;

// The shell's item of the path: asking for the item's own verbs needs it.
UniqueIdList ParseItem(const wchar_t* path) {
    wchar_t expanded[MAX_PATH * 2] = {};
    DWORD length = ExpandEnvironmentStringsW(path, expanded, MAX_PATH * 2);
    PIDLIST_ABSOLUTE list = nullptr;
    if (length == 0 || length > MAX_PATH * 2 ||
        FAILED(SHParseDisplayName(expanded, nullptr, &list, 0, nullptr)))
        return nullptr;
    return UniqueIdList(list);
}

bool IsCabinet(const wchar_t* path) {
    wchar_t extension[256] = {};
    if (!path || _wsplitpath_s(path, nullptr, 0, nullptr, 0, nullptr, 0, extension, 256) != 0) return false;
    _wcsupr_s(extension, 256);
    return wcscmp(extension, L".CAB") == 0;
}
}  // namespace

std::wstring KYjlpViewList::LaunchHint() const {
    KYjlpApp* app = TheApp();
    if (!app || !app->m_bStandalone) return fw::ResString(24652);
    std::wstring format = fw::ResString(24653);
    wchar_t text[1024] = {};
    int count = app->m_pMonitor ? app->m_pMonitor->getSituationsCount() : 0;
    if (_snwprintf(text, 1023, format.c_str(), count) < 0) return format;
    return text;
}

// The wait cursor while the shell works, and the message of messageId (with the
// name) on the status bar's first pane.
void KYjlpViewList::ShowBusy(UINT messageId, const std::wstring& name) {
    SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    KYjlpApp* app = TheApp();
    auto* frame = app ? dynamic_cast<KYjlpFrameMain*>(app->MainWindow()) : nullptr;
    if (!frame) return;
    wchar_t text[512] = {};
    _snwprintf(text, 511, fw::ResString(messageId).c_str(), name.c_str());
    frame->SetBusyText(text);
}

// The next WM_SETCURSOR puts the cursor back; the first pane shows the count again.
void KYjlpViewList::EndBusy() {
    KYjlpApp* app = TheApp();
    if (auto* frame = app ? dynamic_cast<KYjlpFrameMain*>(app->MainWindow()) : nullptr) frame->EndBusyText();
}

bool KYjlpViewList::LaunchItem(LV_TEXTLINE* item, int index, POSITION pos) {
    (void)pos;
    lpreport::Forget();
    SetLastError(0);
    m_launchCleared = false;
    std::wstring shown;
    if (item && item->name) {
        const wchar_t* p = item->name;
        while (*p && std::iswspace(*p)) ++p;
        shown = p;
    }
    if (shown.empty()) shown = L"#" + std::to_wstring(index);
    // A double-click repeated or Enter held while the program still comes up
    // starts no second copy: the user is told it is starting.
    if (KYjlpApp* app = TheApp(); app && item && app->IsItemStarting(item->name)) {
        ShowBusy(24598, shown);  // the text stands until the program is up
        lpreport::Tell(27542, shown);
        return false;
    }
    int number = 0;
    INT_PTR code = 0;
    DWORD error = 0;
    bool started = false;
    try {
        HWND frame = nullptr;
        if (ValidateItemForLaunch(item, shown, &frame)) {
            ShowBusy(24598, shown);
            code = ExecuteItem(frame, item);
            if (code <= 32) throw 27760;
            started = true;
        } else {
            lpreport::Record(27755);
            lpreport::Arg(shown, 0);
            lpreport::Arg(LaunchHint(), 1);
            lpreport::RespondAndForget();
        }
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27754;
        error = GetLastError();
    }
    EndBusy();
    if (number) {
        lpreport::RecordFirst(number);
        lpreport::Arg(shown, 0);
        lpreport::Arg(LaunchHint(), 1);
        lpreport::Arg(number == 27760 ? lpreport::CodeText(static_cast<uint32_t>(code), 24646)
                                      : lpreport::CodeText(error), 2);
        lpreport::RespondAndForget();
    }
    return started;
}

bool KYjlpViewList::ValidateItemForLaunch(LV_TEXTLINE* item, const std::wstring& shownName, HWND* frameOut) {
    m_launchCleared = false;
    if (frameOut) *frameOut = nullptr;
    ShowBusy(24599, shownName.empty() ? L" " : shownName);
    int number = 0;
    DWORD error = 0;
    try {
        if (!item) throw 27761;
        if (IsBlankText(item->path)) throw 27759;
        HWND parent = m_hwnd ? GetParent(m_hwnd) : nullptr;
        if (!parent) throw 27758;
        if (!IsWindow(parent)) throw 27757;
        if (frameOut) *frameOut = parent;
        auto* doc = dynamic_cast<KYjlpDoc*>(GetDocument());
        if (!doc) throw 27220;
        if (KYjlpApp* app = TheApp()) app->m_nItemFillMask = kCheckBinary | kCheckStartDir;
        m_launchCleared = doc->ValidateTargetQuiet(item->path, &item->startDir);
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27762;
        error = GetLastError();
    }
    EndBusy();
    if (number == 27220) {
        lpreport::Record(27220);
        lpreport::Arg(static_cast<int32_t>(__LINE__));
        lpreport::Arg(kSourceName);
        lpreport::Arg(__DATE__);
        lpreport::RespondAndForget();
        number = 27763;
    }
    if (number) {
        lpreport::RecordFirst(number);
        lpreport::Arg(shownName, 0);
        lpreport::Arg(LaunchHint(), 1);
        if (number == 27762) lpreport::Arg(lpreport::CodeText(error), 2);
        lpreport::RespondAndForget();
    }
    return m_launchCleared;
}

INT_PTR KYjlpViewList::ExecuteItem(HWND owner, LV_TEXTLINE* item) {
    KYjlpApp* app = TheApp();
    const wchar_t* name = lpreport::Shown(item ? item->name : nullptr);
    if (!m_launchCleared || !item) {
        lpreport::Tell(27536, name);
        return 1;
    }
    // The first launch of a session also brings the client printers, once.
    if (app && !app->m_bStandalone && !app->m_bPrintersAttempted && !app->m_bPrintersActive)
        app->AcquireClientPrinters(false);
    bool cabinet = IsCabinet(item->path);
    UniqueIdList idList = ParseItem(item->path);
    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = kExecuteMask | (cabinet ? SEE_MASK_FLAG_NO_UI : 0) |
                 ((app && !app->m_bShell) || m_bLaunchWithoutUI ? SEE_MASK_FLAG_DDEWAIT : 0);
    info.hwnd = owner;
    info.lpFile = item->path;
    info.lpParameters = item->parameters;
    info.lpDirectory = item->startDir;
    info.nShow = item->showState;
    info.lpIDList = idList.get();
    INT_PTR code = 0;
    DWORD error = 0;
    try {
        // Only a refusal leaves an error that is the shell's answer: what stood
        // before the call, or stands after a start, says nothing about this one.
        SetLastError(0);
        if (!CallShell(info)) error = GetLastError();
    } catch (...) {
        code = 1;
        error = GetLastError();
    }
    if (code == 0) {
        // A cabinet the shell opens by itself reports "not found" and yet opened.
        code = cabinet && error == ERROR_FILE_NOT_FOUND ? 42 : reinterpret_cast<INT_PTR>(info.hInstApp);
    }
    if (code <= 32) {
        lpreport::Tell(27535, name, lpreport::CodeText(static_cast<uint32_t>(code), 24646), lpreport::CodeText(error));
        // Not a Windows program: told once here, not again by the caller.
        if (error == ERROR_BAD_EXE_FORMAT) code = ERROR_BAD_EXE_FORMAT;
    } else if (info.hProcess) {
        QueueLaunchRequest(item->name, info.hProcess);
    }
    m_launchCleared = false;
    return code;
}

BOOL KYjlpViewList::CallShell(SHELLEXECUTEINFOW& info) { return ShellExecuteExW(&info); }

// The started program is watched, not waited for: the launch requests see it come up.
void KYjlpViewList::QueueLaunchRequest(const wchar_t* name, HANDLE process) {
    ky::UniqueHandle guard(process);
    std::unique_ptr<KYjlpItemLaunchRequest> request;
    try {
        request = std::make_unique<KYjlpItemLaunchRequest>(name, guard.get());
        guard.release();
    } catch (...) {
        return;  // told by the request; the handle closes with guard
    }
    if (KYjlpApp* app = TheApp()) app->AddLaunchRequest(request);
}
