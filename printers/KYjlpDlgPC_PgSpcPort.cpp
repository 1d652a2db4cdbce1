#include "printers/KYjlpDlgPC_PgSpcPort.h"

#include "dialogs/DialogHelpIds.h"
#include "framework/PropertySheet.h"
#include "monitor/KYbpm.h"
#include "printers/KYjlpPrinterHost.h"
#include "printers/PrinterReport.h"

using namespace printers;

namespace {
constexpr int kPortList = 1024, kPortEdit = 1025, kPortLabel = 1026;
constexpr int kPortsUnreadable = 27677, kLoadGeneral = 27678, kNoPort = 27679, kPortNotListed = 27680;

bool IsLiveWindow(HWND window) { return window && ::IsWindow(window); }

bool HasItems(HWND list) { return IsLiveWindow(list) && ::SendMessageW(list, LB_GETCOUNT, 0, 0) > 0; }

LRESULT FindExact(HWND list, const std::wstring& text) {
    return ::SendMessageW(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str()));
}
}  // namespace

KYjlpDlgPC_PgSpcPort::KYjlpDlgPC_PgSpcPort()
    : KYjlpDlgPC_Pg({.templateId = kTemplateId, .captionId = 24637, .headerTitleId = 24638, .headerSubtitleId = 24639}) {
}

KYjlpDlgPC_PgSpcPort::~KYjlpDlgPC_PgSpcPort() {
    try {
        ResetPage();
    } catch (...) {
        // The engine may be gone first at the end of the program; the list is then abandoned.
    }
}

void KYjlpDlgPC_PgSpcPort::DoDataExchange(fw::DataExchange& dx) {
    dx.ListString(kPortList, m_strCurPort);
    dx.Text(kPortEdit, m_strCurPort);
    if (!dx.Saving() || !m_hwnd) return;
    // What the edit box shows is the port; a text of blanks is none, and then the list's choice counts.
    m_strCurPort = WindowText(PortEdit());
    if (IsBlankText(m_strCurPort)) m_strCurPort.clear();
    if (!m_strCurPort.empty() || !m_pPorts) return;
    HWND list = PortList();
    const LRESULT selected = list ? ::SendMessageW(list, LB_GETCURSEL, 0, 0) : LB_ERR;
    if (selected < 0) return;
    m_strCurPort = ListItemText(list, static_cast<int>(selected));
    ShowInEdit(PortEdit(), m_strCurPort);
}

bool KYjlpDlgPC_PgSpcPort::CommitToRecord(bool commit) {
    m_bCommitted = commit;
    KYjlpPrinterCfg* engine = CurrentPrinterEngine();
    if (!engine) return false;
    engine->m_info.pszPortName = commit && !m_strCurPort.empty() ? m_strCurPort.data() : nullptr;
    return true;
}

bool KYjlpDlgPC_PgSpcPort::IsPageModified() { return m_strCurPort != m_strPort; }

DWORD KYjlpDlgPC_PgSpcPort::GetControlHelpId(UINT id) {
    if (g_bPrinterWizard) return 0;
    switch (static_cast<int>(id)) {
    case kPortList:
    case kPortEdit:
        return lphelp::ForControl(id);
    case kPortLabel:
        return lphelp::ForControl(kPortEdit);
    default:
        return KYjlpDlgPC_Pg::GetControlHelpId(id);
    }
}

// The list can be used only when the print monitor gave one.
bool KYjlpDlgPC_PgSpcPort::EnableControl(UINT id, HWND window) {
    if (!window) window = Item(static_cast<int>(id));
    if (!IsLiveWindow(window)) return false;
    const bool enabled = static_cast<int>(id) != kPortList || m_pPorts != nullptr;
    ::EnableWindow(window, enabled ? TRUE : FALSE);
    return true;
}

int32_t KYjlpDlgPC_PgSpcPort::LoadFromRecord(const CLIENT_PRINTER_INFO* record) {
    try {
        ResetPage();
        KYjlpPrinterCfg& engine = BoundEngine();
        if (record && record->pszPortName) m_strPort = record->pszPortName;
        ReadPorts(engine);
        if (m_pPorts) TakeListedPort();
        if (!m_strPort.empty()) m_strCurPort = m_strPort;
        CommitToRecord(true);
        return 0;
    } catch (int number) {
        RecordIfNormal(number);
    } catch (...) {
        RecordUnexpected(kLoadGeneral);
    }
    if (SituationId() == kUnbound) AddSourceTail();
    RespondOrForget();
    ResetPage();
    return 1;
}

// A port list that cannot be read is told, and the page goes on without it:
// the user can still type a port or a network printer.
void KYjlpDlgPC_PgSpcPort::ReadPorts(KYjlpPrinterCfg& engine) {
    const auto enumeratePorts = engine.Export<kypm::EnumeratePortsFn>(KYjlpPrinterCfg::kEnumeratePorts);
    if (!enumeratePorts) ThrowUnbound(__LINE__);
    int32_t result = 0;
    bool thrown = false;
    ::SetLastError(0);
    try {
        result = enumeratePorts(&m_pPorts);
    } catch (...) {
        thrown = true;
    }
    const DWORD error = ::GetLastError();
    if (result == 0 && !thrown) return;
    if (KYbpm* monitor = Monitor();
        monitor && !monitor->respondToSituation(kPortsUnreadable, 0, FormatResult(result), CodeLink(error)))
        monitor->forgetSituation();
    ::SetLastError(0);
    if (m_pPorts && !ReleaseTextList(&m_pPorts)) m_pPorts = nullptr;
}

