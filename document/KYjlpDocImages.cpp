// The icons of the items: two image lists (large and small) in the order of the
// list, each icon found from the most to the least specific source.
#include <windows.h>
#include <shellapi.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "app/KYjlpApp.h"
#include "brander/KYpbr.h"
#include "document/KYjlpDoc.h"
#include "document/SituationReport.h"
#include "foundation/UniqueHandle.h"
#include "window/KYjlpViewList.h"

namespace {
const wchar_t kSourceName[] = L"KYjlpDocImages";

// The icons of one item, drawn into the strips of a list building: many items
// share a target or an icon file, and each icon is found only once per building.
std::wstring IconKey(const LV_TEXTLINE& item) {
    std::wstring key = std::to_wstring(item.iconIndex);
    key += L'|';
    if (item.iconPath) key += item.iconPath;
    key += L'|';
    if (item.path) key += item.path;
    return key;
}

std::wstring Expanded(const wchar_t* path) {
    if (!path) return {};
    wchar_t out[MAX_PATH * 2];
    const DWORD length = ExpandEnvironmentStringsW(path, out, MAX_PATH * 2);
    return length > 0 && length <= MAX_PATH * 2 ? std::wstring(out) : std::wstring(path);
}

// One row of images of one size, drawn side by side and added to the image
// list in one call: adding icons one at a time is many times slower. Each icon
// is drawn over black and over white: where the two differ the icon lets the
// background through, whether its transparency lives in its mask or in its
// alpha channel, and that becomes the list's mask.
class IconStrip {
public:
    IconStrip(int size, int count) : m_size(size), m_count(count) {
        m_dc.reset(CreateCompatibleDC(nullptr));
        if (!m_dc) return;
        m_black = MakeBitmap(32, reinterpret_cast<void**>(&m_blackBits));
        m_white = MakeBitmap(32, reinterpret_cast<void**>(&m_whiteBits));
        m_mask = MakeBitmap(1, reinterpret_cast<void**>(&m_maskBits));
        if (!m_black || !m_white || !m_mask) return;
        m_old = SelectObject(m_dc.get(), m_white.get());
        PatBlt(m_dc.get(), 0, 0, size * count, size, WHITENESS);
        SelectObject(m_dc.get(), m_old);
        m_ready = true;
    }
    IconStrip(const IconStrip&) = delete;
    IconStrip& operator=(const IconStrip&) = delete;

    bool ready() const { return m_ready; }
    int Size() const { return m_size; }
    bool Draw(int place, HICON icon) {
        const int x = place * m_size;
        bool ok = true;
        for (HBITMAP target : {m_black.get(), m_white.get()}) {
            HGDIOBJ old = SelectObject(m_dc.get(), target);
            ok = DrawIconEx(m_dc.get(), x, 0, icon, m_size, m_size, 0, nullptr, DI_NORMAL) && ok;
            SelectObject(m_dc.get(), old);
        }
        GdiFlush();
        MakeMask(place);
        return ok;
    }
    // An icon drawn before, for another item with the same source.
    void Copy(int from, int to) {
        for (int y = 0; y < m_size; ++y) {
            memcpy(Pixel(m_blackBits, to * m_size, y), Pixel(m_blackBits, from * m_size, y), m_size * 4u);
            for (int x = 0; x < m_size; ++x) SetMaskBit(to * m_size + x, y, MaskBit(from * m_size + x, y));
        }
    }
    bool AddTo(HIMAGELIST list) { return m_count == 0 || ImageList_Add(list, m_black.get(), m_mask.get()) >= 0; }

private:
    ky::UniqueHBitmap MakeBitmap(WORD bits, void** data) {
        struct {
            BITMAPINFOHEADER header;
            RGBQUAD colors[2];
        } info{};
        info.header.biSize = sizeof(BITMAPINFOHEADER);
        info.header.biWidth = m_size * m_count;
        info.header.biHeight = -m_size;  // top-down: row y is line y
        info.header.biPlanes = 1;
        info.header.biBitCount = bits;
        info.header.biCompression = BI_RGB;
        info.colors[1] = {255, 255, 255, 0};
        return ky::UniqueHBitmap(CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS,
                                                  data, nullptr, 0));
    }
    uint8_t* Pixel(uint8_t* bits, int x, int y) const {
        return bits + (static_cast<size_t>(y) * m_size * m_count + x) * 4u;
    }
    size_t MaskStride() const { return ((static_cast<size_t>(m_size) * m_count + 31) / 32) * 4; }
    bool MaskBit(int x, int y) const { return (m_maskBits[y * MaskStride() + x / 8] >> (7 - x % 8)) & 1; }
    void SetMaskBit(int x, int y, bool on) {
        uint8_t& byte = m_maskBits[y * MaskStride() + x / 8];
        const uint8_t bit = static_cast<uint8_t>(0x80 >> (x % 8));
        byte = on ? (byte | bit) : (byte & ~bit);
    }
    // Coverage from the two drawings: a pixel that turned white over white lets
    // the background through; a half-covered one counts as the icon's.
    void MakeMask(int place) {
        for (int y = 0; y < m_size; ++y) {
            for (int x = place * m_size; x < (place + 1) * m_size; ++x) {
                uint8_t* black = Pixel(m_blackBits, x, y);
                const uint8_t* white = Pixel(m_whiteBits, x, y);
                const int through = white[1] - black[1];  // 255: fully transparent
                const bool transparent = through > 127;
                SetMaskBit(x, y, transparent);
                if (transparent) {
                    black[0] = black[1] = black[2] = 0;
                } else if (through > 0) {
                    const int cover = 255 - through;
                    for (int c = 0; c < 3; ++c) black[c] = static_cast<uint8_t>(std::min(255, black[c] * 255 / cover));
                }
                black[3] = 0;
            }
        }
    }

