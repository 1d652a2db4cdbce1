// lpdriver: drives and observes a running program from outside, for end-to-end
// tests. One command per run; the answer is `key=value` lines on standard output
// and the exit code (see README.md).
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/OutputWriter.h"
#include <cstring>
#include <exception>

namespace {

using lpdriver::OutputWriter;
using lpdriver::Words;

struct CommandEntry {
    const wchar_t* name;
    int (*run)(const Words&, OutputWriter&);
    const wchar_t* usage;
};

constexpr CommandEntry kCommands[] = {
    {L"start", lpdriver::RunStart,
     L"start <exe> [args...] [--dir D] [--idle ms] [--wait ms [--kill-on-timeout]] [-- args...]"},
    {L"wait", lpdriver::RunWait, L"wait <pid> <ms> [--kill-on-timeout]"},
    {L"windows", lpdriver::RunWindows, L"windows <pid|any> [--visible]"},
    {L"find-window", lpdriver::RunFindWindow,
     L"find-window <pid|any> [--class C] [--title T] [--title-contains T] [--visible] <ms>"},
    {L"controls", lpdriver::RunControls, L"controls <0xhwnd|pid>"},
    {L"msgbox", lpdriver::RunMessageBox, L"msgbox <pid|any> [--title T] <ms>"},
    {L"press", lpdriver::RunPress,
     L"press <pid|any> <button id|button text> [--title T] [--click] [--no-wait] <ms>"},
    {L"listview", lpdriver::RunListView,
     L"listview <pid|any> [--window 0xhwnd] [--min-rows n] [--positions] <ms>"},
    {L"select", lpdriver::RunSelect, L"select <pid|any> [--window 0xhwnd] <row>[,<row>...] <ms>"},
    {L"activate", lpdriver::RunActivate,
     L"activate <pid|any> [--window 0xhwnd] <row> [--keyboard] [--input auto|system|posted] <ms>"},
    {L"header-click", lpdriver::RunHeaderClick,
     L"header-click <pid|any> [--window 0xhwnd] <column> [--input auto|system|posted] <ms>"},
    {L"context", lpdriver::RunContext,
     L"context <pid|any> [--window 0xhwnd] <row|-1> [--input auto|system|posted] <ms>"},
    {L"drag", lpdriver::RunDrag,
     L"drag <pid|any> [--window 0xhwnd] <row> <x> <y> [--input auto|system|posted] <ms>"},
    {L"column-width", lpdriver::RunColumnWidth, L"column-width <pid|any> [--window 0xhwnd] <column> <width> <ms>"},
    {L"column-order", lpdriver::RunColumnOrder, L"column-order <pid|any> [--window 0xhwnd] <i0>,<i1>,... <ms>"},
    {L"dialog", lpdriver::RunDialog, L"dialog <pid|any> [--title T] <ms>"},
    {L"check", lpdriver::RunCheck, L"check <pid|any> <control id> <0|1> [--title T] <ms>"},
    {L"set-text", lpdriver::RunSetText, L"set-text <pid|any> <control id> <text> [--title T] <ms>"},
    {L"listbox", lpdriver::RunListBox,
     L"listbox <pid|any> <control id> <index|text> [--title T] [--double] <ms>"},
    {L"pick-color", lpdriver::RunPickColor, L"pick-color <pid|any> <red> <green> <blue> [--cancel] <ms>"},
    {L"statusbar", lpdriver::RunStatusBar, L"statusbar <pid|any> [--window 0xhwnd] <ms>"},
    {L"command", lpdriver::RunCommand, L"command <0xhwnd|pid> <id> [--post] [--system] [--timeout ms]"},
    {L"keys", lpdriver::RunKeys, L"keys <0xhwnd|pid> <vk>[,<vk>...]"},
    {L"close", lpdriver::RunClose, L"close <pid> [--all] [--wait ms]"},
    {L"screenshot", lpdriver::RunScreenshot, L"screenshot <0xhwnd> <file.bmp>"},
    {L"chord", lpdriver::RunChord, L"chord <0xhwnd|pid> <vk>[+<vk>...]"},
    {L"frame", lpdriver::RunFrame, L"frame <0xhwnd|pid> [--menu] [--buttons id,id...]"},
};

void PrintUsage(OutputWriter& out) {
    for (const CommandEntry& entry : kCommands) out.Field(L"usage", entry.usage);
}

const CommandEntry* FindCommand(const std::wstring& name) {
    for (const CommandEntry& entry : kCommands)
        if (name == entry.name) return &entry;
    return nullptr;
}

int Dispatch(int argc, wchar_t** argv, OutputWriter& out) {
    if (argc < 2) lpdriver::ThrowUsage(L"name a command (lpdriver help lists them)");
    const std::wstring name = argv[1];
    if (name == L"help" || name == L"--help" || name == L"/?") {
        PrintUsage(out);
        return lpdriver::kExitSuccess;
    }
    const CommandEntry* entry = FindCommand(name);
    if (entry == nullptr) lpdriver::ThrowUsage(L"unknown command " + name);
    try {
        return entry->run(Words(argv + 2, argv + argc), out);
    } catch (lpdriver::DriverFailure& failure) {
        if (failure.exitCode == lpdriver::kExitUsage) failure.message += L"; usage: " + std::wstring(entry->usage);
        throw;
    }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    OutputWriter out;
    try {
        return Dispatch(argc, argv, out);
    } catch (const lpdriver::DriverFailure& failure) {
        out.Error(failure.message);
        return failure.exitCode;
    } catch (const std::exception& e) {
        out.Error(L"unexpected failure: " + std::wstring(e.what(), e.what() + std::strlen(e.what())));
        return lpdriver::kExitWin32;
    }
}
