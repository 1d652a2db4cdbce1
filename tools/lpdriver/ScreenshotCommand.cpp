// screenshot: what a window looks like, for the record of a failing test.
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ScreenCapture.h"

namespace lpdriver {

int RunScreenshot(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {});
    args.RequirePositional(2, 2);
    const HWND window = ArgumentList::ParseWindow(args.Positional(0));
    const ScreenCapture capture(window);
    capture.SaveBmp(args.Positional(1));
    out.Window(L"hwnd", window);
    out.Number(L"width", capture.Width());
    out.Number(L"height", capture.Height());
    out.Field(L"file", args.Positional(1));
    return kExitSuccess;
}

}  // namespace lpdriver
