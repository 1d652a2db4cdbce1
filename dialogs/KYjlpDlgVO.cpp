#include "dialogs/KYjlpDlgVO.h"

#include <commctrl.h>
#include <commdlg.h>

#include <algorithm>
#include <iterator>

#include "app/KYjlpApp.h"
#include "dialogs/DialogHelpIds.h"
#include "framework/FrameWnd.h"
#include "monitor/KYbpm.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpViewList.h"

namespace {
using Options = KYjlpDlgVO_OPTIONS;
// The frame's bars by their child ids.
constexpr int kToolBarId = 0xE800;
constexpr int kStatusBarId = 0xE801;

HWND FrameWindow() {
    KYjlpApp* app = TheApp();
    fw::FrameWnd* frame = app ? app->MainWindow() : nullptr;
    return frame && *frame ? frame->Handle() : nullptr;
}

bool Classic() {
    KYjlpApp* app = TheApp();
    return app && app->m_bClassicDesktop;
}

bool Allowed(int part) {
    KYjlpApp* app = TheApp();
    return !app || app->m_abShow[part];
}

KYbpm* Monitor() {
    KYjlpApp* app = TheApp();
    return app ? app->m_pMonitor : nullptr;
}

}  // namespace

KYjlpDlgVO::KYjlpDlgVO(const KYstdUI_DlgArgs& args) : KYstdUI_Dlg(args) {
    if (KYbpm* monitor = Monitor()) m_hSavedParent = monitor->getDisplayDlgBoxParent();
    ResetOptions(&m_optDefault);
    ResetOptions(&m_optSaved);
    LoadDefaults();
    Snapshot();
}

KYjlpDlgVO::~KYjlpDlgVO() { OnDestroyed(); }

bool KYjlpDlgVO::ResetOptions(KYjlpDlgVO_OPTIONS* options) {
    if (!options) return false;
    *options = KYjlpDlgVO_OPTIONS{};
    std::fill(std::begin(options->abFlags), std::end(options->abFlags), TRUE);
    KYjutlRegistrar::DefaultCustomColors(options->crCustom, Options::kCustomCount);
    return true;
}

void KYjlpDlgVO::TakeStoredOptions(const KYjlpDlgVO_OPTIONS& stored) {
    m_optDefault = stored;
    m_optSaved = stored;
    LoadSaved();
}

void KYjlpDlgVO::LoadFrom(const KYjlpDlgVO_OPTIONS& options) { m_work = options; }

INT_PTR KYjlpDlgVO::DoModal(KYjlpViewList* view) {
    if (!view) return -1;
    m_pView = view;
    const INT_PTR result = KYstdUI_Dlg::DoModal();
    if (result == -1) LoadSaved();
    return result;
}

// What the view and the frame show now: a change made by other commands is what
// the user finds when the dialog opens.
void KYjlpDlgVO::LoadFromWindows() {
    HWND list = m_pView && *m_pView ? m_pView->Handle() : nullptr;
    HWND frame = FrameWindow();
    if (list) {
        m_work.abFlags[Options::kHeaders] = !(m_pView->Style() & LVS_NOCOLUMNHEADER);
        const DWORD extended = ListView_GetExtendedListViewStyle(list);
        for (int flag = lpoptions::kFirstStyleFlag; flag < Options::kFlagCount; ++flag)
            m_work.abFlags[flag] = (extended & lpoptions::kFlagControls[flag].bit) != 0;
    }
    if (frame) {
        m_work.abFlags[Options::kMenu] = ::GetMenu(frame) != nullptr;
        HWND status = ::GetDlgItem(frame, kStatusBarId);
        m_work.abFlags[Options::kStatusBar] = status && ::IsWindowVisible(status);
        m_work.abFlags[Options::kTitleBar] =
            (::GetWindowLongPtrW(frame, GWL_STYLE) & WS_CAPTION) == WS_CAPTION;
        HWND tools = ::GetDlgItem(frame, kToolBarId);
        m_work.abFlags[Options::kToolBar] = tools && (::GetWindowLongPtrW(tools, GWL_STYLE) & WS_VISIBLE);
    }
    Snapshot();
}

bool KYjlpDlgVO::OnInitDialog() {
    LoadFromWindows();
    if (!KYstdUI_Dlg::OnInitDialog()) return false;
    if (KYbpm* monitor = Monitor()) {
        m_hSavedParent = monitor->getDisplayDlgBoxParent();
        monitor->setDisplayDlgBoxParent(m_hwnd);
        m_bParentTaken = true;
    }
    RefreshEnabling();
    CenterWindow();
    return true;
}

void KYjlpDlgVO::OnDestroyed() {
    KYbpm* monitor = Monitor();
    if (m_bParentTaken && monitor && monitor->getDisplayDlgBoxParent() != m_hSavedParent)
        monitor->setDisplayDlgBoxParent(m_hSavedParent);
    m_bParentTaken = false;
}

