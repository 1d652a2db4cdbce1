// The data of the one open document and the views that show it (stands for CDocument).
#pragma once
#include <vector>

#include "framework/CmdTarget.h"

namespace fw {

class DocTemplate;
class View;

class Document : public CmdTarget {
public:
    ~Document() override = default;

    virtual bool OnNewDocument() { return true; }
    virtual bool OnOpenDocument(const wchar_t* path) { (void)path; return false; }

    void AddView(View* view);
    void RemoveView(View* view);
    const std::vector<View*>& Views() const { return m_views; }
    DocTemplate* Template() const { return m_pTemplate; }
    void SetTemplate(DocTemplate* t) { m_pTemplate = t; }

private:
    std::vector<View*> m_views;
    DocTemplate* m_pTemplate = nullptr;
};

}  // namespace fw