    int m_size;
    int m_count;
    bool m_ready = false;
    ky::UniqueMemoryDC m_dc;
    ky::UniqueHBitmap m_black, m_white, m_mask;
    uint8_t* m_blackBits = nullptr;
    uint8_t* m_whiteBits = nullptr;
    uint8_t* m_maskBits = nullptr;
    HGDIOBJ m_old = nullptr;
};
}  // namespace

// The sizes of the monitor the list is on: 32 and 16 at 96 DPI, more on a denser screen.
void KYjlpDoc::ObtainIconSizes(int& large, int& small) const {
    KYjlpViewList* view = ObtainViewList();
    HWND window = view ? view->Handle() : nullptr;
    const UINT dpi = window ? GetDpiForWindow(window) : 0;
    large = dpi ? GetSystemMetricsForDpi(SM_CXICON, dpi) : GetSystemMetrics(SM_CXICON);
    small = dpi ? GetSystemMetricsForDpi(SM_CXSMICON, dpi) : GetSystemMetrics(SM_CXSMICON);
    if (large <= 0) large = 32;
    if (small <= 0) small = 16;
}

bool KYjlpDoc::ObtainItemIcons(HICON* large, HICON* small, const LV_TEXTLINE& item) {
    if (!large || !small) return false;
    *large = *small = nullptr;
    ky::UniqueHIcon big, little;
    // Paths may name environment variables, as the shell expands them at launch.
    const std::wstring iconFile = Expanded(item.iconPath), target = Expanded(item.path);
    if (!IsBlankText(item.iconPath) && item.iconIndex >= 0) {
        UINT got = ExtractIconExW(iconFile.c_str(), item.iconIndex, big.put(), little.put(), 1);
        if (!big || !little) {
            big.reset();
            little.reset();
            lpreport::Tell(27024, lpreport::Shown(item.path), item.iconPath, static_cast<int32_t>(item.iconIndex),
                           lpreport::CodeText(got == 0 ? GetLastError() : ERROR_RESOURCE_TYPE_NOT_FOUND));
        }
    }
    // A program shows its own first icon, as the shell shows it on Windows
    // (Wine's shell answers every program with its generic icon).
    if (!big && !little && !item.isDocument && !IsBlankText(item.path) &&
        ExtractIconExW(target.c_str(), 0, big.put(), little.put(), 1) != 2) {
        big.reset();
        little.reset();
    }
    if ((!big || !little) && !IsBlankText(item.path)) {
        SHFILEINFOW info{};
        if (!big && SHGetFileInfoW(target.c_str(), 0, &info, sizeof info, SHGFI_ICON)) big.reset(info.hIcon);
        info = {};
        if (!little && SHGetFileInfoW(target.c_str(), 0, &info, sizeof info, SHGFI_ICON | SHGFI_SMALLICON))
            little.reset(info.hIcon);
    }
    KYjlpApp* app = TheApp();
    KYpbr* brander = app ? app->m_pBrander : nullptr;
    if (!big && brander) big.reset(static_cast<HICON>(brander->loadImage(KYpbr::kLargeIcon, 0, 0, 0)));
    if (!little && brander) little.reset(static_cast<HICON>(brander->loadImage(KYpbr::kSmallIcon, 0, 0, 0)));
    if (!big || !little) {
        lpreport::Tell(27025, static_cast<int32_t>(!big ? KYpbr::kLargeIcon : KYpbr::kSmallIcon));
        return false;
    }
    *large = big.release();
    *small = little.release();
    return true;
}

const IconCache::Icons* KYjlpDoc::CachedItemIcons(const LV_TEXTLINE& item, const std::wstring& source,
                                                  int largeSize, int smallSize) {
    if (const IconCache::Icons* known = m_icons.Find(source, largeSize, smallSize)) return known;
    ky::UniqueHIcon large, small;
    if (!ObtainItemIcons(large.put(), small.put(), item)) return nullptr;
    return m_icons.Keep(source, largeSize, smallSize, std::move(large), std::move(small));
}

