// msgbox and press: the message boxes and dialogs that a process shows.
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/Deadline.h"
#include "tools/lpdriver/DialogReader.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ProcessWindows.h"

namespace lpdriver {

namespace {

void PrintButtons(const std::vector<DialogButton>& buttons, OutputWriter& out) {
    for (const DialogButton& button : buttons)
        out.Record({{L"button", std::to_wstring(button.id)},
                    {L"text", button.text},
                    {L"enabled", button.enabled ? L"1" : L"0"}});
}

}  // namespace

int RunMessageBox(const Words& words, OutputWriter& out) {
    const HWND dialog = DialogReader::AwaitNamed(words, out);
    out.Field(L"text", DialogReader::MessageText(dialog));
    PrintButtons(DialogReader::Buttons(dialog), out);
    return kExitSuccess;
}

int RunPress(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--title", true}, {L"--click", false}, {L"--no-wait", false}});
    args.RequirePositional(3, 3);
    const DWORD processId = ProcessWindows::ParseProcessId(args.Positional(0));
    const std::wstring& wanted = args.Positional(1);
    const DWORD limit = ArgumentList::ParseDword(args.Positional(2), L"time limit");
    const HWND dialog = DialogReader::Await(processId, args.Value(L"--title"), limit, out);
    out.Window(L"hwnd", dialog);
    const std::vector<DialogButton> buttons = DialogReader::Buttons(dialog);
    const auto button = DialogReader::Choose(buttons, wanted);
    if (!button) {
        PrintButtons(buttons, out);
        ThrowNotFound(L"the dialog has no button " + wanted);
    }
    DialogReader::Press(*button, args.Has(L"--click"));
    out.Number(L"pressed", button->id);
    if (args.Has(L"--no-wait")) return kExitSuccess;
    // The caller goes on with what the press caused: first the dialog must be gone.
    const Deadline gone(limit);
    while (::IsWindow(dialog) && ::IsWindowVisible(dialog) && gone.Pause()) {}
    out.Number(L"closed", ::IsWindow(dialog) && ::IsWindowVisible(dialog) ? 0 : 1);
    return kExitSuccess;
}

}  // namespace lpdriver
