#include "printmonitor/TestPage.h"

#include <windows.h>

#include <cwchar>
#include <vector>

#include "foundation/UniqueHandle.h"
#include "printmonitor/PrintMonitorRecords.h"
#include "printmonitor/Spooler.h"

namespace kypm {

namespace {

constexpr const wchar_t* kFace = L"Arial";

ky::UniqueHFont MakeFont(HDC dc, int points, int weight) {
    const int height = -MulDiv(points, GetDeviceCaps(dc, LOGPIXELSY), 72);
    return ky::UniqueHFont(CreateFontW(height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                       OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                       DEFAULT_PITCH | FF_SWISS, kFace));
}

std::wstring Now() {
    SYSTEMTIME t;
    GetLocalTime(&t);
    wchar_t text[64];
    swprintf(text, 64, L"%04u-%02u-%02u %02u:%02u:%02u", t.wYear, t.wMonth, t.wDay, t.wHour,
             t.wMinute, t.wSecond);
    return text;
}

// Draws the lines one under the other from the top margin; false when GDI refused.
bool DrawPage(HDC dc, const std::vector<std::wstring>& lines) {
    const int dpiX = GetDeviceCaps(dc, LOGPIXELSX), dpiY = GetDeviceCaps(dc, LOGPIXELSY);
    const int width = GetDeviceCaps(dc, HORZRES), height = GetDeviceCaps(dc, VERTRES);
    const int margin = dpiX / 2;
    SetBkMode(dc, TRANSPARENT);
    HGDIOBJ oldBrush = SelectObject(dc, GetStockObject(NULL_BRUSH));
    bool ok = Rectangle(dc, margin, dpiY / 2, width - margin, height - dpiY / 2) != FALSE;
    SelectObject(dc, oldBrush);
    ky::UniqueHFont title = MakeFont(dc, 24, FW_BOLD), body = MakeFont(dc, 12, FW_NORMAL);
    if (!title || !body) return false;
    int y = dpiY;
    for (size_t i = 0; i < lines.size() && ok; ++i) {
        HGDIOBJ old = SelectObject(dc, i == 0 ? title.get() : body.get());
        TEXTMETRICW metrics{};
        GetTextMetricsW(dc, &metrics);
        ok = TextOutW(dc, margin + dpiX / 2, y, lines[i].c_str(), static_cast<int>(lines[i].size())) != FALSE;
        y += metrics.tmHeight + metrics.tmExternalLeading + (i == 0 ? dpiY / 4 : 0);
        SelectObject(dc, old);
    }
    return ok;
}

}  // namespace

std::wstring TestPage::DocumentName(const std::wstring& printerName) {
    return L"Test Page - " + printerName;
}

int32_t TestPage::Print(const std::wstring& printerName) {
    Spooler::Printer printer;
    if (!Spooler::FindPrinter(printerName, printer)) return kNoSuchPrinter;
    ky::UniqueDeviceDC dc(CreateDCW(L"WINSPOOL", printer.name.c_str(), nullptr, nullptr));
    if (!dc) return kRefused;
    const std::wstring document = DocumentName(printer.name);
    DOCINFOW info{};
    info.cbSize = sizeof info;
    info.lpszDocName = document.c_str();
    if (StartDocW(dc.get(), &info) <= 0) return kRefused;
    bool ok = StartPage(dc.get()) > 0;
    ok = ok && DrawPage(dc.get(), {L"Printer Test Page", L"Printer: " + printer.name,
                                    L"Driver: " + printer.driver, L"Port: " + printer.port,
                                    L"Printed: " + Now()});
    ok = ok && EndPage(dc.get()) > 0;
    if (!ok) {
        DWORD error = GetLastError();
        AbortDoc(dc.get());
        SetLastError(error);
        return kRefused;
    }
    return EndDoc(dc.get()) > 0 ? kDone : kRefused;
}

}  // namespace kypm
