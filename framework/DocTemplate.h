// The single-document template (stands for CSingleDocTemplate): it makes the one
// document, its frame and its view from factories, and owns all three.
#pragma once
#include <functional>
#include <memory>

#include "framework/Document.h"
#include "framework/FrameWnd.h"
#include "framework/View.h"

namespace fw {

struct DocTemplateArgs {
    UINT resourceId = 0;
    std::function<std::unique_ptr<Document>()> makeDocument;
    std::function<std::unique_ptr<FrameWnd>()> makeFrame;
    std::function<std::unique_ptr<View>()> makeView;
};

class DocTemplate {
public:
    explicit DocTemplate(DocTemplateArgs args) : m_args(std::move(args)) {}
    ~DocTemplate();
    DocTemplate(const DocTemplate&) = delete;
    DocTemplate& operator=(const DocTemplate&) = delete;

    // A new document (path null) or an opened one, with frame and view; the frame
    // becomes the application's main window and is shown when makeVisible.
    Document* OpenDocumentFile(const wchar_t* path, bool makeVisible = true);
    Document* GetDocument() const { return m_document.get(); }
    FrameWnd* GetFrame() const { return m_frame.get(); }

private:
    bool CreateFrameAndView();
    void DestroyFrameAndView();

    DocTemplateArgs m_args;
    // Teardown order matters: the view's window dies with the frame's, then the
    // objects go view first, frame, and the document last, since views point at it.
    std::unique_ptr<Document> m_document;
    std::unique_ptr<FrameWnd> m_frame;
    std::unique_ptr<View> m_view;
};

}  // namespace fw
