#include "printers/KYjlpDlgPC_PgSpcMake.h"

#include <commdlg.h>

#include <cwchar>
#include <iterator>
#include <utility>

#include "dialogs/DialogHelpIds.h"
#include "foundation/UniqueHandle.h"
#include "framework/PropertySheet.h"
#include "framework/ResourceModule.h"
#include "printers/KYjlpPrinterHost.h"
#include "printers/PrinterReport.h"

using namespace printers;

namespace {
constexpr int kHaveDiskButton = 1011, kMakeList = 1012, kMakeLabel = 1013, kModelList = 1014, kModelLabel = 1015;
constexpr int kHaveDiskGeneral = 27648, kLoadGeneral = 27656, kNoMakeDialog = 27657, kNoMakeWizard = 27658,
              kNoMakeWizardDisk = 27659, kNoModel = 27660;
// The form tag that holds the program's own directory.
constexpr int kProgramDirectoryTag = 5;

bool IsLiveWindow(HWND window) { return window && ::IsWindow(window); }

bool HasItems(HWND list) { return IsLiveWindow(list) && ::SendMessageW(list, LB_GETCOUNT, 0, 0) > 0; }

void TakeText(std::wstring& target, const wchar_t* text) {
    if (text && *text) target = text;
}
}  // namespace

KYjlpDlgPC_PgSpcMake::KYjlpDlgPC_PgSpcMake()
    : KYjlpDlgPC_Pg({.templateId = kTemplateId, .captionId = 24631, .headerTitleId = 24632, .headerSubtitleId = 24633}) {
}

KYjlpDlgPC_PgSpcMake::~KYjlpDlgPC_PgSpcMake() {
    try {
        ResetPage();
    } catch (...) {
        // The engine may be gone first at the end of the program; the lists are then abandoned.
    }
}

void KYjlpDlgPC_PgSpcMake::DoDataExchange(fw::DataExchange& dx) {
    dx.ListString(kMakeList, m_strCurMake);
    dx.ListString(kModelList, m_strCurModel);
    if (!dx.Saving() || !m_hwnd) return;
    const auto takeSelected = [](HWND list, std::wstring& text) {
        if (!list) return;
        const LRESULT index = ::SendMessageW(list, LB_GETCURSEL, 0, 0);
        if (index >= 0 && index < ::SendMessageW(list, LB_GETCOUNT, 0, 0))
            text = ListItemText(list, static_cast<int>(index));
    };
    takeSelected(MakeList(), m_strCurMake);
    takeSelected(ModelList(), m_strCurModel);
}

bool KYjlpDlgPC_PgSpcMake::CommitToRecord(bool commit) {
    m_bCommitted = commit;
    KYjlpPrinterCfg* engine = CurrentPrinterEngine();
    if (!engine) return false;
    const auto field = [commit](std::wstring& text) { return commit && !text.empty() ? text.data() : nullptr; };
    engine->m_info.pszInfPath = field(m_strCurInfPath);
    engine->m_info.pszManufacturer = field(m_strCurMake);
    engine->m_info.pszDriverName = field(m_strCurModel);
    return true;
}

bool KYjlpDlgPC_PgSpcMake::IsPageModified() {
    return m_bDiskChosen || m_strCurInfPath != m_strInfPath || m_strCurMake != m_strMake || m_strCurModel != m_strModel;
}

DWORD KYjlpDlgPC_PgSpcMake::GetControlHelpId(UINT id) {
    if (g_bPrinterWizard) return 0;
    switch (static_cast<int>(id)) {
    case kHaveDiskButton:
    case kMakeList:
    case kModelList:
        return lphelp::ForControl(id);
    case kMakeLabel:
        return lphelp::ForControl(kMakeList);
    case kModelLabel:
        return lphelp::ForControl(kModelList);
    default:
        return KYjlpDlgPC_Pg::GetControlHelpId(id);
    }
}

// The driver file button stays off in this system: drivers come from the print monitor's lists.
bool KYjlpDlgPC_PgSpcMake::EnableControl(UINT id, HWND window) {
    if (!window) window = Item(static_cast<int>(id));
    if (!IsLiveWindow(window)) return false;
    if (static_cast<int>(id) == kHaveDiskButton) {
        m_bHaveDiskAllowed = 0;
        ::EnableWindow(window, FALSE);
    } else {
        ::EnableWindow(window, TRUE);
    }
    return true;
}

bool KYjlpDlgPC_PgSpcMake::OnInitDialog() {
    const bool focusToFirst = KYjlpDlgPC_Pg::OnInitDialog();
    // Without both lists the page cannot work, and the sheet does not go on.
    if (!IsLiveWindow(MakeList()) || !IsLiveWindow(ModelList()) || !FillPageControls())
        if (fw::PropertySheet* sheet = Sheet()) sheet->EndDialog(-1);
    return focusToFirst;
}

bool KYjlpDlgPC_PgSpcMake::OnSetActive() {
    if (!KYjlpDlgPC_Pg::OnSetActive()) return false;
    EnablePageControls();
    return true;
}

