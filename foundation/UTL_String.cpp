#include "foundation/UTL_String.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "foundation/UTL_Exception.h"
#include "foundation/WildcardMatch.h"

namespace {

template <typename Char>
Char* AllocateChars(uint64_t count) {
    if (count == 0 || count > std::numeric_limits<size_t>::max() / sizeof(Char)) {
        throw UTL_Exception(UTL_Exception::kOutOfMemory);
    }
    Char* buffer = new (std::nothrow) Char[static_cast<size_t>(count)];
    if (buffer == nullptr) throw UTL_Exception(UTL_Exception::kOutOfMemory);
    buffer[0] = 0;
    return buffer;
}

template <typename Char>
Char* Duplicate(const Char* text, uint64_t length) {
    Char* copy = AllocateChars<Char>(length + 1);
    std::memcpy(copy, text, static_cast<size_t>(length) * sizeof(Char));
    copy[length] = 0;
    return copy;
}

int ConversionCount(uint64_t length, int32_t failure) {
    if (length > static_cast<uint64_t>(std::numeric_limits<int>::max())) {
        throw UTL_Exception(failure);
    }
    return static_cast<int>(length);
}

// Characters that the wide form of length narrow characters takes.
int WideSize(const char* text, uint64_t length) {
    const int count = ConversionCount(length, UTL_Exception::kSystemCallFailed);
    const int size = MultiByteToWideChar(CP_ACP, 0, text, count, nullptr, 0);
    if (size > 0) return size;
    switch (GetLastError()) {
    case ERROR_INSUFFICIENT_BUFFER: throw UTL_Exception(UTL_Exception::kWideningBufferTooSmall);
    case ERROR_NO_UNICODE_TRANSLATION: throw UTL_Exception(UTL_Exception::kNoUnicodeTranslation);
    default: throw UTL_Exception(UTL_Exception::kSystemCallFailed);
    }
}

int NarrowSize(const wchar_t* text, uint64_t length) {
    const int count = ConversionCount(length, UTL_Exception::kNarrowingSizingFailed);
    const int size = WideCharToMultiByte(CP_ACP, 0, text, count, nullptr, 0, nullptr, nullptr);
    if (size <= 0) throw UTL_Exception(UTL_Exception::kNarrowingSizingFailed);
    return size;
}

std::unique_ptr<wchar_t[]> Widen(const char* text, uint64_t length) {
    const int size = WideSize(text, length);
    std::unique_ptr<wchar_t[]> made(AllocateChars<wchar_t>(static_cast<uint64_t>(size) + 1));
    const int done = MultiByteToWideChar(CP_ACP, 0, text, static_cast<int>(length), made.get(), size);
    if (done != size) throw UTL_Exception(UTL_Exception::kWideningCountChanged);
    made[size] = 0;
    return made;
}

std::unique_ptr<char[]> MakeNarrow(const wchar_t* text, uint64_t length) {
    const int size = NarrowSize(text, length);
    std::unique_ptr<char[]> made(AllocateChars<char>(static_cast<uint64_t>(size) + 1));
    const int done = WideCharToMultiByte(CP_ACP, 0, text, static_cast<int>(length), made.get(), size,
                                         nullptr, nullptr);
    if (done != size) throw UTL_Exception(UTL_Exception::kNarrowingCountChanged);
    made[size] = 0;
    return made;
}

template <typename Char>
int64_t Position(size_t found) {
    return found == std::basic_string_view<Char>::npos ? -1 : static_cast<int64_t>(found);
}

constexpr size_t ViewStart(uint64_t start) {
    return start > std::numeric_limits<size_t>::max() ? std::numeric_limits<size_t>::max()
                                                      : static_cast<size_t>(start);
}

template <typename Char>
constexpr bool IsBlank(Char c) {
    return c == Char(' ') || c == Char('\t') || c == Char('\n');
}

}  // namespace

char* UTL_String::AllocateNarrow(uint64_t count) { return AllocateChars<char>(count); }

wchar_t* UTL_String::AllocateWide(uint64_t count) { return AllocateChars<wchar_t>(count); }

UTL_String::UTL_String(const char* text) {
    if (text == nullptr) return;
    try {
        const uint64_t length = std::strlen(text);
        AdoptNarrow(Duplicate(text, length), length);
    } catch (...) {
        Clear();
        throw;
    }
}

