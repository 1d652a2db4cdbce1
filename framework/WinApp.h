// The application object (stands for CWinApp and its thread state): start-up by
// InitInstance, the message pump with idle counting, document templates, and the
// root of command routing. One instance per process, found by Current().
#pragma once
#include <windows.h>
#include <memory>
#include <string>
#include <vector>

#include "framework/CmdTarget.h"
#include "framework/DocTemplate.h"

namespace fw {

class WinApp : public CmdTarget {
public:
    explicit WinApp(const wchar_t* appName = L"");
    ~WinApp() override;
    WinApp(const WinApp&) = delete;
    WinApp& operator=(const WinApp&) = delete;

    static WinApp* Current() noexcept;

    virtual bool InitInstance() { return true; }
    // Pumps until WM_QUIT, turning OnIdle with rising counts while no message waits.
    virtual int Run();
    // One message fetched and dispatched; false on WM_QUIT.
    virtual bool PumpMessage();
    // Count 0 updates the command user interface and asks for another round;
    // higher counts have nothing left to do.
    virtual bool OnIdle(long count);
    virtual int ExitInstance() { return m_nExitCode; }
    virtual bool PreTranslateMessage(MSG& msg);
    // Input and most messages start a new idle sequence; paint, the caret blink
    // timer and a mouse move to the same place do not.
    bool IsIdleMessage(const MSG& msg);

    void AddDocTemplate(std::unique_ptr<DocTemplate> t);
    const std::vector<std::unique_ptr<DocTemplate>>& Templates() const { return m_templates; }
    virtual void OnFileNew();
    virtual Document* OpenDocumentFile(const wchar_t* path);
    bool OnCmdMsg(UINT id, CmdUI* ui) override;

    FrameWnd* MainWindow() const { return m_pMainWnd; }
    void SetMainWindow(FrameWnd* frame) { m_pMainWnd = frame; }
    const wchar_t* AppName() const { return m_strAppName.c_str(); }
    void SetAppName(const std::wstring& name) { m_strAppName = name; }
    // Destroys templates with their documents, frames and views.
    void CloseAllDocuments();

    int m_nCmdShow = SW_SHOWNORMAL;
    std::wstring m_strHelpFilePath;
    MSG m_msgCur{};
    int m_nExitCode = 0;

private:
    std::wstring m_strAppName;
    std::vector<std::unique_ptr<DocTemplate>> m_templates;
    FrameWnd* m_pMainWnd = nullptr;
    POINT m_ptLastMouse{-1, -1};
    UINT m_nLastMouseMsg = 0;
};

// The program's entry for wWinMain: InitInstance, then Run or ExitInstance.
int RunApplication(int showCommand);

}  // namespace fw
