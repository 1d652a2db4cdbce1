// The floor of the panel's list: a bare window with one list view holding the
// catalogue's rows and the same two image lists (32 and 16 pixels, 24-bit
// colour with masks, one image per row from the row's program), built the
// fastest way found, with nothing else around it. The panel's start and its
// memory are compared with this.
//
//   list_floor.exe [report-file]
//
// The report file, when named, gets one key=value line per phase and the
// moment the list was painted, counted from the creation of the process.
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/BenchClock.h"
#include "foundation/UniqueHandle.h"

namespace {

constexpr wchar_t kFrameClass[] = L"ListFloorFrame";
constexpr int kLargeSize = 32;
constexpr int kSmallSize = 16;

struct Entry {
    std::wstring name;
    std::wstring target;  // ExePath, expanded
};

std::vector<Entry> ReadEntries() {
    std::vector<Entry> entries;
    ky::UniqueHKey catalogue;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, bench::kCatalogueKey, 0, KEY_READ, catalogue.put()) != ERROR_SUCCESS)
        return entries;
    DWORD subkeys = 0;
    RegQueryInfoKeyW(catalogue.get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, nullptr, nullptr,
                     nullptr, nullptr, nullptr);
    entries.reserve(subkeys);
    wchar_t name[256];
    wchar_t path[MAX_PATH * 2];
    for (DWORD index = 0; index < subkeys; ++index) {
        DWORD chars = 256;
        if (RegEnumKeyExW(catalogue.get(), index, name, &chars, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        DWORD bytes = sizeof path;
        // RegGetValueW expands REG_EXPAND_SZ itself.
        if (RegGetValueW(catalogue.get(), name, L"ExePath", RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ, nullptr, path,
                         &bytes) != ERROR_SUCCESS)
            path[0] = L'\0';
        entries.push_back({name, path});
    }
    return entries;
}

// One row of icons of one size: colour and mask bitmaps whose bits are reachable,
// so that an icon met before is copied with memcpy instead of drawn again, and
// the whole row goes to its image list in one ImageList_Add.
class Strip {
public:
    Strip(int size, int count) : m_size(size), m_count(count) {
        m_colour.reset(MakeBitmap(24, &m_colourBits));
        m_mask.reset(MakeBitmap(1, &m_maskBits));
        m_colourDc.reset(CreateCompatibleDC(nullptr));
        m_maskDc.reset(CreateCompatibleDC(nullptr));
    }
    Strip(const Strip&) = delete;
    Strip& operator=(const Strip&) = delete;

    bool ready() const { return m_colour && m_mask && m_colourDc && m_maskDc; }
    void Draw(int place, HICON icon) {
        HGDIOBJ oldColour = SelectObject(m_colourDc.get(), m_colour.get());
        HGDIOBJ oldMask = SelectObject(m_maskDc.get(), m_mask.get());
        DrawIconEx(m_colourDc.get(), place * m_size, 0, icon, m_size, m_size, 0, nullptr, DI_IMAGE);
        DrawIconEx(m_maskDc.get(), place * m_size, 0, icon, m_size, m_size, 0, nullptr, DI_MASK);
        SelectObject(m_colourDc.get(), oldColour);
        SelectObject(m_maskDc.get(), oldMask);
        GdiFlush();
    }
    // Sizes are whole bytes in both bitmaps (multiples of 8 pixels).
    void Copy(int from, int to) {
        for (int y = 0; y < m_size; ++y) {
            std::memcpy(m_colourBits + y * ColourStride() + to * m_size * 3,
                        m_colourBits + y * ColourStride() + from * m_size * 3, m_size * 3u);
            std::memcpy(m_maskBits + y * MaskStride() + to * m_size / 8,
                        m_maskBits + y * MaskStride() + from * m_size / 8, m_size / 8u);
        }
    }
    bool AddTo(HIMAGELIST list) { return ImageList_Add(list, m_colour.get(), m_mask.get()) >= 0; }

private:
    HBITMAP MakeBitmap(WORD bits, BYTE** data) {
        struct {
            BITMAPINFOHEADER header;
            RGBQUAD colours[2];
        } info{};
        info.header.biSize = sizeof info.header;
        info.header.biWidth = m_size * m_count;
        info.header.biHeight = -m_size;  // top-down: line y is row y
        info.header.biPlanes = 1;
        info.header.biBitCount = bits;
        info.header.biCompression = BI_RGB;
        info.colours[1] = {255, 255, 255, 0};
        void* bitsPointer = nullptr;
        HBITMAP bitmap =
            CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &bitsPointer, nullptr, 0);
        *data = static_cast<BYTE*>(bitsPointer);
        return bitmap;
    }
    size_t ColourStride() const { return (static_cast<size_t>(m_size) * m_count * 3 + 3) & ~size_t{3}; }
    size_t MaskStride() const { return ((static_cast<size_t>(m_size) * m_count + 31) / 32) * 4; }

    int m_size;
    int m_count;
    ky::UniqueHBitmap m_colour, m_mask;
    BYTE* m_colourBits = nullptr;
    BYTE* m_maskBits = nullptr;
    ky::UniqueMemoryDC m_colourDc, m_maskDc;
};

