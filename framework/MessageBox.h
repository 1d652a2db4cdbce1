// The framework's message-box helper (stands for AfxMessageBox): a text or a
// string id of the current resource module, owned by the main window, captioned
// with the application's title.
#pragma once
#include <windows.h>
#include <string>

namespace fw {

int AppMessageBox(const std::wstring& text, UINT type = MB_OK);
int AppMessageBox(UINT stringId, UINT type = MB_OK);

}  // namespace fw