bool KYjlpDlgPC_PgSpcMake::OnKillActive() {
    OnPageContentChange();
    const bool goingBack = g_bPrinterWizard && m_bGoingBack;
    m_bGoingBack = false;
    if (!m_strCurMake.empty() && !m_strCurModel.empty()) {
        CommitToRecord(true);
        return true;
    }
    if (goingBack) return true;
    if (m_strCurMake.empty()) {
        const UINT text = !g_bPrinterWizard ? kNoMakeDialog : m_bHaveDiskAllowed ? kNoMakeWizardDisk : kNoMakeWizard;
        ShowPageMessage(text, L"You need to specify a manufacturer.", nullptr, MB_OK);
    } else {
        ShowPageMessage(kNoModel, L"You need to specify a model.", nullptr, MB_OK);
    }
    return false;
}

bool KYjlpDlgPC_PgSpcMake::OnCommand(UINT id, UINT code, HWND control) {
    const int controlId = static_cast<int>(id);
    if (controlId == kHaveDiskButton && code == BN_CLICKED) {
        OnHaveDisk();
        return true;
    }
    if (controlId == kMakeList && code == LBN_SELCHANGE) {
        OnManufacturerSelChange();
        return true;
    }
    if (controlId == kModelList && code == LBN_SELCHANGE) {
        OnPageContentChange();
        return true;
    }
    if (controlId == kModelList && code == LBN_DBLCLK) {
        OnModelActivate();
        return true;
    }
    return KYjlpDlgPC_Pg::OnCommand(id, code, control);
}

void KYjlpDlgPC_PgSpcMake::OnModelActivate() { ActivateForward(); }

bool KYjlpDlgPC_PgSpcMake::SetSelection(const std::wstring& path, const std::wstring& make, const std::wstring& model) {
    return SetSelectionText(path.c_str(), make.c_str(), model.c_str());
}

bool KYjlpDlgPC_PgSpcMake::SetSelectionText(const wchar_t* path, const wchar_t* make, const wchar_t* model) {
    m_strCurInfPath.clear();
    m_strCurMake.clear();
    m_strCurModel.clear();
    const auto assign = [](std::wstring& target, const wchar_t* text) {
        try {
            TakeText(target, text);
            return true;
        } catch (...) {
            target.clear();
            return false;
        }
    };
    const bool pathTaken = assign(m_strCurInfPath, path);
    const bool makeTaken = assign(m_strCurMake, make);
    const bool modelTaken = assign(m_strCurModel, model);
    return pathTaken && makeTaken && modelTaken;
}

// An edited printer comes with its driver; the wizard's record is null, so the
// first manufacturer and its first model are proposed.
int32_t KYjlpDlgPC_PgSpcMake::LoadFromRecord(const CLIENT_PRINTER_INFO* record) {
    try {
        ResetPage();
        BoundEngine();
        m_strInstalledLabel = fw::ResString(24630);
        if (m_strInstalledLabel.empty()) m_strInstalledLabel = L"Installed Drivers";
        if (record) {
            TakeText(m_strInfPath, record->pszInfPath);
            TakeText(m_strMake, record->pszManufacturer);
            TakeText(m_strModel, record->pszDriverName);
        }
        // Told already: without a driver list the sheet does not open.
        if (!LoadDriverLists(&m_pManufacturers, m_aModelLists, m_strInfPath.c_str(), m_strMake, m_strModel, false))
            return 1;
        if (!m_pManufacturers) m_strInfPath.clear();
        SetSelection(m_strInfPath, m_strMake, m_strModel);
        CommitToRecord(true);
        return 0;
    } catch (int number) {
        RecordIfNormal(number);
    } catch (...) {
        RecordIfNormal(kLoadGeneral);
    }
    if (SituationId() == kUnbound) AddSourceTail();
    RespondOrForget();
    ResetPage();
    return 1;
}

bool KYjlpDlgPC_PgSpcMake::ResetPage() {
    CommitToRecord(false);
    for (std::wstring* text : {&m_strInfPath, &m_strMake, &m_strInstalledLabel, &m_strModel, &m_strCurInfPath,
                               &m_strCurMake, &m_strCurModel})
        text->clear();
    const bool makesReleased = ReleaseTextList(&m_pManufacturers);
    const bool modelsReleased = ReleaseModelLists(m_aModelLists);
    if (m_hwnd)
        for (HWND list : {MakeList(), ModelList()})
            if (HasItems(list)) ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
    return makesReleased && modelsReleased;
}