// Each program's icons are extracted once; every further row of that program
// copies them.
bool FillImages(const std::vector<Entry>& entries, HIMAGELIST large, HIMAGELIST small) {
    const int count = static_cast<int>(entries.size());
    if (count == 0) return true;
    Strip big(kLargeSize, count), little(kSmallSize, count);
    if (!big.ready() || !little.ready()) return false;
    std::unordered_map<std::wstring, int> drawn;
    for (int place = 0; place < count; ++place) {
        auto [found, isNew] = drawn.try_emplace(entries[static_cast<size_t>(place)].target, place);
        if (!isNew) {
            big.Copy(found->second, place);
            little.Copy(found->second, place);
            continue;
        }
        ky::UniqueHIcon bigIcon, littleIcon;
        ExtractIconExW(found->first.c_str(), 0, bigIcon.put(), littleIcon.put(), 1);
        if (bigIcon) big.Draw(place, bigIcon.get());
        if (littleIcon) little.Draw(place, littleIcon.get());
    }
    return big.AddTo(large) && little.AddTo(small);
}

void FillRows(HWND list, const std::vector<Entry>& entries) {
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    ListView_SetItemCount(list, static_cast<int>(entries.size()));
    LVITEMW item{};
    item.mask = LVIF_TEXT | LVIF_IMAGE;
    for (size_t row = 0; row < entries.size(); ++row) {
        item.iItem = static_cast<int>(row);
        item.iImage = static_cast<int>(row);
        item.pszText = const_cast<wchar_t*>(entries[row].name.c_str());
        ListView_InsertItem(list, &item);
    }
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
}

LRESULT CALLBACK FrameProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SIZE:
        if (HWND list = GetWindow(window, GW_CHILD))
            MoveWindow(list, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

// The panel's first placement: two thirds of the screen, centred.
RECT FramePlace() {
    const int cx = GetSystemMetrics(SM_CXSCREEN), cy = GetSystemMetrics(SM_CYSCREEN);
    return {cx / 2 - cx / 3, cy / 2 - cy / 3, cx / 2 + cx / 3, cy / 2 + cy / 3};
}

double MsSinceProcessCreation() {
    FILETIME created{}, exited{}, kernel{}, user{}, now{};
    GetProcessTimes(GetCurrentProcess(), &created, &exited, &kernel, &user);
    GetSystemTimePreciseAsFileTime(&now);
    const auto ticks = [](const FILETIME& t) {
        return (static_cast<ULONGLONG>(t.dwHighDateTime) << 32) | t.dwLowDateTime;
    };
    return static_cast<double>(ticks(now) - ticks(created)) / 10000.0;
}

struct Phases {
    size_t rows = 0;
    double readMs = 0, imagesMs = 0, rowsMs = 0, paintMs = 0, sinceCreationMs = 0;
};

void Report(const wchar_t* file, const Phases& p) {
    if (!file || !*file) return;
    FILE* out = _wfopen(file, L"w");
    if (!out) return;
    std::fprintf(out, "rows=%zu\nread_ms=%.3f\nimages_ms=%.3f\nrows_ms=%.3f\npaint_ms=%.3f\npainted_since_creation_ms=%.3f\n",
                 p.rows, p.readMs, p.imagesMs, p.rowsMs, p.paintMs, p.sinceCreationMs);
    std::fclose(out);
}

HWND MakeFrame(HINSTANCE instance) {
    WNDCLASSEXW frameClass{};
    frameClass.cbSize = sizeof frameClass;
    frameClass.lpfnWndProc = FrameProc;
    frameClass.hInstance = instance;
    frameClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    frameClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    frameClass.lpszClassName = kFrameClass;
    if (!RegisterClassExW(&frameClass)) return nullptr;
    const RECT place = FramePlace();
    return CreateWindowExW(0, kFrameClass, L"List floor", WS_OVERLAPPEDWINDOW, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, nullptr, nullptr, instance, nullptr);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t*, int) {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    HWND frame = MakeFrame(instance);
    if (!frame) return 1;
    RECT client{};
    GetClientRect(frame, &client);
    HWND list = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_ICON, 0, 0, client.right,
                                client.bottom, frame, nullptr, instance, nullptr);
    if (!list) return 1;

    Phases phases;
    bench::Stopwatch watch;
    const std::vector<Entry> entries = ReadEntries();
    phases.rows = entries.size();
    phases.readMs = watch.ElapsedMs();

    watch.Restart();
    const int initial = entries.empty() ? 1 : static_cast<int>(entries.size());
    HIMAGELIST large = ImageList_Create(kLargeSize, kLargeSize, ILC_COLOR24 | ILC_MASK, initial, 1);
    HIMAGELIST small = ImageList_Create(kSmallSize, kSmallSize, ILC_COLOR24 | ILC_MASK, initial, 1);
    if (!large || !small || !FillImages(entries, large, small)) return 1;
    // The list view owns the image lists from here on and destroys them with itself.
    ListView_SetImageList(list, large, LVSIL_NORMAL);
    ListView_SetImageList(list, small, LVSIL_SMALL);
    phases.imagesMs = watch.ElapsedMs();

    watch.Restart();
    FillRows(list, entries);
    phases.rowsMs = watch.ElapsedMs();

    watch.Restart();
    ShowWindow(frame, SW_SHOWNORMAL);
    RedrawWindow(frame, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    phases.paintMs = watch.ElapsedMs();
    phases.sinceCreationMs = MsSinceProcessCreation();
    int argc = 0;
    ky::UniqueHLocal arguments(CommandLineToArgvW(GetCommandLineW(), &argc));
    Report(argc > 1 ? static_cast<wchar_t**>(arguments.get())[1] : nullptr, phases);

    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}