UTL_String::UTL_String(const wchar_t* text) {
    m_eEncoding = kWide;
    if (text == nullptr) return;
    try {
        const uint64_t length = std::wcslen(text);
        AdoptWide(Duplicate(text, length), length);
    } catch (...) {
        Clear();
        throw;
    }
}

UTL_String::UTL_String(const UTL_String& other) {
    try {
        CopyMasterOf(other);
    } catch (...) {
        Clear();
        throw;
    }
}

UTL_String::UTL_String(uint32_t value) {
    char text[32];
    // Printed as a signed number on purpose: callers compare against "%d" texts.
    std::snprintf(text, sizeof text, "%d", static_cast<int>(value));
    try {
        const uint64_t length = std::strlen(text);
        AdoptNarrow(Duplicate(text, length), length);
    } catch (...) {
        Clear();
        throw;
    }
}

UTL_String::~UTL_String() { Clear(); }

void UTL_String::Clear() noexcept {
    delete[] m_psz;
    delete[] m_pwsz;
    m_psz = nullptr;
    m_pwsz = nullptr;
    m_nLength = 0;
    m_eEncoding = kNarrow;
}

void UTL_String::AdoptNarrow(char* buffer, uint64_t length) noexcept {
    Clear();
    m_psz = buffer;
    m_nLength = length;
}

void UTL_String::AdoptWide(wchar_t* buffer, uint64_t length) noexcept {
    Clear();
    m_eEncoding = kWide;
    m_pwsz = buffer;
    m_nLength = length;
}

const char* UTL_String::NarrowMaster() const {
    if (m_eEncoding != kNarrow) throw UTL_Exception(UTL_Exception::kBadEncoding);
    if (m_nLength == 0) return "";
    if (m_psz == nullptr) throw UTL_Exception(UTL_Exception::kNarrowMasterMissing);
    return m_psz;
}

const wchar_t* UTL_String::WideMaster() const {
    if (m_eEncoding != kWide) throw UTL_Exception(UTL_Exception::kBadEncoding);
    if (m_nLength == 0) return L"";
    if (m_pwsz == nullptr) throw UTL_Exception(UTL_Exception::kWideMasterMissing);
    return m_pwsz;
}

// Only the master is copied: this object is empty when it starts.
void UTL_String::CopyMasterOf(const UTL_String& other) {
    switch (other.m_eEncoding) {
    case kNarrow:
        if (other.m_nLength != 0) AdoptNarrow(Duplicate(other.NarrowMaster(), other.m_nLength), other.m_nLength);
        break;
    case kWide:
        m_eEncoding = kWide;
        if (other.m_nLength != 0) AdoptWide(Duplicate(other.WideMaster(), other.m_nLength), other.m_nLength);
        break;
    default:
        throw UTL_Exception(UTL_Exception::kBadEncoding);
    }
}

UTL_String& UTL_String::operator=(const UTL_String& other) {
    if (this == &other) return *this;
    if (other.m_nLength == 0) {
        Clear();
        return *this;
    }
    const bool reuse = m_eEncoding == other.m_eEncoding && m_nLength >= other.m_nLength &&
                       (m_eEncoding == kNarrow ? m_psz != nullptr : m_pwsz != nullptr);
    if (!reuse) {
        Clear();
        CopyMasterOf(other);
        return *this;
    }
    // The master buffer is long enough: overwrite it and drop the stale cache.
    if (m_eEncoding == kNarrow) {
        std::memcpy(m_psz, other.NarrowMaster(), static_cast<size_t>(other.m_nLength));
        m_psz[other.m_nLength] = 0;
        delete[] m_pwsz;
        m_pwsz = nullptr;
    } else {
        std::memcpy(m_pwsz, other.WideMaster(), static_cast<size_t>(other.m_nLength) * sizeof(wchar_t));
        m_pwsz[other.m_nLength] = 0;
        delete[] m_psz;
        m_psz = nullptr;
    }
    m_nLength = other.m_nLength;
    return *this;
}

const char* UTL_String::Narrow() const {
    if (m_nLength == 0) return "";
    if (m_eEncoding == kNarrow) return NarrowMaster();
    std::unique_ptr<char[]> made = MakeNarrow(WideMaster(), m_nLength);
    delete[] m_psz;
    m_psz = made.release();
    return m_psz;
}

const wchar_t* UTL_String::Wide() const {
    if (m_nLength == 0) return L"";
    if (m_eEncoding == kWide) return WideMaster();
    std::unique_ptr<wchar_t[]> made = Widen(NarrowMaster(), m_nLength);
    delete[] m_pwsz;
    m_pwsz = made.release();
    return m_pwsz;
}

