// A dialog box of another process, message boxes above all: finding it, reading
// its caption, text and buttons, and pressing one of them.
#pragma once
#include <windows.h>
#include "tools/lpdriver/OutputWriter.h"
#include <optional>
#include <string>
#include <vector>

namespace lpdriver {

struct DialogButton {
    HWND window = nullptr;
    int id = 0;
    std::wstring text;
    bool enabled = false;
};

struct DialogControl {
    HWND dialog = nullptr;
    HWND control = nullptr;
};

class DialogReader {
public:
    static constexpr const wchar_t* kDialogClass = L"#32770";
    // The static control that carries a message box's text.
    static constexpr int kMessageTextId = 0xFFFF;

    // The first visible dialog of the process in Z order (the newest modal one
    // stands on top), with that caption when one is given; null when none shows.
    static HWND FindVisible(DWORD processId, const std::optional<std::wstring>& caption);
    static std::wstring MessageText(HWND dialog);
    // The visible buttons: a message box also holds hidden ones for the kinds it does not show.
    static std::vector<DialogButton> Buttons(HWND dialog);
    // A button named by its id, or by its text compared without '&' and case.
    static std::optional<DialogButton> Choose(const std::vector<DialogButton>& buttons,
                                              const std::wstring& word);
    // Posted, so that a press which opens the next modal box does not hold the driver.
    // The command goes to the button's parent: the dialog, or the page of a property
    // sheet that holds it (the sheet's own buttons, Back and Next among them, are
    // children of the sheet, which acts on their commands).
    static void Press(const DialogButton& button, bool click);
    // The control with this id among all descendants of the dialog, the pages of a
    // property sheet included (each page a child dialog); where pages repeat an id, a
    // visible control before a hidden one. Null when there is none.
    static HWND Control(HWND dialog, int id);
    // Waits up to the limit for the dialog (FindVisible); on time-out prints timeout=1
    // and fails as "not found".
    static HWND Await(DWORD processId, const std::optional<std::wstring>& caption, DWORD limitMs,
                      OutputWriter& out);
    // The head of the commands that read a dialog, `<pid|any> [--title T] <ms>`: the
    // dialog waited for, its `hwnd=` and `caption=` printed.
    static HWND AwaitNamed(const std::vector<std::wstring>& words, OutputWriter& out);
    // Waits up to the limit for the dialog (FindVisible) and the control in it; on
    // time-out prints timeout=1 and fails as "not found".
    static DialogControl AwaitControl(DWORD processId, const std::optional<std::wstring>& caption, int id,
                                      DWORD limitMs, OutputWriter& out);
};

}  // namespace lpdriver
