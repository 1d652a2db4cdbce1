// A child window of the frame that shows the document (stands for CView; the
// list view is a subclassed system list control, as CListView is).
#pragma once
#include "framework/CmdTarget.h"
#include "framework/WindowImpl.h"

namespace fw {

// The child id of the view inside its frame.
inline constexpr UINT kViewPaneId = 0xE900;

class Document;
class FrameWnd;

class View : public WindowImpl, public CmdTarget {
public:
    ~View() override;

    // Creates the view's window as a child of the frame, filling its client area.
    virtual bool CreateView(FrameWnd& frame, UINT id) = 0;
    virtual void OnInitialUpdate() {}

    Document* GetDocument() const { return m_pDocument; }
    void SetDocument(Document* doc) { m_pDocument = doc; }

private:
    Document* m_pDocument = nullptr;
};

}  // namespace fw