uint64_t UTL_String::EncodedLength(int32_t encoding) const {
    if (encoding != kNarrow && encoding != kWide) throw UTL_Exception(UTL_Exception::kBadNarrowArgument);
    if (m_nLength == 0 || encoding == m_eEncoding) return m_nLength;
    if (encoding == kNarrow) return static_cast<uint64_t>(NarrowSize(WideMaster(), m_nLength));
    return static_cast<uint64_t>(WideSize(NarrowMaster(), m_nLength));
}

UTL_String& UTL_String::Append(const UTL_String& other) {
    if (other.m_nLength == 0) return *this;
    if (m_eEncoding == kNarrow) {
        const char* left = NarrowMaster();
        const char* right = other.Narrow();
        const uint64_t rightLength = other.m_eEncoding == kNarrow ? other.m_nLength : std::strlen(right);
        char* joined = AllocateChars<char>(m_nLength + rightLength + 1);
        std::memcpy(joined, left, static_cast<size_t>(m_nLength));
        std::memcpy(joined + m_nLength, right, static_cast<size_t>(rightLength));
        joined[m_nLength + rightLength] = 0;
        AdoptNarrow(joined, m_nLength + rightLength);
        return *this;
    }
    const wchar_t* left = WideMaster();
    const wchar_t* right = other.Wide();
    const uint64_t rightLength = other.m_eEncoding == kWide ? other.m_nLength : std::wcslen(right);
    wchar_t* joined = AllocateChars<wchar_t>(m_nLength + rightLength + 1);
    std::memcpy(joined, left, static_cast<size_t>(m_nLength) * sizeof(wchar_t));
    std::memcpy(joined + m_nLength, right, static_cast<size_t>(rightLength) * sizeof(wchar_t));
    joined[m_nLength + rightLength] = 0;
    AdoptWide(joined, m_nLength + rightLength);
    return *this;
}

UTL_String operator+(const UTL_String& left, const UTL_String& right) {
    UTL_String joined(left);
    joined.Append(right);
    return joined;
}

UTL_String operator+(const char* left, const UTL_String& right) { return UTL_String(left) + right; }

UTL_String operator+(const wchar_t* left, const UTL_String& right) { return UTL_String(left) + right; }

bool UTL_String::Equals(const UTL_String& other) const {
    if (this == &other) return true;
    if (m_nLength == 0 && other.m_nLength == 0) return true;
    if (m_nLength != other.m_nLength) return false;
    return std::strcmp(Narrow(), other.Narrow()) == 0;
}

bool UTL_String::StartsWith(const UTL_String& other) const {
    return Substring(0, other.m_nLength).Equals(other);
}

bool UTL_String::EndsWith(const UTL_String& other) const {
    const uint64_t start = m_nLength >= other.m_nLength ? m_nLength - other.m_nLength : 0;
    return Substring(start, other.m_nLength).Equals(other);
}

bool UTL_String::ComparePart(const UTL_String& other, uint64_t count, uint64_t start) const {
    const uint64_t shorter = std::min(m_nLength, other.m_nLength);
    if (count == 0 || count > shorter) count = shorter;
    if (start > count) start = 0;
    return Substring(start, count).Equals(other.Substring(start, count));
}

int64_t UTL_String::Find(const UTL_String& what, uint64_t start) const {
    if (start > m_nLength) return -1;
    if (m_eEncoding == kNarrow) {
        const std::string_view text(NarrowMaster(), static_cast<size_t>(m_nLength));
        return Position<char>(text.find(what.Narrow(), ViewStart(start)));
    }
    const std::wstring_view text(WideMaster(), static_cast<size_t>(m_nLength));
    return Position<wchar_t>(text.find(what.Wide(), ViewStart(start)));
}

int64_t UTL_String::ReverseFind(const UTL_String& what, uint64_t start) const {
    if (m_eEncoding == kNarrow) {
        const std::string_view text(NarrowMaster(), static_cast<size_t>(m_nLength));
        return Position<char>(text.rfind(what.Narrow(), ViewStart(start)));
    }
    const std::wstring_view text(WideMaster(), static_cast<size_t>(m_nLength));
    return Position<wchar_t>(text.rfind(what.Wide(), ViewStart(start)));
}

