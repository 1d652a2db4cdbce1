// The icons found for the catalogue's items, by what they are found from (icon
// file, index, target) and their two sizes: each source is looked up once in a
// session, however many items, strips of a building or refreshes show it.
#pragma once
#include <windows.h>

#include <string>
#include <unordered_map>
#include <utility>

#include "foundation/UniqueHandle.h"

class IconCache {
public:
    // The two icons of one source; the cache owns them.
    struct Icons {
        ky::UniqueHIcon large;
        ky::UniqueHIcon small;
    };

    // The icons of that source at those sizes, found before; null when not.
    const Icons* Find(const std::wstring& source, int largeSize, int smallSize) const {
        const auto found = m_icons.find(Key(source, largeSize, smallSize));
        return found == m_icons.end() ? nullptr : &found->second;
    }
    // Keeps the two icons and answers them.
    const Icons* Keep(const std::wstring& source, int largeSize, int smallSize, ky::UniqueHIcon large,
                      ky::UniqueHIcon small) {
        auto kept =
            m_icons.insert_or_assign(Key(source, largeSize, smallSize), Icons{std::move(large), std::move(small)});
        return &kept.first->second;
    }
    size_t Count() const noexcept { return m_icons.size(); }

private:
    static std::wstring Key(const std::wstring& source, int largeSize, int smallSize) {
        return std::to_wstring(largeSize) + L'x' + std::to_wstring(smallSize) + L'|' + source;
    }
    std::unordered_map<std::wstring, Icons> m_icons;
};
