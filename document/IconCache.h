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
    struct Icons {
        HICON large;
        HICON small;
    };

    // The icons of that source at those sizes, found before; null when not.
    const Icons* Find(const std::wstring& source, int largeSize, int smallSize) const {
        const auto found = m_icons.find(Key(source, largeSize, smallSize));
        return found == m_icons.end() ? nullptr : &found->second.icons;
    }
    // Keeps the two icons (the cache owns them from here) and answers them.
    const Icons* Keep(const std::wstring& source, int largeSize, int smallSize, ky::UniqueHIcon large,
                      ky::UniqueHIcon small) {
        Entry entry{{large.get(), small.get()}, std::move(large), std::move(small)};
        auto kept = m_icons.insert_or_assign(Key(source, largeSize, smallSize), std::move(entry));
        return &kept.first->second.icons;
    }
    size_t Count() const noexcept { return m_icons.size(); }

private:
    struct Entry {
        Icons icons;
        ky::UniqueHIcon largeOwned, smallOwned;
    };
    static std::wstring Key(const std::wstring& source, int largeSize, int smallSize) {
        return std::to_wstring(largeSize) + L'x' + std::to_wstring(smallSize) + L'|' + source;
    }
    std::unordered_map<std::wstring, Entry> m_icons;
};