int64_t UTL_String::FindChar(char c, uint64_t start) const {
    const char text[2] = {c, 0};
    return c == 0 ? -1 : Find(UTL_String(text), start);
}

int64_t UTL_String::FindChar(wchar_t c, uint64_t start) const {
    const wchar_t text[2] = {c, 0};
    return c == 0 ? -1 : Find(UTL_String(text), start);
}

int64_t UTL_String::ReverseFindChar(char c, uint64_t start) const {
    const char text[2] = {c, 0};
    return c == 0 ? -1 : ReverseFind(UTL_String(text), start);
}

int64_t UTL_String::ReverseFindChar(wchar_t c, uint64_t start) const {
    const wchar_t text[2] = {c, 0};
    return c == 0 ? -1 : ReverseFind(UTL_String(text), start);
}

UTL_String UTL_String::Substring(uint64_t start, uint64_t count) const {
    UTL_String part;
    if (start >= m_nLength) return part;
    count = std::min(count, m_nLength - start);
    if (m_eEncoding == kNarrow) {
        part.AdoptNarrow(Duplicate(NarrowMaster() + start, count), count);
    } else {
        part.AdoptWide(Duplicate(WideMaster() + start, count), count);
    }
    return part;
}

UTL_String UTL_String::CutAtAnyOf(const UTL_String& set) const {
    for (uint64_t i = 0; i < set.m_nLength; ++i) {
        const int64_t at = Find(set.Substring(i, 1));
        if (at >= 0) return Substring(0, static_cast<uint64_t>(at));
    }
    return *this;
}

// The backward scan stops at index 1: a blank first character is the forward
// scan's to remove, which it always does.
template <typename Char>
UTL_String UTL_String::TrimMaster(const Char* text) const {
    uint64_t first = 0;
    while (first < m_nLength && IsBlank(text[first])) ++first;
    uint64_t last = m_nLength - 1;
    while (last >= 1 && IsBlank(text[last])) --last;
    if (first > last) return UTL_String();
    return Substring(first, last - first + 1);
}

UTL_String UTL_String::Trim() const {
    if (m_nLength == 0) return *this;
    return m_eEncoding == kNarrow ? TrimMaster(NarrowMaster()) : TrimMaster(WideMaster());
}

UTL_String UTL_String::Unquote() const {
    if (m_nLength > 1) {
        const bool quoted = m_eEncoding == kNarrow
                                ? NarrowMaster()[0] == '"' && m_psz[m_nLength - 1] == '"'
                                : WideMaster()[0] == L'"' && m_pwsz[m_nLength - 1] == L'"';
        if (quoted) return Substring(1, m_nLength - 2);
    }
    return *this;
}

template <typename Map>
UTL_String UTL_String::MapNarrow(Map map) const {
    if (m_eEncoding == kWide) return UTL_String();
    UTL_String mapped(*this);
    for (uint64_t i = 0; i < mapped.m_nLength; ++i) {
        mapped.m_psz[i] = static_cast<char>(map(static_cast<unsigned char>(mapped.m_psz[i])));
    }
    return mapped;
}

UTL_String UTL_String::ToLower() const {
    return MapNarrow([](int c) { return std::tolower(c); });
}

UTL_String UTL_String::ToUpper() const {
    return MapNarrow([](int c) { return std::toupper(c); });
}

void UTL_String::NormalizeSlashes() noexcept {
    for (char* p = m_psz; p != nullptr && *p != 0; ++p) {
        if (*p == '/') *p = '\\';
    }
    for (wchar_t* p = m_pwsz; p != nullptr && *p != 0; ++p) {
        if (*p == L'/') *p = L'\\';
    }
}

int UTL_String::ToInt() const { return std::atoi(Narrow()); }

bool UTL_String::Matches(const UTL_String& pattern) const {
    // The text is copied first: for pattern == *this, two Narrow() calls on a wide
    // master would replace the first cache by the second.
    const std::string text(Narrow());
    return ky::WildcardMatch(text.c_str(), pattern.Narrow());
}

bool UTL_String::operator<(const UTL_String& other) const {
    if (m_eEncoding == kWide) return std::wcscmp(Wide(), other.Wide()) < 0;
    return std::strcmp(Narrow(), other.Narrow()) < 0;
}

UTL_String::UTL_String(size_t capacity, const char* format, ...) {
    va_list args;
    va_start(args, format);
    try {
        FormatNarrow(capacity, format, args);
    } catch (...) {
        va_end(args);
        Clear();
        throw;
    }
    va_end(args);
}

