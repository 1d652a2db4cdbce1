#include "printers/KYjlpDlgPC_PgSpcName.h"

#include "dialogs/DialogHelpIds.h"
#include "monitor/KYbpm.h"
#include "printers/KYjlpDlgPC_Sht.h"
#include "printers/KYjlpPrinterHost.h"
#include "printers/PrinterReport.h"

using namespace printers;

namespace {
constexpr int kNameList = 1016, kNameEdit = 1017, kNameLabel = 1018, kWizardText = 1019, kDeleteButton = 1020,
              kTestButton = 1021, kPreferencesButton = 1022, kDefaultCheck = 1023;
constexpr int kDeleteFailed = 27603, kWizardOnly = 27613, kKeepGeneral = 27616, kDeleteGeneral = 27661,
              kDeleteRefused = 27662, kPrinterDeleted = 27663, kDeleteQuestion = 27664, kQuestionNotShown = 27665,
              kClientListFailed = 27666, kPreferencesGeneral = 27667, kLoadGeneral = 27668,
              kNothingLeftToAdd = 27669, kBlankName = 27670, kNamesNotBinding = 27671, kClientOffersNone = 27672,
              kTestGeneral = 27673, kNoNameDialog = 27674, kNoNameWizard = 27675, kNameNotListed = 27676,
              kPreferencesFailed = 27683, kTestFailed = 27687;

bool IsLiveWindow(HWND window) { return window && ::IsWindow(window); }

bool IsReadOnly(HWND edit) { return edit && (::GetWindowLongPtrW(edit, GWL_STYLE) & ES_READONLY) != 0; }

bool HasItems(HWND list) { return IsLiveWindow(list) && ::SendMessageW(list, LB_GETCOUNT, 0, 0) > 0; }

LRESULT FindExact(HWND list, const std::wstring& text) {
    return ::SendMessageW(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str()));
}

std::wstring NameOrBlank(const std::wstring& name) { return name.empty() ? std::wstring(L"BLANK") : name; }

void Respond(int number) {
    if (KYbpm* monitor = Monitor(); monitor && !monitor->respondToSituation(number, 0)) monitor->forgetSituation();
}
}  // namespace

KYjlpDlgPC_PgSpcName::KYjlpDlgPC_PgSpcName()
    : KYjlpDlgPC_Pg({.templateId = kTemplateId, .captionId = 24634, .headerTitleId = 24635, .headerSubtitleId = 24636}) {
}

KYjlpDlgPC_PgSpcName::~KYjlpDlgPC_PgSpcName() {
    try {
        ResetPage();
    } catch (...) {
        // The engine may be gone first at the end of the program; the names are then abandoned.
    }
}

void KYjlpDlgPC_PgSpcName::DoDataExchange(fw::DataExchange& dx) {
    dx.ListString(kNameList, m_strCurName);
    dx.Text(kNameEdit, m_strCurName);
    dx.Check(kDefaultCheck, m_bCurDefault);
    if (!dx.Saving() || !g_bPrinterWizard || !m_hwnd) return;
    // A name of blanks is none; a name with text is kept exactly as typed.
    m_strCurName = WindowText(NameEdit());
    if (IsBlankText(m_strCurName)) m_strCurName.clear();
    if (!m_strCurName.empty() || !m_pNames) return;
    HWND list = NameList();
    const LRESULT selected = list ? ::SendMessageW(list, LB_GETCURSEL, 0, 0) : LB_ERR;
    if (selected < 0) return;
    m_strCurName = ListItemText(list, static_cast<int>(selected));
    ShowInEdit(NameEdit(), m_strCurName);
}

bool KYjlpDlgPC_PgSpcName::CommitToRecord(bool commit) {
    m_bCommitted = commit;
    KYjlpPrinterCfg* engine = CurrentPrinterEngine();
    if (!engine) return false;
    engine->m_info.pszPrinterName = commit && !m_strCurName.empty() ? m_strCurName.data() : nullptr;
    engine->m_info.bDefault = commit && m_bCurDefault == 1 ? 1 : 0;
    return true;
}

// A dialog's name cannot change, so there only the check box counts.
bool KYjlpDlgPC_PgSpcName::IsPageModified() {
    return g_bPrinterWizard ? m_strCurName != m_strName : m_bCurDefault != m_bStartDefault;
}

