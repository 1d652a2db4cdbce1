// The program's entry: the one application object and the framework's start.
#include <windows.h>

#include "app/KYjlpApp.h"

namespace {
KYjlpApp theApp;
}

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int showCommand) {
    // A program the launch option names without a folder is looked for in the
    // system's folders before the current one, so that a folder the panel is
    // started from cannot slip in a program of the same name. Only flags that
    // are wrong, or a mode made permanent before, make this fail: not here.
    SetSearchPathMode(BASE_SEARCH_PATH_ENABLE_SAFE_SEARCHMODE | BASE_SEARCH_PATH_PERMANENT);
    return fw::RunApplication(showCommand);
}
