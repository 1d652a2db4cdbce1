#include "framework/MessageBox.h"

#include "framework/ResourceModule.h"
#include "framework/WinApp.h"

namespace fw {

int AppMessageBox(const std::wstring& text, UINT type) {
    WinApp* app = WinApp::Current();
    HWND owner = app && app->MainWindow() ? app->MainWindow()->Handle() : nullptr;
    const wchar_t* title = app ? app->AppName() : L"";
    return MessageBoxW(owner, text.c_str(), title, type);
}

int AppMessageBox(UINT stringId, UINT type) { return AppMessageBox(ResString(stringId), type); }

}  // namespace fw
