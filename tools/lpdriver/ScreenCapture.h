// A picture of a window as the screen shows it, saved as a 24-bit BMP file, for a
// person to look at when an end-to-end test fails.
#pragma once
#include <windows.h>
#include <string>

namespace lpdriver {

class ScreenCapture {
public:
    // Copies the window's rectangle, cut to the screen, from the screen.
    explicit ScreenCapture(HWND window);

    int Width() const noexcept { return m_width; }
    int Height() const noexcept { return m_height; }
    void SaveBmp(const std::wstring& path) const;

private:
    int m_width = 0;
    int m_height = 0;
    std::string m_pixels;  // bottom-up rows of blue, green, red, each padded to 4 bytes
};

}  // namespace lpdriver