DWORD KYjlpDlgPC_PgSpcName::GetControlHelpId(UINT id) {
    if (g_bPrinterWizard) return 0;
    switch (static_cast<int>(id)) {
    case kNameList:
    case kNameEdit:
    case kDeleteButton:
    case kTestButton:
    case kPreferencesButton:
    case kDefaultCheck:
        return lphelp::ForControl(id);
    case kNameLabel:
        return lphelp::ForControl(kNameEdit);
    case kWizardText:
        return 0;
    default:
        return KYjlpDlgPC_Pg::GetControlHelpId(id);
    }
}

// The buttons act on the installed printer, so they work only in the dialog and
// while the page still shows that printer's name.
bool KYjlpDlgPC_PgSpcName::EnableControl(UINT id, HWND window) {
    if (!window) window = Item(static_cast<int>(id));
    if (!IsLiveWindow(window)) return false;
    bool enabled = true;
    switch (static_cast<int>(id)) {
    case kNameList:
        enabled = g_bPrinterWizard;
        break;
    case kNameEdit:
        enabled = !IsReadOnly(window);
        break;
    case kDeleteButton:
    case kTestButton:
    case kPreferencesButton:
        enabled = !g_bPrinterWizard && m_strName == m_strCurName;
        break;
    case kDefaultCheck:
        enabled = !m_bDefaultLocked;
        break;
    default:
        break;
    }
    ::EnableWindow(window, enabled ? TRUE : FALSE);
    return true;
}

int32_t KYjlpDlgPC_PgSpcName::LoadFromRecord(const CLIENT_PRINTER_INFO* record) {
    int number = 0;
    try {
        ResetPage();
        KYjlpPrinterCfg& engine = BoundEngine();
        m_bStartDefault = 0;
        if (record)
            LoadEditedPrinter(engine, *record);
        else
            LoadClientNames(engine);
        m_bCurDefault = m_bStartDefault;
        m_strCurName = m_strName;
        CommitToRecord(true);
        return 0;
    } catch (int thrown) {
        number = thrown;
        RecordIfNormal(thrown);
    } catch (...) {
        RecordUnexpected(kLoadGeneral);
    }
    if (SituationId() == kUnbound) AddSourceTail();
    RespondOrForget();
    ResetPage();
    // These two have told the user all there is: the sheet stops without a second report.
    return number == kNothingLeftToAdd || number == kClientOffersNone ? -1 : 1;
}

// The only printer, and the default one, stay the default: the box is fixed.
void KYjlpDlgPC_PgSpcName::LoadEditedPrinter(const KYjlpPrinterCfg& engine, const CLIENT_PRINTER_INFO& record) {
    if (record.bDefault == 1 || engine.PrinterCount() == 1) {
        m_bStartDefault = 1;
        m_bDefaultLocked = true;
    }
    if (record.pszPrinterName) m_strName = record.pszPrinterName;
    if (m_strName.empty()) throw kBlankName;
}

void KYjlpDlgPC_PgSpcName::LoadClientNames(KYjlpPrinterCfg& engine) {
    const int installed = engine.PrinterCount();
    // The first printer becomes the default whatever the user ticks.
    if (installed == 0) {
        m_bStartDefault = 1;
        m_bDefaultLocked = true;
    }
    const auto getPrinterList = engine.Export<kypm::GetPrinterListFn>(KYjlpPrinterCfg::kGetPrinterList);
    if (!getPrinterList) ThrowUnbound(__LINE__);
    int32_t onlyThese = 0, result = 0;
    bool thrown = false;
    ::SetLastError(0);
    try {
        result = getPrinterList(&m_pNames, &onlyThese);
    } catch (...) {
        thrown = true;
    }
    const DWORD error = ::GetLastError();
    if (result != 0 || thrown) {
        if (IsNormal()) {
            RecordIfNormal(kClientListFailed);
            AddArgument(FormatResult(result));
            AddArgument(CodeLink(error));
        }
        throw kClientListFailed;
    }
    int count = 0;
    if (m_pNames && !KeepUninstalledNames(&m_pNames, count)) throw 0;
    if (count > 0 && onlyThese) {
        if (m_pNames->pszText) m_strName = m_pNames->pszText;
        if (m_strName.empty()) throw kBlankName;
        m_bNoPortPage = true;
    } else if (count > 0) {
        // The client's names are only a suggestion here: the user types the name.
        ReleaseTextList(&m_pNames);
        m_pNames = nullptr;
        Respond(kNamesNotBinding);
    } else if (onlyThese) {
        throw installed > 0 ? kNothingLeftToAdd : kClientOffersNone;
    }
}

