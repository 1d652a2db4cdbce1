// The settings commands of the document: the view options (32846), whose dialog
// only keeps the user's choice while ApplyOptions brings view, frame and
// preferences into line with it, and the restore of the stored settings
// (32778), which throws away what the user changed since they were stored.
#include <windows.h>
#include <commctrl.h>

#include <new>

#include "app/KYjlpApp.h"
#include "dialogs/KYjlpDlgVO.h"
#include "document/KYjlpDoc.h"
#include "document/SituationReport.h"
#include "registrar/KYjutlRegistrar.h"
#include "window/KYjlpFrameMain.h"
#include "window/KYjlpViewList.h"

namespace {
using Options = KYjlpDlgVO_OPTIONS;
const wchar_t kSourceName[] = L"KYjlpDocSettings.cpp";
const wchar_t kRestoreName[] = L"KYjlpDoc::OnFileSettingsRestore";
constexpr UINT kSettingsRestore = 32778;
constexpr UINT kViewOptions = 32846;
constexpr UINT kCodeFormat = 24644;

constexpr int kHarmonizeFailed = 27001;
constexpr int kPreferencesUnread = 27002;
constexpr int kStepFailed = 27014;
constexpr int kOptionsUnknown = 27161;
constexpr int kOptionsMissing = 27162;
constexpr int kOptionsResult = 27163;
constexpr int kApplyUnknown = 27169;
constexpr int kFromPreferencesUnknown = 27170;
constexpr int kOptionsNotMade = 27173;
constexpr int kHeadersFailed = 27498;
constexpr int kPreferencesMissing = 27599;
constexpr int kRegistrarMissing = 27728;
constexpr int kViewMissing = 27770;
// The registrar's own numbers run up to 27495 (its errors 1 to 275 above
// 27220): the unknown failures of the two commands and three of the styles
// have numbers of their own, so that each text says one thing.
constexpr int kRestoreUnknown = 27188;
constexpr int kViewOptionsUnknown = 27189;

// The list's extended styles in the order they are put right, each with the number of its failure.
struct StyleFailure {
    int flag;
    int number;
};
constexpr StyleFailure kStyleFailures[] = {
    {Options::kOneClick, 27190}, {Options::kTwoClick, 27625}, {Options::kFullRow, 27496},
    {Options::kGridLines, 27497}, {Options::kHeaderDrag, 27633}, {Options::kTrackSelect, 27499},
};

// A missing piece, told with the line where it was found missing.
struct Missing {
    int number;
    int line;
};

void ReportMissing(const Missing& missing) {
    lpreport::Record(missing.number);
    lpreport::Arg(static_cast<int32_t>(missing.line));
    lpreport::Arg(kSourceName);
    lpreport::Arg(__DATE__);
    lpreport::RespondAndForget();
}

// A step that reported by itself failed: the caller adds where it stood.
void ReportStepFailed(int line) { ReportMissing({kStepFailed, line}); }

bool On(const Options& options, int flag) { return options.abFlags[flag] != FALSE; }

// The stored settings as the dialog's options.
Options OptionsOf(const KYjutlRegistrar_PREFS& prefs) {
    Options options;
    options.crBackground = prefs.crBackground;
    options.crForeground = prefs.crForeground;
    for (int i = 0; i < Options::kCustomCount; ++i) options.crCustom[i] = prefs.crCustom[i];
    for (const auto& entry : lpoptions::kFlagControls) {
        const DWORD word = entry.flag < lpoptions::kFirstStyleFlag ? prefs.uControlBarsStates : prefs.dwListViewExtra2;
        options.abFlags[entry.flag] = (word & entry.bit) != 0;
    }
    return options;
}

KYjutlRegistrar_PREFS* Preferences() {
    KYjlpApp* app = TheApp();
    return app && app->m_pRegistrar ? app->m_pRegistrar->m_pPreferences : nullptr;
}

KYjlpFrameMain* Frame() {
    KYjlpApp* app = TheApp();
    auto* frame = app ? dynamic_cast<KYjlpFrameMain*>(app->MainWindow()) : nullptr;
    return frame && *frame ? frame : nullptr;
}

constexpr fw::CommandEntry<KYjlpDoc> kDocCommands[] = {
    {kSettingsRestore, kSettingsRestore, &KYjlpDoc::OnFileSettingsRestore, nullptr},
    {kViewOptions, kViewOptions, &KYjlpDoc::OnViewOptions, nullptr},
};
}  // namespace

KYjlpDoc::KYjlpDoc() = default;

