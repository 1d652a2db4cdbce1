#include "printers/KYjlpDlgPC_Pg.h"

#include <vector>

#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "printers/KYjlpDlgPC_Sht.h"
#include "printers/KYjlpPrinterHost.h"
#include "printers/PrinterReport.h"

using namespace printers;

namespace {
constexpr int kPruneGeneral = 27616, kPrunedEmpty = 27617, kReleaseFailed = 27618;
constexpr DWORD kHelpBase = 0x50000;
}  // namespace

KYjlpDlgPC_Sht* KYjlpDlgPC_Pg::PrinterSheet() const noexcept { return dynamic_cast<KYjlpDlgPC_Sht*>(Sheet()); }

KYjlpPrinterCfg& KYjlpDlgPC_Pg::BoundEngine() {
    KYjlpPrinterCfg* engine = CurrentPrinterEngine();
    if (!engine || !engine->IsBound()) ThrowUnbound(__LINE__);
    return *engine;
}

std::wstring KYjlpDlgPC_Pg::WindowText(HWND window) {
    const int length = ::GetWindowTextLengthW(window);
    std::vector<wchar_t> text(static_cast<size_t>(length > 0 ? length : 0) + 1, L'\0');
    ::GetWindowTextW(window, text.data(), length + 1);
    return text.data();
}

std::wstring KYjlpDlgPC_Pg::ListItemText(HWND list, int index) {
    const LRESULT length = ::SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
    if (length < 0) return {};
    std::vector<wchar_t> text(static_cast<size_t>(length) + 1, L'\0');
    ::SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    return text.data();
}

bool KYjlpDlgPC_Pg::IsBlankText(const std::wstring& text) {
    return text.find_first_not_of(L" \t") == std::wstring::npos;
}

bool KYjlpDlgPC_Pg::ReleaseTextList(DRIVER_LIST_ENTRY** head) {
    if (!head || !*head) return true;
    int32_t result = -1;
    DWORD error = 0;
    bool thrown = false;
    try {
        KYjlpPrinterCfg& engine = BoundEngine();
        ::SetLastError(0);
        result = engine.Export<kypm::DestroyDriverListFn>(KYjlpPrinterCfg::kDestroyDriverList)(head);
        error = ::GetLastError();
    } catch (...) {
        thrown = true;
        error = ::GetLastError();
    }
    if (!thrown && result == 0 && !*head) return true;
    // The list is abandoned rather than handed back twice.
    *head = nullptr;
    Forget();
    if (KYbpm* monitor = Monitor()) {
        monitor->recordSituationID(kReleaseFailed);
        monitor->recordArgument(FormatResult(result));
        monitor->recordArgument(CodeLink(error));
    }
    RespondOrForget();
    return false;
}

bool KYjlpDlgPC_Pg::PruneTextList(DRIVER_LIST_ENTRY** head, int& count, const std::wstring& target, int& index,
                                  DRIVER_LIST_ENTRY*& entry) {
    count = 0;
    index = -1;
    entry = nullptr;
    DRIVER_LIST_ENTRY* dropped = nullptr;
    try {
        BoundEngine();
        DRIVER_LIST_ENTRY* kept = nullptr;
        DRIVER_LIST_ENTRY** keptEnd = &kept;
        DRIVER_LIST_ENTRY** droppedEnd = &dropped;
        const int length = static_cast<int>(target.size());
        DRIVER_LIST_ENTRY* next = nullptr;
        for (DRIVER_LIST_ENTRY* node = head ? *head : nullptr; node; node = next) {
            next = node->pNext;
            node->pNext = nullptr;
            const bool blank = !node->pszText || !*node->pszText;
            const bool equal = !blank && !target.empty() &&
                               ::CompareStringW(LOCALE_USER_DEFAULT, 0, node->pszText, -1, target.c_str(),
                                                length) == CSTR_EQUAL;
            if (blank || (equal && entry)) {
                *droppedEnd = node;
                droppedEnd = &node->pNext;
                continue;
            }
            if (equal) {
                entry = node;
                index = count;
            }
            *keptEnd = node;
            keptEnd = &node->pNext;
            ++count;
        }
        if (head) *head = kept;
        ReleaseTextList(&dropped);
        if (count == 0) throw kPrunedEmpty;
        if (!entry) {
            index = 0;
            entry = kept;
        }
        return true;
    } catch (int number) {
        RecordIfNormal(number);
    } catch (...) {
        RecordUnexpected(kPruneGeneral);
    }
    if (dropped) ReleaseTextList(&dropped);
    count = 0;
    index = -1;
    entry = nullptr;
    if (SituationId() == kUnbound) AddSourceTail();
    RespondOrForget();
    return false;
}