bool KYjlpDlgPC_PgSpcName::KeepUninstalledNames(DRIVER_LIST_ENTRY** head, int& count) {
    count = 0;
    try {
        const KYjlpPrinterCfg& engine = BoundEngine();
        DRIVER_LIST_ENTRY *kept = nullptr, *dropped = nullptr;
        DRIVER_LIST_ENTRY **keptEnd = &kept, **droppedEnd = &dropped;
        DRIVER_LIST_ENTRY* next = nullptr;
        for (DRIVER_LIST_ENTRY* node = head ? *head : nullptr; node; node = next) {
            next = node->pNext;
            node->pNext = nullptr;
            const bool keep = node->pszText && *node->pszText && engine.FindPrinterByName(node->pszText, 0, false) < 0;
            DRIVER_LIST_ENTRY**& end = keep ? keptEnd : droppedEnd;
            *end = node;
            end = &node->pNext;
            if (keep) ++count;
        }
        if (head) *head = kept;
        // A list that cannot be given back is told of there, and abandoned; the names kept stand.
        ReleaseTextList(&dropped);
        return true;
    } catch (int number) {
        RecordIfNormal(number);
    } catch (...) {
        RecordUnexpected(kKeepGeneral);
    }
    count = 0;
    return false;
}

bool KYjlpDlgPC_PgSpcName::ResetPage() {
    CommitToRecord(false);
    m_strCurName.clear();
    m_strName.clear();
    m_strAddedName.clear();
    m_bNoPortPage = false;
    m_bDefaultLocked = false;
    if (m_hwnd) {
        if (IsLiveWindow(NameEdit())) ShowInEdit(NameEdit(), std::wstring());
        if (HWND list = NameList(); HasItems(list)) ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
    }
    return ReleaseTextList(&m_pNames);
}

bool KYjlpDlgPC_PgSpcName::OnInitDialog() {
    bool focusToFirst = KYjlpDlgPC_Pg::OnInitDialog();
    HWND edit = NameEdit(), list = NameList();
    if (g_bPrinterWizard) {
        // With the client's names only the list can choose.
        if (m_pNames)
            ::SendMessageW(edit, EM_SETREADONLY, TRUE, 0);
        else
            ::ShowWindow(list, SW_HIDE);
        for (int id : {kDeleteButton, kTestButton, kPreferencesButton}) ::ShowWindow(Item(id), SW_HIDE);
    } else {
        ::ShowWindow(Item(kWizardText), SW_HIDE);
        ::ShowWindow(list, SW_HIDE);
        ::SendMessageW(edit, EM_SETREADONLY, TRUE, 0);
        FocusDialogControl();
        focusToFirst = false;
    }
    if (!FillPageControls())
        if (fw::PropertySheet* sheet = Sheet()) sheet->EndDialog(-1);
    return focusToFirst;
}

bool KYjlpDlgPC_PgSpcName::OnSetActive() {
    if (!KYjlpDlgPC_Pg::OnSetActive()) return false;
    if (g_bPrinterWizard) {
        HWND edit = NameEdit();
        if (IsLiveWindow(edit) && !IsReadOnly(edit)) return true;
        ::SetFocus(NameList());
    } else {
        FocusDialogControl();
    }
    EnablePageControls();
    return true;
}

// The sheet gives the focus to the page's first control after the page's own
// activation; the page's choice is posted so that it comes last and stands.
void KYjlpDlgPC_PgSpcName::FocusDialogControl() {
    HWND control = Item(m_bDefaultLocked ? kPreferencesButton : kDefaultCheck);
    ::SetFocus(control);
    if (m_hwnd && control) ::PostMessageW(m_hwnd, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}

bool KYjlpDlgPC_PgSpcName::FillPageControls() {
    HWND edit = NameEdit(), check = Item(kDefaultCheck), list = NameList();
    if (!IsLiveWindow(edit) || !IsLiveWindow(check) || (g_bPrinterWizard && !IsLiveWindow(list))) return false;
    ShowInEdit(NameEdit(), m_strCurName);
    if (g_bPrinterWizard && m_pNames) {
        ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
        for (const DRIVER_LIST_ENTRY* entry = m_pNames; entry; entry = entry->pNext)
            if (entry->pszText) ::SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry->pszText));
        if (HasItems(list) && !m_strName.empty()) {
            LRESULT index = FindExact(list, m_strName);
            if (index < 0) {
                m_strName = ListItemText(list, 0);
                m_strCurName = m_strName;
                index = 0;
            }
            ::SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
        }
    }
    ::SendMessageW(check, BM_SETCHECK, static_cast<WPARAM>(m_bCurDefault), 0);
    return true;
}