bool KYjlpDoc::OnCmdMsg(UINT id, fw::CmdUI* ui) { return Route<KYjlpDoc>(this, kDocCommands, id, ui); }

bool KYjlpDoc::CreateOptionsDialog() {
    lpreport::Forget();
    int number = 0;
    try {
        if (!m_pDlgViewOptions) {
            KYjlpApp* app = TheApp();
            if (!app) throw kOptionsNotMade;
            const KYstdUI_DlgData data = app->DialogHelpData();
            m_pDlgViewOptions = std::make_unique<KYjlpDlgVO>(
                KYstdUI_DlgArgs{.templateId = lpoptions::kTemplateId, .data = &data});
        }
        if (!OptionsFromPreferences()) {
            ReportStepFailed(__LINE__);
            throw 0;
        }
    } catch (int n) {
        number = n ? n : -1;
    } catch (const std::bad_alloc&) {
        number = kOptionsNotMade;
    } catch (...) {
        number = kOptionsUnknown;
    }
    if (number == 0) return true;
    m_pDlgViewOptions.reset();
    if (number > 0) lpreport::Tell(number);
    return false;
}

bool KYjlpDoc::OptionsFromPreferences() {
    try {
        if (!m_pDlgViewOptions) throw Missing{kOptionsMissing, __LINE__};
        KYjlpApp* app = TheApp();
        if (!app || !app->m_pRegistrar) throw Missing{kRegistrarMissing, __LINE__};
        const KYjutlRegistrar_PREFS* prefs = app->m_pRegistrar->m_pPreferences;
        if (!prefs) throw Missing{kPreferencesMissing, __LINE__};
        m_pDlgViewOptions->TakeStoredOptions(OptionsOf(*prefs));
        return true;
    } catch (const Missing& missing) {
        ReportMissing(missing);
    } catch (...) {
        lpreport::Tell(kFromPreferencesUnknown);
    }
    return false;
}

void KYjlpDoc::ApplyBars(const KYjlpDlgVO& dialog) {
    KYjlpFrameMain* frame = Frame();
    if (!frame) return;
    const Options& chosen = dialog.SavedOptions();
    const uint32_t now = frame->ObtainBarState();
    auto differs = [&](int flag, uint32_t bit) { return On(chosen, flag) != ((now & bit) != 0); };
    if (differs(Options::kMenu, 2)) frame->ShowMenuBar(0);
    if (differs(Options::kTitleBar, 8)) frame->ShowTitleBar(0);
    if (differs(Options::kToolBar, 16)) frame->ShowToolBar(0);
    if (differs(Options::kStatusBar, 4)) frame->ShowStatusBar(0);
}

// Each failure is told and the next style is still put right.
void KYjlpDoc::ApplyListStyles(const KYjlpDlgVO& dialog, KYjlpViewList& view) {
    const Options& chosen = dialog.SavedOptions();
    const bool headers = !(view.Style() & LVS_NOCOLUMNHEADER);
    if (On(chosen, Options::kHeaders) != headers && !view.SetHeaderShown(0)) lpreport::Tell(kHeadersFailed);
    const DWORD extended = ListView_GetExtendedListViewStyle(view.Handle());
    for (const StyleFailure& style : kStyleFailures) {
        const DWORD bit = lpoptions::kFlagControls[style.flag].bit;
        if (On(chosen, style.flag) != ((extended & bit) != 0) && !view.SetStyleBit(bit, 0))
            lpreport::Tell(style.number);
    }
}

// The preferences follow, so that the choice is stored with the others.
void KYjlpDoc::KeepOptionsInPreferences(const KYjlpDlgVO& dialog, const KYjlpViewList& view) {
    KYjutlRegistrar_PREFS* prefs = Preferences();
    if (!prefs) return;
    const Options& chosen = dialog.SavedOptions();
    prefs->crBackground = chosen.crBackground;
    prefs->crForeground = chosen.crForeground;
    for (int i = 0; i < Options::kCustomCount; ++i) prefs->crCustom[i] = chosen.crCustom[i];
    KYjlpApp* app = TheApp();
    if (app && app->m_bClassicDesktop) return;  // the Classic desktop keeps no bars
    uint32_t bars = (view.Style() & LVS_NOCOLUMNHEADER) ? 0u : 1u;
    if (KYjlpFrameMain* frame = Frame()) bars |= frame->ObtainBarState();
    prefs->uControlBarsStates = bars & 31;
    prefs->dwListViewExtra2 = ListView_GetExtendedListViewStyle(view.Handle());
}

