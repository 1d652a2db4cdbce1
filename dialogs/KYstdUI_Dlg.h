// The base of the panel's dialogs: what-is-this help for every control, asked
// for with F1, with the caption's help button, or with the right mouse button
// (compiled HTML help shows at once, classic help asks through a small menu).
// Help itself is the application's: the dialog calls the help function of its
// data with the control's topic.
#pragma once
#include "dialogs/KYstdUI_DlgData.h"
#include "framework/Dialog.h"

struct KYstdUI_DlgArgs {
    UINT templateId = 0;
    HWND parent = nullptr;
    const KYstdUI_DlgData* data = nullptr;  // null: no help
};

class KYstdUI_Dlg : public fw::Dialog {
public:
    explicit KYstdUI_Dlg(const KYstdUI_DlgArgs& args);

    // Help for the control of that id; true when it was shown (or the control is a quiet one).
    bool ShowControlHelp(UINT controlId);
    // Help for the control under the last right click.
    bool ShowHelpAtPoint();
    // The help topic of a control; 0 for none.
    virtual DWORD HelpIdFromControl(WORD controlId) const;
    // The context menu of the last right click; true when it was shown or answered at once.
    virtual bool ShowContextMenu();
    const KYstdUI_DlgData& Data() const noexcept { return m_data; }

protected:
    bool OnInitDialog() override;
    bool PreTranslateMessage(MSG& msg) override;
    bool OnHelpInfo(const HELPINFO& info) override;
    bool OnCommand(UINT id, UINT code, HWND control) override;
    bool OnDialogMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) override;

private:
    HWND ChildAt(POINT client) const;
    // The caption's help button: the next click on a control asks for its help.
    void RunContextHelpMode();
    bool HelpForFocus();

    KYstdUI_DlgData m_data;
    DWORD m_helpPair[4] = {};  // control id, help id, and the closing zeroes
    POINT m_ptRightClick{};
};
