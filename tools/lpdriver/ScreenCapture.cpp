#include "tools/lpdriver/ScreenCapture.h"
#include "foundation/UniqueHandle.h"
#include "tools/lpdriver/DriverFailure.h"

namespace lpdriver {

namespace {

inline void ReleaseScreenDc(HDC dc) noexcept { ::ReleaseDC(nullptr, dc); }
inline void DeleteMemoryDc(HDC dc) noexcept { ::DeleteDC(dc); }
using UniqueScreenDc = ky::UniqueAny<HDC, ReleaseScreenDc>;
using UniqueMemoryDc = ky::UniqueAny<HDC, DeleteMemoryDc>;

BITMAPINFOHEADER Header24(int width, int height) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;  // positive: rows run bottom-up, as BMP files store them
    header.biPlanes = 1;
    header.biBitCount = 24;
    header.biCompression = BI_RGB;
    return header;
}

size_t Stride(int width) { return (static_cast<size_t>(width) * 3 + 3) & ~size_t{3}; }

}  // namespace

ScreenCapture::ScreenCapture(HWND window) {
    RECT rect{};
    if (!::GetWindowRect(window, &rect)) ThrowWin32(L"GetWindowRect");
    const RECT screen{::GetSystemMetrics(SM_XVIRTUALSCREEN), ::GetSystemMetrics(SM_YVIRTUALSCREEN),
                      ::GetSystemMetrics(SM_XVIRTUALSCREEN) + ::GetSystemMetrics(SM_CXVIRTUALSCREEN),
                      ::GetSystemMetrics(SM_YVIRTUALSCREEN) + ::GetSystemMetrics(SM_CYVIRTUALSCREEN)};
    RECT shown{};
    if (!::IntersectRect(&shown, &rect, &screen)) ThrowNotFound(L"the window lies off the screen");
    m_width = shown.right - shown.left;
    m_height = shown.bottom - shown.top;

    const UniqueScreenDc screenDc(::GetDC(nullptr));
    if (!screenDc) ThrowWin32(L"GetDC");
    const UniqueMemoryDc memoryDc(::CreateCompatibleDC(screenDc.get()));
    BITMAPINFO info{};
    info.bmiHeader = Header24(m_width, m_height);
    void* bits = nullptr;
    const ky::UniqueGdiObject bitmap(
        ::CreateDIBSection(screenDc.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!memoryDc || !bitmap) ThrowWin32(L"CreateDIBSection");
    const HGDIOBJ previous = ::SelectObject(memoryDc.get(), bitmap.get());
    const BOOL copied = ::BitBlt(memoryDc.get(), 0, 0, m_width, m_height, screenDc.get(),
                                 shown.left, shown.top, SRCCOPY);
    ::GdiFlush();
    if (copied) m_pixels.assign(static_cast<const char*>(bits), Stride(m_width) * m_height);
    ::SelectObject(memoryDc.get(), previous);
    if (!copied) ThrowWin32(L"BitBlt");
}

void ScreenCapture::SaveBmp(const std::wstring& path) const {
    const BITMAPINFOHEADER header = Header24(m_width, m_height);
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;  // "BM"
    file.bfOffBits = sizeof file + sizeof header;
    file.bfSize = static_cast<DWORD>(file.bfOffBits + m_pixels.size());
    const ky::UniqueFile out(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!out) ThrowWin32(L"CreateFileW of " + path);
    DWORD written = 0;
    const bool ok = ::WriteFile(out.get(), &file, sizeof file, &written, nullptr) &&
                    ::WriteFile(out.get(), &header, sizeof header, &written, nullptr) &&
                    ::WriteFile(out.get(), m_pixels.data(), static_cast<DWORD>(m_pixels.size()),
                                &written, nullptr);
    if (!ok) ThrowWin32(L"WriteFile of " + path);
}

}  // namespace lpdriver