bool KYjlpDoc::MakeImageLists() {
    int large = 32, small = 16;
    ObtainIconSizes(large, small);
    const int count = m_pItems && m_pItems->GetCount() > 0 ? static_cast<int>(m_pItems->GetCount()) : 1;
    if (m_imlLarge && m_imlSmall) {
        if (!ImageList_RemoveAll(m_imlLarge.get())) throw 27177;
        if (!ImageList_RemoveAll(m_imlSmall.get())) throw 27184;
        return true;
    }
    if (m_imlLarge) throw 27186;
    if (m_imlSmall) throw 27179;
    m_imlLarge.reset(ImageList_Create(large, large, ILC_COLOR24 | ILC_MASK, count, 1));
    if (!m_imlLarge) throw 27176;
    m_imlSmall.reset(ImageList_Create(small, small, ILC_COLOR24 | ILC_MASK, count, 1));
    if (!m_imlSmall) throw 27183;
    return true;
}

// The item's two icons at place in the strips; an icon source met before is copied.
bool DrawItemIcons(KYjlpDoc& doc, const LV_TEXTLINE& item, int place, std::unordered_map<std::wstring, int>& drawn,
                   IconStrip& big, IconStrip& little) {
    std::wstring key = IconKey(item);
    if (auto found = drawn.find(key); found != drawn.end()) {
        big.Copy(found->second, place);
        little.Copy(found->second, place);
        return true;
    }
    const IconCache::Icons* icons = doc.CachedItemIcons(item, key, big.Size(), little.Size());
    if (!icons) {
        lpreport::Tell(27017, static_cast<int32_t>(__LINE__), kSourceName, __DATE__, static_cast<int32_t>(place));
        return false;
    }
    if (!big.Draw(place, icons->large.get())) throw 27175;
    if (!little.Draw(place, icons->small.get())) throw 27182;
    drawn.emplace(std::move(key), place);
    return true;
}

// The images of list, appended to the two lists in list order: image i belongs
// to item i. Drawn in strips of a few hundred, so that a large catalogue needs
// no more drawing memory than a small one.
std::wstring KYjlpDoc::IconKeyOf(const LV_TEXTLINE& item) { return IconKey(item); }

bool KYjlpDoc::LoadItemImages(const std::vector<const LV_TEXTLINE*>& items, HIMAGELIST large, HIMAGELIST small) {
    constexpr int kStripLength = 256;
    if (!large) throw 27180;
    if (!small) throw 27187;
    const int count = static_cast<int>(items.size());
    int largeSize = 0, smallSize = 0, height = 0;
    ImageList_GetIconSize(large, &largeSize, &height);
    ImageList_GetIconSize(small, &smallSize, &height);
    const int before = ImageList_GetImageCount(large);
    for (int first = 0; first < count; first += kStripLength) {
        const int length = std::min(kStripLength, count - first);
        IconStrip bigStrip(largeSize, length), littleStrip(smallSize, length);
        if (!bigStrip.ready()) throw 27175;
        if (!littleStrip.ready()) throw 27182;
        std::unordered_map<std::wstring, int> drawn;
        for (int place = 0; place < length; ++place) {
            const LV_TEXTLINE* item = items[static_cast<size_t>(first + place)];
            if (!item) throw 27207;
            if (!DrawItemIcons(*this, *item, place, drawn, bigStrip, littleStrip)) return false;
        }
        if (!bigStrip.AddTo(large)) throw 27175;
        if (!littleStrip.AddTo(small)) throw 27182;
    }
    if (ImageList_GetImageCount(large) != before + count || ImageList_GetImageCount(small) != before + count) {
        lpreport::Tell(27181, static_cast<int32_t>(count), static_cast<int32_t>(ImageList_GetImageCount(large)),
                       static_cast<int32_t>(ImageList_GetImageCount(small)));
        return false;
    }
    return true;
}

bool KYjlpDoc::BuildImages() {
    int number = 0;
    try {
        MakeImageLists();
        if (!m_pItems) throw 27217;
        std::vector<const LV_TEXTLINE*> items;
        items.reserve(m_pItems->GetCount());
        for (POSITION pos = m_pItems->GetHeadPosition(); pos;) items.push_back(m_pItems->GetNext(pos));
        if (LoadItemImages(items, m_imlLarge.get(), m_imlSmall.get())) return true;
    } catch (int n) {
        number = n;
    } catch (...) {
        number = 27191;
    }
    if (number) {
        lpreport::RecordFirst(number);
        if (number == 27180 || number == 27187 || number == 27207 || number == 27217) {
            lpreport::Arg(kSourceName);
            lpreport::Arg(__DATE__);
        }
        lpreport::RespondAndForget();
    }
    if (m_imlLarge) ImageList_RemoveAll(m_imlLarge.get());
    if (m_imlSmall) ImageList_RemoveAll(m_imlSmall.get());
    return false;
}
