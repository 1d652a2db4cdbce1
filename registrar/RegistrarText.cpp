#include "registrar/RegistrarText.h"

#include <cwchar>
#include <cwctype>

namespace registrar_text {

namespace {

bool IsSeparator(wchar_t c) noexcept { return c == L'\\' || c == L'/' || c == L':'; }

}  // namespace

const wchar_t* ExtensionOf(const wchar_t* path) noexcept {
    const wchar_t* dot = nullptr;
    const wchar_t* p = path;
    for (; *p; ++p) {
        if (IsSeparator(*p))
            dot = nullptr;
        else if (*p == L'.')
            dot = p;
    }
    return dot ? dot : p;
}

size_t DirectoryLength(const wchar_t* path) noexcept {
    size_t length = 0;
    for (size_t i = 0; path[i]; ++i)
        if (IsSeparator(path[i])) length = i + 1;
    return length;
}

bool FormatOneText(const wchar_t* format, const wchar_t* text, wchar_t* out, size_t capacity) noexcept {
    size_t n = 0;
    bool filled = false;
    auto put = [&](wchar_t c) {
        if (n + 1 >= capacity) return false;
        out[n++] = c;
        return true;
    };
    for (const wchar_t* f = format; *f; ++f) {
        bool ok = true;
        if (f[0] == L'%' && f[1] == L'%') {
            ok = put(L'%');
            ++f;
        } else if (f[0] == L'%' && f[1] == L's' && !filled) {
            for (const wchar_t* t = text; *t && ok; ++t) ok = put(*t);
            filled = true;
            ++f;
        } else {
            ok = put(*f);
        }
        if (!ok) {
            out[0] = L'\0';
            return false;
        }
    }
    out[n] = L'\0';
    return true;
}

void TrimBlanks(wchar_t* text) noexcept {
    size_t start = 0;
    while (text[start] && std::iswspace(text[start])) ++start;
    size_t length = std::wcslen(text + start);
    while (length > 0 && std::iswspace(text[start + length - 1])) --length;
    std::wmemmove(text, text + start, length);
    text[length] = L'\0';
}

bool CopyText(const wchar_t* text, wchar_t* out, size_t capacity) noexcept {
    size_t length = std::wcslen(text);
    if (length >= capacity) {
        if (capacity > 0) out[0] = L'\0';
        return false;
    }
    std::wmemcpy(out, text, length + 1);
    return true;
}

}  // namespace registrar_text
