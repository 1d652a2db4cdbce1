// Move-only ownership of one Windows handle: the one place where handles are closed.
#pragma once
#include <windows.h>
#include <commctrl.h>
#include <setupapi.h>
#include <winspool.h>
#include <utility>

namespace ky {

// A handle kind: its type, how it is released, and the value that means "none"
// (a function, because INVALID_HANDLE_VALUE is no compile-time constant).
template <typename T>
constexpr T NullHandle() noexcept { return T{}; }
inline HANDLE InvalidHandle() noexcept { return INVALID_HANDLE_VALUE; }

template <typename T, auto Close, T (*Invalid)() = NullHandle<T>>
class UniqueAny {
public:
    UniqueAny() noexcept = default;
    explicit UniqueAny(T value) noexcept : m_value(value) {}
    ~UniqueAny() { reset(); }
    UniqueAny(const UniqueAny&) = delete;
    UniqueAny& operator=(const UniqueAny&) = delete;
    UniqueAny(UniqueAny&& other) noexcept : m_value(other.release()) {}
    UniqueAny& operator=(UniqueAny&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }

    T get() const noexcept { return m_value; }
    explicit operator bool() const noexcept { return m_value != Invalid(); }
    // For APIs that write a new handle through a pointer: the old one is released first.
    T* put() noexcept { reset(); return &m_value; }
    T release() noexcept { return std::exchange(m_value, Invalid()); }
    void reset(T value = Invalid()) noexcept {
        T old = std::exchange(m_value, value);
        if (old != Invalid()) Close(old);
    }

private:
    T m_value = Invalid();
};

namespace detail {
inline void CloseKey(HKEY h) noexcept { ::RegCloseKey(h); }
inline void CloseKernel(HANDLE h) noexcept { ::CloseHandle(h); }
inline void CloseFind(HANDLE h) noexcept { ::FindClose(h); }
inline void CloseIcon(HICON h) noexcept { ::DestroyIcon(h); }
inline void CloseMenu(HMENU h) noexcept { ::DestroyMenu(h); }
inline void CloseGdi(HGDIOBJ h) noexcept { ::DeleteObject(h); }
inline void CloseModule(HMODULE h) noexcept { ::FreeLibrary(h); }
inline void CloseLocal(HLOCAL h) noexcept { ::LocalFree(h); }
inline void CloseImageList(HIMAGELIST h) noexcept { ::ImageList_Destroy(h); }
inline void CloseDC(HDC h) noexcept { ::DeleteDC(h); }
inline void ClosePrinterHandle(HANDLE h) noexcept { ::ClosePrinter(h); }
inline void CloseInf(HINF h) noexcept { ::SetupCloseInfFile(h); }
inline HINF InvalidInf() noexcept { return static_cast<HINF>(INVALID_HANDLE_VALUE); }
}  // namespace detail

using UniqueHKey = UniqueAny<HKEY, detail::CloseKey>;
using UniqueHandle = UniqueAny<HANDLE, detail::CloseKernel>;
// CreateFileW and FindFirstFileW say "none" with INVALID_HANDLE_VALUE, not null.
using UniqueFile = UniqueAny<HANDLE, detail::CloseKernel, InvalidHandle>;
using UniqueFind = UniqueAny<HANDLE, detail::CloseFind, InvalidHandle>;
using UniqueHIcon = UniqueAny<HICON, detail::CloseIcon>;
using UniqueHMenu = UniqueAny<HMENU, detail::CloseMenu>;
using UniqueGdiObject = UniqueAny<HGDIOBJ, detail::CloseGdi>;
using UniqueHFont = UniqueAny<HFONT, detail::CloseGdi>;
using UniqueHBrush = UniqueAny<HBRUSH, detail::CloseGdi>;
using UniqueHModule = UniqueAny<HMODULE, detail::CloseModule>;
using UniqueHLocal = UniqueAny<HLOCAL, detail::CloseLocal>;
using UniqueHImageList = UniqueAny<HIMAGELIST, detail::CloseImageList>;
using UniqueHBitmap = UniqueAny<HBITMAP, detail::CloseGdi>;
// A memory device context of CreateCompatibleDC (not one of GetDC).
using UniqueMemoryDC = UniqueAny<HDC, detail::CloseDC>;
// A device context of CreateDCW, such as one that prints to a printer.
using UniqueDeviceDC = UniqueAny<HDC, detail::CloseDC>;
// A spooler handle of OpenPrinterW or AddPrinterW (a printer, the print server,
// or a port monitor's configuration channel); users link winspool.
using UniquePrinter = UniqueAny<HANDLE, detail::ClosePrinterHandle>;
// A driver information file of SetupOpenInfFileW, which says "none" with
// INVALID_HANDLE_VALUE; users link setupapi.
using UniqueHInf = UniqueAny<HINF, detail::CloseInf, detail::InvalidInf>;

// Closes now and tells how it went, for the places where a failed close is
// itself reported. The wrapper is empty afterwards either way.
inline bool CloseTelling(UniqueHandle& handle) noexcept {
    HANDLE raw = handle.release();
    return !raw || ::CloseHandle(raw);
}
inline LONG CloseTelling(UniqueHKey& key) noexcept {
    HKEY raw = key.release();
    return raw ? ::RegCloseKey(raw) : ERROR_SUCCESS;
}

}  // namespace ky
