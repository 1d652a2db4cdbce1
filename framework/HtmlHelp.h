// The system's compiled-help viewer, HtmlHelpW of the HTML Help control. It is
// bound at first use, never linked, so that the program runs on a system without
// it: then every call gives null and help simply does not appear.
#pragma once
#include <windows.h>
#include <htmlhelp.h>

#include <string>

namespace fw {

// The what-is-this texts inside the help file, as a help path names them.
inline constexpr const wchar_t* kHelpPopupSuffix = L"::KYjlpContext.txt";

// HtmlHelpW itself: the help window (or the popup) for the command, or null when
// the viewer cannot be bound or the call fails. The first call binds the viewer:
// the in-process server registered for the HTML Help control's class, else
// "hhctrl.ocx" by name, entry point by ordinal 15. A failed binding is final for
// the process.
HWND CallHtmlHelp(HWND caller, const wchar_t* path, UINT command, DWORD_PTR data);

// The path a help command opens: the help file, and for the what-is-this command
// (HH_TP_HELP_CONTEXTMENU) the popup texts inside it.
std::wstring HelpPathForCommand(const std::wstring& helpFile, UINT command);

// The help window on the topic that the help file's map gives a context id.
HWND ShowHelpContext(HWND caller, const std::wstring& helpFile, DWORD contextId);

// The help window on a page of the help file ("about.htm"); null or empty: the
// file's default page.
HWND ShowHelpTopic(HWND caller, const std::wstring& helpFile, const wchar_t* page = nullptr);

// The what-is-this popup of a dialog's control: idPairs holds control id and help
// id pairs, ended by 0, 0. True when the viewer answered with a window.
bool ShowControlPopup(HWND control, const std::wstring& helpFile, const DWORD* idPairs);

// Closes every help window the process opened. Nothing is loaded for it: without
// a bound viewer there is nothing to close.
void CloseHtmlHelp();

// Whether the viewer is bound, and the module it came from (null when not bound).
bool HtmlHelpBound();
HMODULE HtmlHelpModule();

}  // namespace fw
