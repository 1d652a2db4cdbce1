// One answered situation as the log records it.
#pragma once
#include <windows.h>
#include <string>

class KYbpmSituation;

struct KYbpmLogEntry {
    SYSTEMTIME time{};
    const KYbpmSituation* situation = nullptr;
    const wchar_t* kind = L"failure";
    int answer = 0;       // the button taken, or given by default; 0 when nothing was asked
    bool shown = false;   // the class and the assertiveness level let it be shown
    bool boxed = false;   // a message box was really on the screen
    std::wstring text;    // the full text, code links included
};
