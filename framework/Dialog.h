// A modal dialog from a template of the resource library (stands for CDialog).
// DoModal finds the template in the current resource module, creates the dialog
// with one static procedure that stores `this` and dispatches to typed virtual
// handlers, and pumps messages through the application until the dialog ends, so
// that the dialog sees the messages of its windows first (keys, help, the mouse)
// and the application's watches keep running while it shows.
#pragma once
#include <windows.h>

#include "framework/DataExchange.h"
#include "framework/Window.h"

namespace fw {

struct DialogArgs {
    UINT templateId = 0;
    HWND parent = nullptr;  // null: the application's main window while it shows
};

class Dialog : public Window {
public:
    explicit Dialog(const DialogArgs& args) noexcept : m_args(args) {}
    ~Dialog() override;
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    // The end code (IDOK, IDCANCEL or what EndDialog was given); -1 when the
    // dialog could not be shown (no template, no window).
    virtual INT_PTR DoModal();
    // Ends the modal loop with that code; the window goes when DoModal returns.
    void EndDialog(INT_PTR result) noexcept;
    bool IsModal() const noexcept { return m_bModal; }
    INT_PTR ModalResult() const noexcept { return m_nResult; }
    UINT TemplateId() const noexcept { return m_args.templateId; }

    // Controls to members (save) or members to controls; false when a control is missing.
    bool UpdateData(bool save);
    HWND Item(int id) const noexcept { return ::GetDlgItem(m_hwnd, id); }
    bool IsChecked(int id) const noexcept { return ::IsDlgButtonChecked(m_hwnd, id) == BST_CHECKED; }
    // Over the owner, or over the screen's work area without one.
    void CenterWindow();

    // The application's pump asks the innermost modal dialog first; true when it took the message.
    static bool PreTranslateForModal(MSG& msg);

protected:
    // After the controls stand: the members go into the controls. False when the
    // focus was set here, true for the dialog to give it to the first control.
    virtual bool OnInitDialog();
    virtual void DoDataExchange(DataExchange& dx) { (void)dx; }
    // After every exchange, whatever it read or wrote.
    virtual void OnDataExchanged(bool save) { (void)save; }
    // WM_COMMAND; true when handled. OK and Cancel go to OnOK and OnCancel.
    virtual bool OnCommand(UINT id, UINT code, HWND control);
    virtual void OnOK();
    virtual void OnCancel() { EndDialog(IDCANCEL); }
    // WM_HELP; true when handled.
    virtual bool OnHelpInfo(const HELPINFO& info) { (void)info; return false; }
    // A message for the dialog or one of its controls before it is dispatched; true when taken.
    virtual bool PreTranslateMessage(MSG& msg) { (void)msg; return false; }
    // Any other message; true when handled, with its result.
    virtual bool OnDialogMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result);
    // The window is gone; the object lives on for the next showing.
    virtual void OnDestroyed() {}
    // One message through the typed handlers, for procedures of derived kinds
    // (property pages) that find their object another way.
    INT_PTR Dispatch(UINT msg, WPARAM w, LPARAM l);
    bool Ended() const noexcept { return m_bEnded; }
    // A procedure of a derived kind hands each message here once it has found its object.
    static INT_PTR Run(Dialog* self, HWND hwnd, UINT msg, WPARAM w, LPARAM l) noexcept;
    // The dialog could not set itself up: it ends.
    virtual void OnSetUpFailed() noexcept { EndDialog(-1); }
    // Another dialog's first look at a message: a sheet asks its active page.
    static bool PreTranslateForPage(Dialog& page, MSG& msg) { return page.PreTranslateMessage(msg); }

private:
    static INT_PTR CALLBACK StaticProc(HWND hwnd, UINT msg, WPARAM w, LPARAM l) noexcept;
    bool Reflect(UINT msg, WPARAM w, LPARAM l, LRESULT& result);
    HWND Owner() const;
    void RunModalLoop();

    DialogArgs m_args;
    bool m_bModal = false;
    bool m_bEnded = false;
    INT_PTR m_nResult = -1;
    Dialog* m_pOuter = nullptr;  // the modal dialog that showed before this one
};

}  // namespace fw
