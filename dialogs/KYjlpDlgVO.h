// The view options dialog: the list's colours, which parts of the window show,
// and the list's extended styles. The document keeps one for the whole run and
// shows it as often as asked, so that the choice stays between showings. It
// changes nothing by itself: OK only keeps the choice (the document then brings
// preferences, frame and view into line), Cancel goes back to the kept one.
#pragma once
#include "dialogs/KYjlpDlgVO_OPTIONS.h"
#include "dialogs/KYstdButtonColor.h"
#include "dialogs/KYstdUI_Dlg.h"

class KYjlpViewList;

class KYjlpDlgVO : public KYstdUI_Dlg {
public:
    explicit KYjlpDlgVO(const KYstdUI_DlgArgs& args);
    ~KYjlpDlgVO() override;

    // Shows the dialog for that view; IDOK, IDCANCEL, or -1 when it could not
    // be shown (the kept options then stand as they were).
    INT_PTR DoModal(KYjlpViewList* view);
    // White on black, everything on, the default custom colours; false for null.
    static bool ResetOptions(KYjlpDlgVO_OPTIONS* options);
    // The options the stored settings give: they become what Defaults and Cancel go back to.
    void TakeStoredOptions(const KYjlpDlgVO_OPTIONS& stored);
    // The last accepted options.
    const KYjlpDlgVO_OPTIONS& SavedOptions() const noexcept { return m_optSaved; }
    const KYjlpDlgVO_OPTIONS& DefaultOptions() const noexcept { return m_optDefault; }
    const KYjlpDlgVO_OPTIONS& WorkingOptions() const noexcept { return m_work; }
    DWORD HelpIdFromControl(WORD controlId) const override;

    void LoadFromWindows();
    void LoadDefaults() { LoadFrom(m_optDefault); }
    void LoadSaved() { LoadFrom(m_optSaved); }
    void Snapshot() { m_optSaved = m_work; }

protected:
    bool OnInitDialog() override;
    void DoDataExchange(fw::DataExchange& dx) override;
    bool OnCommand(UINT id, UINT code, HWND control) override;
    void OnOK() override;
    void OnCancel() override;
    void OnDestroyed() override;

private:
    void LoadFrom(const KYjlpDlgVO_OPTIONS& options);
    void ShowValues(bool fromDefaults);
    void PickColor(KYstdButtonColor& swatch);
    bool ChildEnabled(int id) const;
    void RefreshEnabling();

    KYstdButtonColor m_btnBackground;
    KYstdButtonColor m_btnForeground;
    KYjlpViewList* m_pView = nullptr;  // not owned
    KYjlpDlgVO_OPTIONS m_optDefault;
    KYjlpDlgVO_OPTIONS m_optSaved;
    KYjlpDlgVO_OPTIONS m_work;
    HWND m_hSavedParent = nullptr;  // the monitor's dialog parent before this dialog showed
    bool m_bParentTaken = false;
};