bool KYjlpDoc::ApplyOptions(COLORREF oldBackground, COLORREF oldText, KYjlpViewList* view) {
    try {
        if (!m_pDlgViewOptions) throw Missing{kOptionsMissing, __LINE__};
        if (!view || !*view) throw Missing{kViewMissing, __LINE__};
        const Options& chosen = m_pDlgViewOptions->SavedOptions();
        if ((chosen.crBackground != oldBackground || chosen.crForeground != oldText) &&
            view->SetColors(chosen.crBackground, chosen.crForeground))
            InvalidateRect(view->Handle(), nullptr, TRUE);
        ApplyBars(*m_pDlgViewOptions);
        ApplyListStyles(*m_pDlgViewOptions, *view);
        KeepOptionsInPreferences(*m_pDlgViewOptions, *view);
        return true;
    } catch (const Missing& missing) {
        ReportMissing(missing);
    } catch (...) {
        lpreport::Tell(kApplyUnknown);
    }
    return false;
}

void KYjlpDoc::OnViewOptions(UINT) {
    KYbpm* monitor = lpreport::Monitor();
    const HWND savedParent = monitor ? monitor->getDisplayDlgBoxParent() : nullptr;
    lpreport::Forget();
    try {
        if (!m_pDlgViewOptions) throw Missing{kOptionsMissing, __LINE__};
        KYjlpViewList* view = ObtainViewList();
        if (!view || !*view) throw Missing{kViewMissing, __LINE__};
        const Options before = m_pDlgViewOptions->SavedOptions();
        const INT_PTR result = m_pDlgViewOptions->DoModal(view);
        if (monitor) monitor->setDisplayDlgBoxParent(savedParent);
        if (result == IDOK) {
            if (!ApplyOptions(before.crBackground, before.crForeground, view)) ReportStepFailed(__LINE__);
        } else if (result != IDCANCEL) {
            lpreport::Record(kOptionsResult);
            lpreport::Arg(lpreport::CodeText(static_cast<uint32_t>(result), kCodeFormat));
            lpreport::RespondAndForget();
        }
    } catch (const Missing& missing) {
        ReportMissing(missing);
    } catch (...) {
        lpreport::Tell(kViewOptionsUnknown);
    }
    if (monitor && monitor->getDisplayDlgBoxParent() != savedParent) monitor->setDisplayDlgBoxParent(savedParent);
}

void KYjlpDoc::OnFileSettingsRestore(UINT) {
    lpreport::Forget();
    try {
        KYjlpApp* app = TheApp();
        if (!app || !app->m_pRegistrar) throw Missing{kRegistrarMissing, __LINE__};
        KYjlpViewList* view = ObtainViewList();
        if (!view || !*view) throw Missing{kViewMissing, __LINE__};
        KYjutlRegistrar& registrar = *app->m_pRegistrar;
        if (!registrar.ObtainPreferences()) {
            lpreport::Tell(kPreferencesUnread, L"KYjutlRegistrar::ObtainPreferences",
                           static_cast<int32_t>(KYjlpApp::MapRegistrarError(registrar.m_uError)), kRestoreName,
                           registrar.m_uErrorDetail, static_cast<int32_t>(registrar.m_iErrorItem));
            return;
        }
        if (!OptionsFromPreferences()) return ReportStepFailed(__LINE__);
        if (const int code = app->HarmonizeDesktopSettings()) {
            lpreport::Tell(kHarmonizeFailed, L"KYjlpApp::HarmonizeDesktopSettings", static_cast<int32_t>(code),
                           kRestoreName);
            return;
        }
        // The stored mode first, then every view shows the stored settings on the rows there are.
        const KYjutlRegistrar_PREFS& prefs = *registrar.m_pPreferences;
        view->SetViewMode(app->m_bClassicDesktop ? KYjlpViewList::kLargeIcons
                                                 : static_cast<int>(prefs.dwListViewStyle & LVS_TYPEMASK));
        for (fw::View* shown : Views())
            if (auto* list = dynamic_cast<KYjlpViewList*>(shown)) list->OnUpdate(1);
        KYjlpFrameMain* frame = Frame();
        if (frame && !frame->RestoreWindow(kSourceName) && !lpreport::IsNormal()) {
            lpreport::Arg(kSourceName);
            lpreport::RespondAndForget();
        }
    } catch (const Missing& missing) {
        ReportMissing(missing);
    } catch (...) {
        lpreport::Tell(kRestoreUnknown);
    }
}
