#include "framework/DocTemplate.h"

#include "framework/WinApp.h"

namespace fw {

DocTemplate::~DocTemplate() {
    if (m_frame && *m_frame) m_frame->Destroy();
    m_view.reset();
    m_frame.reset();
    m_document.reset();
}

bool DocTemplate::CreateFrameAndView() {
    if (m_frame && *m_frame) return true;
    if (!m_args.makeFrame || !m_args.makeView) return false;
    m_frame = m_args.makeFrame();
    if (!m_frame || !m_frame->LoadFrame(m_args.resourceId)) return false;
    m_view = m_args.makeView();
    if (!m_view) return false;
    m_view->SetDocument(m_document.get());
    m_document->AddView(m_view.get());
    if (!m_view->CreateView(*m_frame, kViewPaneId)) return false;
    m_frame->SetActiveView(m_view.get());
    if (WinApp* app = WinApp::Current(); app && !app->MainWindow()) app->SetMainWindow(m_frame.get());
    return true;
}

void DocTemplate::DestroyFrameAndView() {
    WinApp* app = WinApp::Current();
    if (app && app->MainWindow() == m_frame.get()) app->SetMainWindow(nullptr);
    if (m_frame && *m_frame) m_frame->Destroy();
    if (m_view && m_document) m_document->RemoveView(m_view.get());
    m_view.reset();
    m_frame.reset();
}

Document* DocTemplate::OpenDocumentFile(const wchar_t* path, bool makeVisible) {
    if (!m_document) {
        if (!m_args.makeDocument) return nullptr;
        m_document = m_args.makeDocument();
        if (!m_document) return nullptr;
        m_document->SetTemplate(this);
    }
    const bool frameExisted = m_frame && *m_frame;
    if (!CreateFrameAndView() ||
        !(path ? m_document->OnOpenDocument(path) : m_document->OnNewDocument())) {
        // A frame made for a document that could not be built goes again: no
        // empty window is left standing as the main window.
        if (!frameExisted) DestroyFrameAndView();
        return nullptr;
    }
    m_frame->InitialUpdateFrame(m_document.get(), makeVisible);
    return m_document.get();
}

}  // namespace fw