bool KYjlpDlgPC_PgSpcName::OnKillActive() {
    OnPageContentChange();
    const bool goingBack = g_bPrinterWizard && m_bGoingBack;
    bool asked = false;
    bool accepted = !m_strCurName.empty();
    if (accepted && g_bPrinterWizard && m_pNames && !IsOfferedName()) {
        accepted = false;
        // Back never asks: the entry stays in the page for the next visit.
        if (!goingBack) {
            asked = true;
            accepted = ShowPageMessage(kNameNotListed, L"Your entry is not in the list. Do you want to add it?",
                                       m_strCurName.c_str(), MB_YESNO) == IDYES;
            if (accepted) m_strAddedName = m_strCurName;
        }
    }
    if (accepted) CommitToRecord(true);
    if (!accepted && !goingBack) TellNoName(asked);
    m_bGoingBack = false;
    return goingBack || accepted;
}

bool KYjlpDlgPC_PgSpcName::IsOfferedName() const {
    HWND list = NameList();
    if (IsLiveWindow(list) && !::IsWindowVisible(list)) return true;
    if (IsLiveWindow(list) && FindExact(list, m_strCurName) >= 0) return true;
    return m_strCurName == m_strAddedName;
}

void KYjlpDlgPC_PgSpcName::TellNoName(bool asked) {
    if (!asked) {
        if (g_bPrinterWizard)
            ShowPageMessage(kNoNameWizard, L"You need to specify a client printer name.", nullptr, MB_OK);
        else
            ShowPageMessage(kNoNameDialog,
                            L"This dialog does not know the name of the client printer.\n\n"
                            L"Close it and open it again.",
                            nullptr, MB_OK);
    }
    if (HWND edit = NameEdit(); g_bPrinterWizard && edit && !IsReadOnly(edit)) FocusWholeText(edit);
}

bool KYjlpDlgPC_PgSpcName::PreTranslateMessage(MSG& msg) {
    HWND edit = NameEdit();
    if (msg.message == WM_KEYDOWN && edit && msg.hwnd == edit)
        return OnEditKey(static_cast<UINT>(msg.wParam), edit, NameList());
    return KYjlpDlgPC_Pg::PreTranslateMessage(msg);
}

bool KYjlpDlgPC_PgSpcName::OnCommand(UINT id, UINT code, HWND control) {
    const int controlId = static_cast<int>(id);
    if (controlId == kNameList && (code == LBN_SELCHANGE || code == LBN_DBLCLK)) {
        if (code == LBN_SELCHANGE)
            OnListSelChange();
        else
            OnListActivate();
        return true;
    }
    if (controlId == kNameEdit && (code == EN_CHANGE || code == EN_KILLFOCUS)) {
        if (code == EN_CHANGE)
            OnEditChanged();
        else
            OnPageContentChange();
        return true;
    }
    if (code != BN_CLICKED) return KYjlpDlgPC_Pg::OnCommand(id, code, control);
    switch (controlId) {
    case kDeleteButton:
        OnDeletePrinter();
        return true;
    case kTestButton:
        OnPrintTest();
        return true;
    case kPreferencesButton:
        OnPreferences();
        return true;
    case kDefaultCheck:
        OnPageContentChange();
        return true;
    default:
        return KYjlpDlgPC_Pg::OnCommand(id, code, control);
    }
}

