#include "framework/Window.h"

namespace fw {

std::wstring Window::GetText() const {
    int length = ::GetWindowTextLengthW(m_hwnd);
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    length = ::GetWindowTextW(m_hwnd, text.data(), length + 1);
    text.resize(static_cast<size_t>(length > 0 ? length : 0));
    return text;
}

}  // namespace fw