// A driver file from disk: its manufacturers and models replace the lists, and
// the choice the user had is kept where the file offers it.
void KYjlpDlgPC_PgSpcMake::OnHaveDisk() {
    DRIVER_LIST_ENTRY* makes = nullptr;
    ModelLists models;
    try {
        m_bDiskChosen = false;
        wchar_t file[MAX_PATH] = {};
        if (!ChooseDriverFile(file)) return;
        m_bDiskChosen = true;
        std::wstring make = !m_strCurMake.empty() ? m_strCurMake : m_strMake;
        std::wstring model;
        if (!make.empty()) model = !m_strCurModel.empty() ? m_strCurModel : m_strModel;
        const bool loaded = LoadDriverLists(&makes, models, file, make, model, true);
        ReleaseTextList(&m_pManufacturers);
        ReleaseModelLists(m_aModelLists);
        if (loaded) {
            m_pManufacturers = std::exchange(makes, nullptr);
            m_aModelLists.swap(models);
            KeepDriverDirectory(file);
        } else {
            file[0] = L'\0';
            make.clear();
            model.clear();
        }
        SetSelectionText(file, make.c_str(), model.c_str());
        FillPageControls();
        OnPageContentChange();
    } catch (int number) {
        RecordIfNormal(number);
    } catch (...) {
        RecordIfNormal(kHaveDiskGeneral);
    }
    if (SituationId() == kUnbound) AddSourceTail();
    RespondOrForget();
    ReleaseTextList(&makes);
    ReleaseModelLists(models);
}

bool KYjlpDlgPC_PgSpcMake::ChooseDriverFile(wchar_t (&file)[MAX_PATH]) {
    const std::wstring title = fw::ResString(24626);
    std::wstring extension = fw::ResString(24628);
    const std::wstring& known = !m_strCurInfPath.empty() ? m_strCurInfPath : m_strInfPath;
    wcsncpy(file, known.c_str(), MAX_PATH - 1);
    std::wstring directory;
    // Where no directory would do, the dialog offers no pattern of driver files either.
    if (!file[0] && !ProposeDirectory(directory)) extension.clear();
    wchar_t filter[512] = {};
    if (!extension.empty()) {
        // The pattern is a pair of texts, the name and the mask, ended by an empty one.
        _snwprintf(filter, std::size(filter) - 2, fw::ResString(24627).c_str(), extension.c_str(), L'\0',
                   extension.c_str());
        if (!file[0]) {
            wchar_t proposed[MAX_PATH] = {};
            _snwprintf(proposed, MAX_PATH - 1, fw::ResString(24629).c_str(), extension.c_str());
            if (proposed[0]) wcsncpy(file, proposed, MAX_PATH - 1);
        }
    }
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = m_hwnd;
    dialog.lpstrFilter = filter[0] ? filter : nullptr;
    dialog.lpstrFile = file;
    dialog.nMaxFile = MAX_PATH;
    dialog.lpstrInitialDir = directory.empty() ? nullptr : directory.c_str();
    dialog.lpstrTitle = title.empty() ? nullptr : title.c_str();
    dialog.Flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST;
    dialog.lpstrDefExt = extension.empty() ? nullptr : extension.c_str();
    if (::GetOpenFileNameW(&dialog)) return true;
    // Cancel and a dialog that could not open alike leave the page as it was.
    (void)::CommDlgExtendedError();
    return false;
}

// The directory kept from the last driver file, else the program's own; the
// one tried last is where the dialog opens, even when neither would do.
bool KYjlpDlgPC_PgSpcMake::ProposeDirectory(std::wstring& directory) {
    KYjlpPrinterHost* host = KYjlpPrinterHost::Current();
    if (!host) return true;
    directory = host->PrintInfInitialDir();
    if (!directory.empty() && IsListableDirectory(directory)) return true;
    directory = host->PrinterTagText(kProgramDirectoryTag);
    return IsListableDirectory(directory);
}

// The test that an item's start directory passes: a directory whose files can be listed.
bool KYjlpDlgPC_PgSpcMake::IsListableDirectory(const std::wstring& directory) {
    if (IsBlankText(directory)) return false;
    const wchar_t last = directory.back();
    const bool separated = last == L'\\' || last == L'/';
    if (directory.size() + (separated ? 0 : 1) + 4 > MAX_PATH) return false;
    std::wstring pattern = directory;
    if (!separated) pattern += directory.find(L'/') != std::wstring::npos ? L"/" : L"\\";
    pattern += L"*.*";
    WIN32_FIND_DATAW found{};
    const ky::UniqueFind find(::FindFirstFileW(pattern.c_str(), &found));
    return static_cast<bool>(find);
}

// The next driver file dialog opens where this file was found.
void KYjlpDlgPC_PgSpcMake::KeepDriverDirectory(const wchar_t* file) {
    wchar_t drive[_MAX_DRIVE] = {}, dir[_MAX_DIR] = {};
    if (_wsplitpath_s(file, drive, _MAX_DRIVE, dir, _MAX_DIR, nullptr, 0, nullptr, 0) != 0) return;
    wchar_t directory[MAX_PATH] = {};
    _snwprintf(directory, MAX_PATH - 1, L"%s%s", drive, dir);
    if (KYjlpPrinterHost* host = KYjlpPrinterHost::Current()) host->SetPrintInfInitialDir(directory);
}