// In the wizard, Enter or Space in the list takes the name and moves on; Left or
// Up on the first name brings the user back to typing, when typing is allowed.
bool KYjlpDlgPC_PgSpcName::OnDialogMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) {
    HWND list = NameList();
    if (msg == WM_VKEYTOITEM && g_bPrinterWizard && list && reinterpret_cast<HWND>(l) == list) {
        const UINT key = LOWORD(w);
        if (key == VK_RETURN || key == VK_SPACE) {
            OnListActivate();
            result = -2;
            return true;
        }
        HWND edit = NameEdit();
        if ((key == VK_LEFT || key == VK_UP) && edit && !IsReadOnly(edit) && OnListKeyBack(key, list, edit)) {
            result = -2;
            return true;
        }
    }
    return KYjlpDlgPC_Pg::OnDialogMessage(msg, w, l, result);
}

void KYjlpDlgPC_PgSpcName::OnEditChanged() { AutoCompleteEdit(NameEdit(), NameList()); }

void KYjlpDlgPC_PgSpcName::OnListSelChange() {
    CopySelectionToEdit(NameList(), NameEdit());
    OnPageContentChange();
}

void KYjlpDlgPC_PgSpcName::OnListActivate() {
    CopySelectionToEdit(NameList(), NameEdit());
    ActivateForward();
}

KYjlpPrinterCfg& KYjlpDlgPC_PgSpcName::DialogEngine() {
    if (g_bPrinterWizard) ThrowAtLine(kWizardOnly, __LINE__);
    return BoundEngine();
}

// The user is asked through the monitor, so that the answer is logged with the question.
void KYjlpDlgPC_PgSpcName::OnDeletePrinter() {
    uint32_t result = 0;
    int number = 0;
    try {
        Forget();
        ::SetLastError(0);
        KYjlpPrinterCfg& engine = DialogEngine();
        KYbpm* monitor = Monitor();
        if (!monitor || !monitor->respondToSituation(kDeleteQuestion, 0, m_strCurName)) {
            Forget();
            throw kQuestionNotShown;
        }
        if (monitor->getDisplayDlgBoxResult() != IDYES) throw kDeleteRefused;
        if (engine.DeletePrinter(result)) {
            if (!monitor->respondToSituation(kPrinterDeleted, 0, m_strCurName)) monitor->forgetSituation();
            if (KYjlpDlgPC_Sht* sheet = PrinterSheet()) sheet->EndDialog(KYjlpDlgPC_Sht::kPrinterDeleted);
            return;
        }
    } catch (int thrown) {
        number = thrown;
        RecordIfNormal(thrown);
    } catch (...) {
        RecordUnexpected(kDeleteGeneral);
    }
    if ((number == kDeleteRefused || number == kQuestionNotShown) && SituationId() == number)
        AddArgument(NameOrBlank(m_strCurName));
    // The user's No is no failure: it is logged, and nothing follows it.
    if (number == kDeleteRefused) {
        RespondOrForget();
        return;
    }
    FinishFailedAction(kDeleteFailed, result);
}

void KYjlpDlgPC_PgSpcName::OnPreferences() {
    uint32_t result = 0;
    try {
        Forget();
        ::SetLastError(0);
        if (DialogEngine().ShowPrinterPreferences(m_hwnd, result)) return;
    } catch (int thrown) {
        RecordIfNormal(thrown);
    } catch (...) {
        const DWORD error = ::GetLastError();
        if (IsNormal()) {
            RecordIfNormal(kPreferencesGeneral);
            AddArgument(NameOrBlank(m_strCurName));
            AddArgument(CodeLink(error));
        }
    }
    FinishFailedAction(kPreferencesFailed, result);
}

void KYjlpDlgPC_PgSpcName::OnPrintTest() {
    uint32_t result = 0;
    try {
        Forget();
        ::SetLastError(0);
        if (DialogEngine().SendTestPage(result)) return;
    } catch (int thrown) {
        RecordIfNormal(thrown);
    } catch (...) {
        RecordUnexpected(kTestGeneral);
    }
    FinishFailedAction(kTestFailed, result);
}

// The dialog stays open; a library result that names a page shows that page.
void KYjlpDlgPC_PgSpcName::FinishFailedAction(int followUp, uint32_t result) {
    const int standing = SituationId();
    if (standing == kUnbound || standing == kWizardOnly) AddSourceTail();
    RespondOrForget();
    Respond(followUp);
    if (result != 0)
        if (KYjlpDlgPC_Sht* sheet = PrinterSheet()) sheet->GoToFailedPage(result, static_cast<int>(kTemplateId));
}
