// The program's entry: the one application object and the framework's start.
#include <windows.h>

#include "app/KYjlpApp.h"

namespace {
KYjlpApp theApp;
}

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int showCommand) {
    return fw::RunApplication(showCommand);
}