void KYjlpDlgVO::DoDataExchange(fw::DataExchange& dx) {
    for (const auto& entry : lpoptions::kFlagControls) {
        int checked = m_work.abFlags[entry.flag] ? BST_CHECKED : BST_UNCHECKED;
        dx.Check(entry.control, checked);
        if (dx.Saving()) m_work.abFlags[entry.flag] = checked == BST_CHECKED;
    }
    if (!m_btnBackground.AttachTo(dx.Dialog(), lpoptions::kBackgroundSwatch) ||
        !m_btnForeground.AttachTo(dx.Dialog(), lpoptions::kForegroundSwatch)) {
        dx.Control(0);  // a swatch that is missing fails the exchange
        return;
    }
    if (dx.Saving()) {
        m_work.crBackground = m_btnBackground.Color();
        m_work.crForeground = m_btnForeground.Color();
        return;
    }
    if (m_btnBackground.Color() != m_work.crBackground || !::GetWindowTextLengthW(m_btnBackground.Handle()))
        m_btnBackground.SetColor(m_work.crBackground, true);
    if (m_btnForeground.Color() != m_work.crForeground || !::GetWindowTextLengthW(m_btnForeground.Handle()))
        m_btnForeground.SetColor(m_work.crForeground, true);
}

bool KYjlpDlgVO::ChildEnabled(int id) const {
    HWND frame = FrameWindow();
    switch (id) {
    case 1047:
    case 1048:
        return !Classic();
    case 1049:
        return Allowed(0) && m_pView && *m_pView && ListView_GetHeader(m_pView->Handle());
    case 1050:
        return IsChecked(1049);
    case 1052:
        return Allowed(1);
    case 1053:
        return Allowed(2) && frame && ::GetDlgItem(frame, kStatusBarId);
    case 1054:
        return Allowed(3);
    case 1055:
        return Allowed(4) && frame && ::GetDlgItem(frame, kToolBarId);
    default:
        return true;
    }
}

void KYjlpDlgVO::RefreshEnabling() {
    for (HWND child = ::GetWindow(m_hwnd, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
        const int id = ::GetDlgCtrlID(child);
        if (id == 0) throw 27161;
        ::EnableWindow(child, ChildEnabled(id));
    }
}

void KYjlpDlgVO::PickColor(KYstdButtonColor& swatch) {
    COLORREF custom[Options::kCustomCount];
    std::copy(std::begin(m_work.crCustom), std::end(m_work.crCustom), custom);
    CHOOSECOLORW choose{};
    choose.lStructSize = sizeof choose;
    choose.hwndOwner = m_hwnd;
    choose.rgbResult = swatch.Color();
    choose.lpCustColors = custom;
    choose.Flags = CC_RGBINIT;
    if (!::ChooseColorW(&choose)) return;  // cancelled: nothing changes
    if (choose.rgbResult != swatch.Color()) swatch.SetColor(choose.rgbResult, true);
    std::copy(std::begin(custom), std::end(custom), m_work.crCustom);
}

void KYjlpDlgVO::ShowValues(bool fromDefaults) {
    try {
        if (fromDefaults)
            LoadDefaults();
        else
            LoadSaved();
        UpdateData(false);
        RefreshEnabling();
    } catch (...) {
        EndDialog(-1);
    }
}

bool KYjlpDlgVO::OnCommand(UINT id, UINT code, HWND control) {
    if (code == BN_CLICKED && control) {
        switch (id) {
        case lpoptions::kBackgroundButton:
            PickColor(m_btnBackground);
            return true;
        case lpoptions::kForegroundButton:
            PickColor(m_btnForeground);
            return true;
        case lpoptions::kDefaultsButton:
            ShowValues(true);
            return true;
        case lpoptions::kRevertButton:
            ShowValues(false);
            return true;
        case 1049:
            // The drag of the headers is only offered with headers; its check stays as it was.
            ::EnableWindow(Item(1050), ChildEnabled(1050));
            return false;
        default:
            break;
        }
    }
    return KYstdUI_Dlg::OnCommand(id, code, control);
}

void KYjlpDlgVO::OnOK() {
    try {
        if (!UpdateData(true)) return;
        Snapshot();
        EndDialog(IDOK);
    } catch (...) {
        EndDialog(-1);
    }
}

void KYjlpDlgVO::OnCancel() {
    LoadSaved();
    EndDialog(IDCANCEL);
}

DWORD KYjlpDlgVO::HelpIdFromControl(WORD controlId) const {
    if (controlId == lpoptions::kBackgroundSwatch) return lphelp::ForControl(lpoptions::kBackgroundButton);
    if (controlId == lpoptions::kForegroundSwatch) return lphelp::ForControl(lpoptions::kForegroundButton);
    if (controlId >= 1038 && controlId <= 1055 && controlId != lpoptions::kColoursGroup)
        return lphelp::ForControl(controlId);
    return KYstdUI_Dlg::HelpIdFromControl(controlId);
}