void KYjlpDlgPC_PgSpcPort::TakeListedPort() {
    int count = 0, index = -1;
    DRIVER_LIST_ENTRY* entry = nullptr;
    // A list that prunes to nothing has been told of; the page still opens.
    (void)PruneTextList(&m_pPorts, count, m_strPort, index, entry);
    if (m_strPort.empty() && m_pPorts && entry && entry->pszText) m_strPort = entry->pszText;
}

bool KYjlpDlgPC_PgSpcPort::ResetPage() {
    CommitToRecord(false);
    m_strCurPort.clear();
    m_strPort.clear();
    m_strAddedPort.clear();
    if (m_hwnd) {
        if (IsLiveWindow(PortEdit())) ShowInEdit(PortEdit(), std::wstring());
        if (HWND list = PortList(); HasItems(list)) ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
    }
    return ReleaseTextList(&m_pPorts);
}

bool KYjlpDlgPC_PgSpcPort::FillPageControls() {
    HWND list = PortList(), edit = PortEdit();
    if (!IsLiveWindow(list) || !IsLiveWindow(edit)) return false;
    if (m_pPorts) {
        if (!::IsWindowVisible(list)) ::ShowWindow(list, SW_SHOW);
        EnableControl(kPortList, nullptr);
        if (HasItems(list)) ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
        for (const DRIVER_LIST_ENTRY* entry = m_pPorts; entry; entry = entry->pNext)
            if (entry->pszText) ::SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry->pszText));
        if (HasItems(list) && !m_strPort.empty()) {
            const LRESULT index = FindExact(list, m_strPort);
            if (index >= 0) ::SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
        }
    } else {
        ::ShowWindow(list, SW_HIDE);
    }
    ShowInEdit(PortEdit(), m_strPort);
    return true;
}

bool KYjlpDlgPC_PgSpcPort::OnInitDialog() {
    const bool focusToFirst = KYjlpDlgPC_Pg::OnInitDialog();
    if (!FillPageControls())
        if (fw::PropertySheet* sheet = Sheet()) sheet->EndDialog(-1);
    return focusToFirst;
}

bool KYjlpDlgPC_PgSpcPort::OnKillActive() {
    OnPageContentChange();
    const bool goingBack = g_bPrinterWizard && m_bGoingBack;
    bool asked = false;
    bool accepted = !m_strCurPort.empty() && (!m_pPorts || IsKnownPort());
    // Back never asks: the entry stays in the page for the next visit.
    if (!accepted && !m_strCurPort.empty() && !goingBack) {
        asked = true;
        accepted = ShowPageMessage(kPortNotListed, L"Your entry is not in the list. Do you want to add it?",
                                   m_strCurPort.c_str(), MB_YESNO) == IDYES;
        if (accepted) m_strAddedPort = m_strCurPort;
    }
    if (accepted) CommitToRecord(true);
    if (!accepted && !goingBack) {
        if (!asked) ShowPageMessage(kNoPort, L"You need to specify a port or a network printer.", nullptr, MB_OK);
        FocusWholeText(PortEdit());
    }
    m_bGoingBack = false;
    return goingBack || accepted;
}

bool KYjlpDlgPC_PgSpcPort::IsKnownPort() const {
    HWND list = PortList();
    if (IsLiveWindow(list) && FindExact(list, m_strCurPort) >= 0) return true;
    return m_strCurPort == m_strAddedPort;
}

bool KYjlpDlgPC_PgSpcPort::PreTranslateMessage(MSG& msg) {
    HWND edit = PortEdit();
    if (msg.message == WM_KEYDOWN && edit && msg.hwnd == edit)
        return OnEditKey(static_cast<UINT>(msg.wParam), edit, PortList());
    return KYjlpDlgPC_Pg::PreTranslateMessage(msg);
}

bool KYjlpDlgPC_PgSpcPort::OnCommand(UINT id, UINT code, HWND control) {
    const int controlId = static_cast<int>(id);
    if (controlId == kPortList && code == LBN_SELCHANGE) {
        OnListSelChange();
        return true;
    }
    if (controlId == kPortList && code == LBN_DBLCLK) {
        OnListActivate();
        return true;
    }
    if (controlId == kPortEdit && code == EN_CHANGE) {
        OnEditChanged();
        return true;
    }
    if (controlId == kPortEdit && code == EN_KILLFOCUS) {
        OnPageContentChange();
        return true;
    }
    return KYjlpDlgPC_Pg::OnCommand(id, code, control);
}

// Enter or Space in the list takes the port and moves on; Left or Up on the
// first port brings the user back to typing.
bool KYjlpDlgPC_PgSpcPort::OnDialogMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) {
    HWND list = PortList();
    if (msg == WM_VKEYTOITEM && list && reinterpret_cast<HWND>(l) == list) {
        const UINT key = LOWORD(w);
        if (key == VK_RETURN || key == VK_SPACE) {
            OnListActivate();
            result = -2;
            return true;
        }
        if ((key == VK_LEFT || key == VK_UP) && OnListKeyBack(key, list, PortEdit())) {
            result = -2;
            return true;
        }
    }
    return KYjlpDlgPC_Pg::OnDialogMessage(msg, w, l, result);
}

void KYjlpDlgPC_PgSpcPort::OnEditChanged() { AutoCompleteEdit(PortEdit(), PortList()); }

void KYjlpDlgPC_PgSpcPort::OnListSelChange() {
    CopySelectionToEdit(PortList(), PortEdit());
    OnPageContentChange();
}

void KYjlpDlgPC_PgSpcPort::OnListActivate() {
    CopySelectionToEdit(PortList(), PortEdit());
    ActivateForward();
}

