// The main window that holds the view (stands for CFrameWnd): it routes commands
// view first, then document, then itself, then the application, and quits the
// application when it is the main window and is destroyed.
#pragma once
#include <string>

#include "framework/CmdTarget.h"
#include "framework/WindowImpl.h"

namespace fw {

class Document;
class View;

class FrameWnd : public WindowImpl, public CmdTarget {
public:
    ~FrameWnd() override = default;

    // Creates the frame window (hidden) with the menu and shortcut keys of the resource id.
    virtual bool LoadFrame(UINT resourceId, DWORD style = WS_OVERLAPPEDWINDOW);
    // The shortcut keys of the frame's menu reach its commands, whatever has the focus.
    bool PreTranslateMessage(MSG& msg) override;
    // The menu the frame was made with (null when it has none or hid it).
    HMENU DefaultMenu() const { return m_hMenuDefault; }
    void SetDefaultMenu(HMENU menu) { m_hMenuDefault = menu; }
    View* ActiveView() const { return m_pView; }
    void SetActiveView(View* view) { m_pView = view; }
    Document* ActiveDocument() const;

    bool OnCmdMsg(UINT id, CmdUI* ui) override;
    // Shows the frame (or keeps it hidden) once document and view stand.
    virtual void InitialUpdateFrame(Document* doc, bool makeVisible);

protected:
    // The window's styles and place before it is made.
    virtual void PreCreateWindow(WindowCreateArgs& args) { (void)args; }
    // The window stands but is not yet shown; -1 refuses its creation.
    virtual int OnCreate() { return 0; }
    // A message for the first pane of the status bar (a command's prompt); empty: the idle text.
    virtual void SetMessageText(const std::wstring& text) { (void)text; }
    // The prompt or tooltip text of a command: its string is "prompt\ntooltip".
    static std::wstring CommandText(UINT id, bool tooltip);
    LRESULT OnMessage(UINT msg, WPARAM w, LPARAM l) override;
    virtual void OnClose();
    virtual void RecalcLayout();
    // Asks each item of a menu that opens for its state.
    void UpdateMenuItems(HMENU menu);

private:
    LRESULT OnMenuSelectPrompt(UINT item, UINT flags, HMENU menu);
    bool OnToolTipText(NMHDR& header);

    View* m_pView = nullptr;
    HACCEL m_hAccel = nullptr;  // a resource of the library: never destroyed
    HMENU m_hMenuDefault = nullptr;
};

}  // namespace fw