DWORD KYjlpDlgPC_Pg::GetControlHelpId(UINT id) {
    if (g_bPrinterWizard) return 0;
    if (id >= 1 && id <= 11) return id + kHelpBase;
    KYjlpDlgPC_Sht* sheet = PrinterSheet();
    return sheet ? sheet->GetControlHelpId(id) : 0;
}

void KYjlpDlgPC_Pg::OnPageContentChange() {
    if (m_hwnd && UpdateData(true)) EnablePageControls();
    if (!g_bPrinterWizard) SetModified(IsPageModified());
}

void KYjlpDlgPC_Pg::MarkPageModified() {
    if (!g_bPrinterWizard) SetModified(true);
}

bool KYjlpDlgPC_Pg::ReloadFromRecord(const CLIENT_PRINTER_INFO* record) {
    if (LoadFromRecord(record) != 0) return false;
    if (m_hwnd && !FillPageControls()) return false;
    SetModified(false);
    return true;
}

void KYjlpDlgPC_Pg::OnDataExchanged(bool save) {
    if (save && m_bCommitted) CommitToRecord(true);
}

bool KYjlpDlgPC_Pg::EnablePageControls() {
    if (!m_hwnd) return false;
    for (HWND child = ::GetWindow(m_hwnd, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
        const int id = ::GetDlgCtrlID(child);
        if (id != 0) EnableControl(static_cast<UINT>(id), child);
    }
    return true;
}

bool KYjlpDlgPC_Pg::OnInitDialog() {
    const bool result = fw::PropertyPage::OnInitDialog();
    if (!m_bInitialized) {
        m_bInitialized = true;
        SetModified(true);
    }
    return result;
}

// Reports of the page's work show over the page, and the sheet keeps its caption.
// An inner page of the wizard offers Back and Next; the welcome and finish pages
// set their own buttons after this.
bool KYjlpDlgPC_Pg::OnSetActive() {
    if (KYbpm* monitor = Monitor()) monitor->setDisplayDlgBoxParent(m_hwnd);
    if (g_bPrinterWizard && Sheet()) Sheet()->SetWizardButtons(PSWIZB_BACK | PSWIZB_NEXT);
    if (KYjlpDlgPC_Sht* sheet = PrinterSheet(); sheet && !sheet->Caption().empty()) sheet->SetTitle(sheet->Caption());
    return true;
}

bool KYjlpDlgPC_Pg::OnKillActive() {
    m_bGoingBack = false;
    return true;
}

LRESULT KYjlpDlgPC_Pg::OnWizardBack() {
    m_bGoingBack = true;
    return 0;
}

void KYjlpDlgPC_Pg::ActivateForward() {
    if (!g_bPrinterWizard) {
        OnPageContentChange();
        return;
    }
    // The sheet asks OnKillActive again when Next is pressed; that is accepted.
    if (OnKillActive())
        if (KYjlpDlgPC_Sht* sheet = PrinterSheet()) sheet->PressButton(PSBTN_NEXT);
}

int KYjlpDlgPC_Pg::ShowPageMessage(UINT textId, const wchar_t* fallback, const wchar_t* argument, UINT style) {
    std::wstring format = fw::ResString(textId);
    if (format.empty()) format = fallback;
    std::wstring text = format;
    if (argument) {
        std::vector<wchar_t> buffer(format.size() + wcslen(argument) + 64, L'\0');
        _snwprintf(buffer.data(), buffer.size() - 1, format.c_str(), argument);
        text = buffer.data();
    }
    const HWND sheet = SheetHandle();
    const std::wstring caption = sheet ? WindowText(sheet) : std::wstring();
    return ::MessageBoxW(sheet ? sheet : m_hwnd, text.c_str(), caption.c_str(), style);
}

void KYjlpDlgPC_Pg::ShowInEdit(HWND edit, const std::wstring& text) {
    m_bNoComplete = true;
    ::SetWindowTextW(edit, text.c_str());
}

void KYjlpDlgPC_Pg::CopySelectionToEdit(HWND list, HWND edit) {
    const LRESULT selected = list ? ::SendMessageW(list, LB_GETCURSEL, 0, 0) : LB_ERR;
    if (selected >= 0) ShowInEdit(edit, ListItemText(list, static_cast<int>(selected)));
}

void KYjlpDlgPC_Pg::FocusWholeText(HWND edit) {
    ::SetFocus(edit);
    ::SendMessageW(edit, EM_SETSEL, 0, -1);
    ::SendMessageW(edit, EM_SCROLLCARET, 0, 0);
}

bool KYjlpDlgPC_Pg::OnListKeyBack(UINT key, HWND list, HWND edit) {
    if ((key != VK_LEFT && key != VK_UP) || ::SendMessageW(list, LB_GETCARETINDEX, 0, 0) != 0) return false;
    FocusWholeText(edit);
    return true;
}