UTL_String::UTL_String(size_t capacity, const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    try {
        FormatWide(capacity, format, args);
    } catch (...) {
        va_end(args);
        Clear();
        throw;
    }
    va_end(args);
}

// A text longer than the capacity is cut to fit; the length is what was written.
void UTL_String::FormatNarrow(size_t capacity, const char* format, va_list args) {
    if (capacity == 0 || format == nullptr) return;
    m_psz = AllocateChars<char>(capacity);
    const int written = _vsnprintf_s(m_psz, capacity, _TRUNCATE, format, args);
    m_nLength = written >= 0 ? static_cast<uint64_t>(written) : strnlen(m_psz, capacity);
}

void UTL_String::FormatWide(size_t capacity, const wchar_t* format, va_list args) {
    m_eEncoding = kWide;
    if (capacity == 0 || format == nullptr) return;
    m_pwsz = AllocateChars<wchar_t>(capacity);
    const int written = _vsnwprintf_s(m_pwsz, capacity, _TRUNCATE, format, args);
    m_nLength = written >= 0 ? static_cast<uint64_t>(written) : wcsnlen(m_pwsz, capacity);
}

UTL_String::UTL_String(const char* moduleName, UINT id, size_t size) {
    try {
        LoadNarrow(moduleName, id, size);
    } catch (...) {
        Clear();
        throw;
    }
}

UTL_String::UTL_String(const wchar_t* moduleName, UINT id, size_t size) {
    try {
        LoadWide(moduleName, id, size);
    } catch (...) {
        Clear();
        throw;
    }
}

UTL_String::UTL_String(HMODULE module, UINT id, size_t size) {
    try {
        ObtainFromModule(module, id, size);
    } catch (...) {
        Clear();
        throw;
    }
}

void UTL_String::LoadNarrow(const char* moduleName, UINT id, size_t size) {
    if (moduleName == nullptr || size == 0 || size > static_cast<size_t>(std::numeric_limits<int>::max())) {
        throw UTL_Exception(UTL_Exception::kBadNarrowArgument);
    }
    HMODULE module = GetModuleHandleA(moduleName);
    if (module == nullptr) throw UTL_Exception(UTL_Exception::kModuleNotFound);
    m_psz = AllocateChars<char>(size);
    const int length = LoadStringA(module, id, m_psz, static_cast<int>(size));
    if (length <= 0) throw UTL_Exception(UTL_Exception::kStringNotFound);
    m_nLength = static_cast<uint64_t>(length);
}

void UTL_String::LoadWide(const wchar_t* moduleName, UINT id, size_t size) {
    m_eEncoding = kWide;
    if (moduleName == nullptr || size == 0 || size > static_cast<size_t>(std::numeric_limits<int>::max())) {
        throw UTL_Exception(UTL_Exception::kBadArgument);
    }
    HMODULE module = GetModuleHandleW(moduleName);
    if (module == nullptr) throw UTL_Exception(UTL_Exception::kModuleNotFound);
    m_pwsz = AllocateChars<wchar_t>(size);
    const int length = LoadStringW(module, id, m_pwsz, static_cast<int>(size));
    if (length <= 0) throw UTL_Exception(UTL_Exception::kStringNotFound);
    m_nLength = static_cast<uint64_t>(length);
}

// A resource library may export "KYLoadStringW" to supply its texts in a way of
// its own; its string table is the fallback.
void UTL_String::ObtainFromModule(HMODULE module, UINT id, size_t size) {
    using ModuleLoader = int(WINAPI*)(UINT id, LPWSTR buffer, int size);
    if (module == nullptr || size == 0 || size > static_cast<size_t>(std::numeric_limits<int>::max())) {
        throw UTL_Exception(UTL_Exception::kBadArgument);
    }
    try {
        Clear();
        SetLastError(0);
        m_eEncoding = kWide;
        m_pwsz = AllocateChars<wchar_t>(size);
        const int capacity = static_cast<int>(size);
        int length = 0;
        if (FARPROC export_ = GetProcAddress(module, "KYLoadStringW")) {
            auto loader = reinterpret_cast<ModuleLoader>(reinterpret_cast<void (*)()>(export_));
            length = loader(id, m_pwsz, capacity);
        } else {
            SetLastError(ERROR_FILE_NOT_FOUND);
        }
        if (length <= 0) length = LoadStringW(module, id, m_pwsz, capacity);
        if (length <= 0) {
            if (GetLastError() != 0) throw UTL_Exception(UTL_Exception::kStringNotFound);
            length = 0;
        }
        length = std::min(length, capacity - 1);
        m_pwsz[length] = 0;
        m_nLength = static_cast<uint64_t>(length);
    } catch (...) {
        Clear();
        throw;
    }
}

