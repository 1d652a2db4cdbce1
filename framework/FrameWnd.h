// The main window that holds the view (stands for CFrameWnd): it routes commands
// view first, then document, then itself, then the application, and quits the
// application when it is the main window and is destroyed.
#pragma once
#include "framework/CmdTarget.h"
#include "framework/WindowImpl.h"

namespace fw {

class Document;
class View;

class FrameWnd : public WindowImpl, public CmdTarget {
public:
    ~FrameWnd() override = default;

    // Creates the frame window (hidden) with the menu and icon of the resource id.
    virtual bool LoadFrame(UINT resourceId, DWORD style = WS_OVERLAPPEDWINDOW);
    View* ActiveView() const { return m_pView; }
    void SetActiveView(View* view) { m_pView = view; }
    Document* ActiveDocument() const;

    bool OnCmdMsg(UINT id, CmdUI* ui) override;
    // Shows the frame (or keeps it hidden) once document and view stand.
    virtual void InitialUpdateFrame(Document* doc, bool makeVisible);

protected:
    LRESULT OnMessage(UINT msg, WPARAM w, LPARAM l) override;
    virtual void OnClose();
    virtual void RecalcLayout();
    // Asks each item of a menu that opens for its state.
    void UpdateMenuItems(HMENU menu);

private:
    View* m_pView = nullptr;
};

}  // namespace fw
