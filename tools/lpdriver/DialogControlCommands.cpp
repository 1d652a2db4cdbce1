// dialog, check, set-text and pick-color: the controls of a dialog that a process
// shows, read and set as a user would (a click on a check box, text typed into
// an edit field), and the system's colour dialog answered with a colour.
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/Deadline.h"
#include "tools/lpdriver/DialogReader.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ProcessWindows.h"
#include "tools/lpdriver/WindowWait.h"
#include <vector>

namespace lpdriver {

namespace {

// The colour dialog's fields of red, green and blue.
constexpr int kRedField = 706, kGreenField = 707, kBlueField = 708;

// The control named on the command line, waited for with its dialog; a control of
// a property sheet's page counts as the sheet's.
DialogControl AwaitControl(const ArgumentList& args, DWORD processId, const std::wstring& word, DWORD limit,
                           OutputWriter& out) {
    const int id = static_cast<int>(static_cast<int64_t>(ArgumentList::ParseNumber(word, L"control id")));
    return DialogReader::AwaitControl(processId, args.Value(L"--title"), id, limit, out);
}

bool IsCheckBox(HWND control) {
    if (::lstrcmpiW(ProcessWindows::ClassOf(control).c_str(), L"Button") != 0) return false;
    const LONG_PTR kind = ::GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK;
    return kind == BS_CHECKBOX || kind == BS_AUTOCHECKBOX || kind == BS_3STATE || kind == BS_AUTO3STATE ||
           kind == BS_RADIOBUTTON || kind == BS_AUTORADIOBUTTON;
}

int CheckOf(HWND control) { return static_cast<int>(ProcessWindows::Ask(control, BM_GETCHECK, 0, 0)); }

// The items of a list box; the system carries each text across the processes.
void PrintItems(HWND list, int id, OutputWriter& out) {
    const int count = static_cast<int>(ProcessWindows::Ask(list, LB_GETCOUNT, 0, 0));
    for (int item = 0; item < count; ++item) {
        const int length = static_cast<int>(ProcessWindows::Ask(list, LB_GETTEXTLEN, item, 0));
        if (length < 0) continue;
        std::vector<wchar_t> text(static_cast<size_t>(length) + 1, L'\0');
        ProcessWindows::Ask(list, LB_GETTEXT, item, reinterpret_cast<LPARAM>(text.data()));
        out.Raw(L"item", std::to_wstring(id) + L"\t" + OutputWriter::Escape(text.data()));
    }
}

void SetFieldText(HWND field, const std::wstring& text) {
    ProcessWindows::Ask(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

HWND FindColorDialog(DWORD processId) {
    for (HWND window : ProcessWindows::TopLevel(processId)) {
        if (!::IsWindowVisible(window) || ProcessWindows::ClassOf(window) != DialogReader::kDialogClass) continue;
        if (::GetDlgItem(window, kRedField) && ::GetDlgItem(window, kGreenField) && ::GetDlgItem(window, kBlueField))
            return window;
    }
    return nullptr;
}

}  // namespace

int RunDialog(const Words& words, OutputWriter& out) {
    const HWND dialog = DialogReader::AwaitNamed(words, out);
    for (HWND child : ProcessWindows::Descendants(dialog)) {
        const WindowFacts facts = ProcessWindows::Describe(child);
        const bool check = IsCheckBox(child);
        out.Record({{L"control", std::to_wstring(facts.controlId)},
                    {L"class", facts.className},
                    {L"visible", facts.visible ? L"1" : L"0"},
                    {L"enabled", facts.enabled ? L"1" : L"0"},
                    {L"checked", check ? std::to_wstring(CheckOf(child)) : L"-"},
                    {L"text", ProcessWindows::TextOf(child)}});
        if (::lstrcmpiW(facts.className.c_str(), L"ListBox") == 0) PrintItems(child, facts.controlId, out);
    }
    return kExitSuccess;
}

int RunCheck(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--title", true}});
    args.RequirePositional(4, 4);
    const DWORD processId = ProcessWindows::ParseProcessId(args.Positional(0));
    const int wanted = static_cast<int>(ArgumentList::ParseDword(args.Positional(2), L"check state"));
    if (wanted > 1) ThrowUsage(L"a check box is set to 0 or 1");
    const DWORD limit = ArgumentList::ParseDword(args.Positional(3), L"time limit");
    const auto [dialog, box] = AwaitControl(args, processId, args.Positional(1), limit, out);
    if (!IsCheckBox(box)) ThrowNotFound(L"control " + args.Positional(1) + L" is no check box");
    out.Window(L"hwnd", dialog);
    if (CheckOf(box) != wanted) {
        if (!::IsWindowEnabled(box)) ThrowNotFound(L"check box " + args.Positional(1) + L" is disabled");
        // A click, as the user's: the dialog hears of it as of any click.
        if (!::PostMessageW(box, BM_CLICK, 0, 0)) ThrowWin32(L"PostMessageW");
        const Deadline done(limit);
        while (CheckOf(box) != wanted && done.Pause()) {}
    }
    out.Number(L"checked", CheckOf(box));
    return CheckOf(box) == wanted ? kExitSuccess : kExitNotFound;
}

int RunSetText(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--title", true}});
    args.RequirePositional(4, 4);
    const DWORD processId = ProcessWindows::ParseProcessId(args.Positional(0));
    const DWORD limit = ArgumentList::ParseDword(args.Positional(3), L"time limit");
    const auto [dialog, field] = AwaitControl(args, processId, args.Positional(1), limit, out);
    out.Window(L"hwnd", dialog);
    SetFieldText(field, args.Positional(2));
    out.Field(L"text", ProcessWindows::TextOf(field));
    return kExitSuccess;
}

int RunPickColor(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--cancel", false}});
    args.RequirePositional(5, 5);
    const DWORD processId = ProcessWindows::ParseProcessId(args.Positional(0));
    int parts[3] = {};
    for (int i = 0; i < 3; ++i) {
        parts[i] = static_cast<int>(ArgumentList::ParseDword(args.Positional(1 + i), L"colour part"));
        if (parts[i] > 255) ThrowUsage(L"a colour part lies within 0 and 255");
    }
    const DWORD limit = ArgumentList::ParseDword(args.Positional(4), L"time limit");
    WindowWait wait(processId, limit);
    const HWND dialog = wait.Until([&] { return FindColorDialog(processId); }, L"the colour dialog", out);
    out.Window(L"hwnd", dialog);
    // Typed into the fields: the dialog takes the colour from what they say.
    const int fields[3] = {kRedField, kGreenField, kBlueField};
    for (int i = 0; i < 3; ++i) SetFieldText(::GetDlgItem(dialog, fields[i]), std::to_wstring(parts[i]));
    out.Number(L"color", RGB(parts[0], parts[1], parts[2]));
    const int button = args.Has(L"--cancel") ? IDCANCEL : IDOK;
    const HWND pressed = ::GetDlgItem(dialog, button);
    if (!::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), reinterpret_cast<LPARAM>(pressed)))
        ThrowWin32(L"PostMessageW");
    out.Number(L"pressed", button);
    const Deadline gone(limit);
    while (::IsWindow(dialog) && ::IsWindowVisible(dialog) && gone.Pause()) {}
    const bool closed = !::IsWindow(dialog) || !::IsWindowVisible(dialog);
    out.Number(L"closed", closed ? 1 : 0);
    return closed ? kExitSuccess : kExitNotFound;
}

}  // namespace lpdriver