UTL_String UTL_String::ExpandEnvironment() const {
    UTL_String expanded;
    if (m_eEncoding == kNarrow) {
        const char* text = NarrowMaster();
        if (std::strchr(text, '%') == nullptr) return *this;
        const DWORD size = ExpandEnvironmentStringsA(text, nullptr, 0);
        if (size == 0) throw UTL_Exception(UTL_Exception::kSystemCallFailed);
        std::unique_ptr<char[]> buffer(AllocateChars<char>(size + 1));
        const DWORD done = ExpandEnvironmentStringsA(text, buffer.get(), size);
        if (done == 0 || done > size) throw UTL_Exception(UTL_Exception::kSystemCallFailed);
        buffer[size] = 0;
        const uint64_t length = std::strlen(buffer.get());
        expanded.AdoptNarrow(buffer.release(), length);
        return expanded;
    }
    const wchar_t* text = WideMaster();
    if (std::wcschr(text, L'%') == nullptr) return *this;
    const DWORD size = ExpandEnvironmentStringsW(text, nullptr, 0);
    if (size == 0) throw UTL_Exception(UTL_Exception::kSystemCallFailed);
    std::unique_ptr<wchar_t[]> buffer(AllocateChars<wchar_t>(size + 1));
    const DWORD done = ExpandEnvironmentStringsW(text, buffer.get(), size);
    if (done == 0 || done > size) throw UTL_Exception(UTL_Exception::kSystemCallFailed);
    buffer[size] = 0;
    const uint64_t length = std::wcslen(buffer.get());
    expanded.AdoptWide(buffer.release(), length);
    return expanded;
}

UTL_String UTL_String::ToShortPath() const {
    if (m_nLength == 0) return *this;
    UTL_String shortened;
    if (m_eEncoding == kNarrow) {
        const char* text = NarrowMaster();
        const DWORD size = GetShortPathNameA(text, nullptr, 0);
        if (size == 0) throw UTL_Exception(UTL_Exception::kSystemCallFailed);
        std::unique_ptr<char[]> buffer(AllocateChars<char>(size));
        const DWORD length = GetShortPathNameA(text, buffer.get(), size);
        if (length == 0 || length >= size) throw UTL_Exception(UTL_Exception::kSystemCallFailed);
        shortened.AdoptNarrow(buffer.release(), length);
        return shortened;
    }
    const wchar_t* text = WideMaster();
    const DWORD size = GetShortPathNameW(text, nullptr, 0);
    if (size == 0) throw UTL_Exception(UTL_Exception::kSystemCallFailed);
    std::unique_ptr<wchar_t[]> buffer(AllocateChars<wchar_t>(size));
    const DWORD length = GetShortPathNameW(text, buffer.get(), size);
    if (length == 0 || length >= size) throw UTL_Exception(UTL_Exception::kSystemCallFailed);
    shortened.AdoptWide(buffer.release(), length);
    return shortened;
}

void UTL_String::SetFromWindowA(HWND window) {
    Clear();
    if (window == nullptr) return;
    try {
        const int length = GetWindowTextLengthA(window);
        if (length <= 0) return;
        m_psz = AllocateChars<char>(static_cast<uint64_t>(length) + 1);
        if (GetWindowTextA(window, m_psz, length + 1) != length) throw UTL_Exception(UTL_Exception::kBadArgument);
        m_nLength = static_cast<uint64_t>(length);
    } catch (...) {
        Clear();
        throw;
    }
}

void UTL_String::SetFromWindowW(HWND window) {
    Clear();
    m_eEncoding = kWide;
    if (window == nullptr) return;
    try {
        const int length = GetWindowTextLengthW(window);
        if (length <= 0) return;
        m_pwsz = AllocateChars<wchar_t>(static_cast<uint64_t>(length) + 1);
        if (GetWindowTextW(window, m_pwsz, length + 1) != length) throw UTL_Exception(UTL_Exception::kBadArgument);
        m_nLength = static_cast<uint64_t>(length);
    } catch (...) {
        Clear();
        throw;
    }
}
