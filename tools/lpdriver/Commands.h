// The driver's commands. Each takes the words after its name, writes its answer
// and returns the exit code; a failure leaves by DriverFailure.
#pragma once
#include "tools/lpdriver/OutputWriter.h"
#include <string>
#include <vector>

namespace lpdriver {

using Words = std::vector<std::wstring>;

int RunStart(const Words& words, OutputWriter& out);
int RunWait(const Words& words, OutputWriter& out);
int RunWindows(const Words& words, OutputWriter& out);
int RunFindWindow(const Words& words, OutputWriter& out);
int RunControls(const Words& words, OutputWriter& out);
int RunCommand(const Words& words, OutputWriter& out);
int RunClose(const Words& words, OutputWriter& out);
int RunMessageBox(const Words& words, OutputWriter& out);
int RunPress(const Words& words, OutputWriter& out);
int RunListView(const Words& words, OutputWriter& out);
int RunStatusBar(const Words& words, OutputWriter& out);
int RunScreenshot(const Words& words, OutputWriter& out);
int RunSelect(const Words& words, OutputWriter& out);
int RunActivate(const Words& words, OutputWriter& out);
int RunHeaderClick(const Words& words, OutputWriter& out);
int RunDrag(const Words& words, OutputWriter& out);
int RunContext(const Words& words, OutputWriter& out);
int RunKeys(const Words& words, OutputWriter& out);
int RunColumnWidth(const Words& words, OutputWriter& out);
int RunColumnOrder(const Words& words, OutputWriter& out);
int RunDialog(const Words& words, OutputWriter& out);
int RunCheck(const Words& words, OutputWriter& out);
int RunSetText(const Words& words, OutputWriter& out);
int RunListBox(const Words& words, OutputWriter& out);
int RunPickColor(const Words& words, OutputWriter& out);
int RunFrame(const Words& words, OutputWriter& out);
int RunChord(const Words& words, OutputWriter& out);

// A window given as 0x... or, for a decimal number, the main frame of that process.
HWND WindowOrMainFrame(const std::wstring& word);

}  // namespace lpdriver
