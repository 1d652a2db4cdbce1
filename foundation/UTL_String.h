// A small value-type string that holds its text in a narrow (system code page) or
// a wide form. One form is the master; the other is a cache made on demand and
// replaced each time it is asked for, so a pointer from Narrow() or Wide() on a
// string of the other encoding lasts only until the next such call. Failures are
// thrown as UTL_Exception with the codes of UTL_Exception.h. No locks, no global
// state.
#pragma once
#include <windows.h>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <limits>

class UTL_String {
public:
    enum : int32_t { kNarrow = 1, kWide = 2 };
    // "Up to the end" for counts and backward search starts.
    static constexpr uint64_t kEnd = std::numeric_limits<uint64_t>::max();

    UTL_String() noexcept = default;
    // Exact copies; null gives an empty string of that encoding.
    UTL_String(const char* text);
    UTL_String(const wchar_t* text);
    // Copies the master form only, never the cache.
    UTL_String(const UTL_String& other);
    // Decimal text of the value as "%d" prints it (so above 2^31 it is negative).
    explicit UTL_String(uint32_t value);
    // printf-style formatting into exactly capacity characters (terminator
    // included); a longer text is cut to fit.
    UTL_String(size_t capacity, const char* format, ...);
    UTL_String(size_t capacity, const wchar_t* format, ...);
    // A string resource of a loaded module, read into at most size characters.
    UTL_String(const char* moduleName, UINT id, size_t size);
    UTL_String(const wchar_t* moduleName, UINT id, size_t size);
    UTL_String(HMODULE module, UINT id, size_t size);
    virtual ~UTL_String();

    // By master form only; assigning an empty string clears (encoding 1).
    UTL_String& operator=(const UTL_String& other);

    uint64_t Length() const noexcept { return m_nLength; }
    int32_t Encoding() const noexcept { return m_eEncoding; }
    const char* Narrow() const;
    const wchar_t* Wide() const;
    // The length of the text in the target encoding (kNarrow or kWide).
    uint64_t EncodedLength(int32_t encoding) const;
    void Clear() noexcept;

    // Replaces the text by string id of module: the module's own "KYLoadStringW"
    // export first, its string table second. Empty without failure when neither
    // has text and no error is set.
    void ObtainFromModule(HMODULE module, UINT id, size_t size);

    // Joins in place, in this string's encoding, reallocating exactly.
    UTL_String& Append(const UTL_String& other);
    // Compares the narrow forms, whatever the masters are.
    bool Equals(const UTL_String& other) const;
    bool StartsWith(const UTL_String& other) const;
    bool EndsWith(const UTL_String& other) const;
    bool ComparePart(const UTL_String& other, uint64_t count, uint64_t start) const;

    // Positions count in characters of the master form; -1 when absent.
    int64_t Find(const UTL_String& what, uint64_t start = 0) const;
    int64_t ReverseFind(const UTL_String& what, uint64_t start = kEnd) const;
    int64_t FindChar(char c, uint64_t start = 0) const;
    int64_t FindChar(wchar_t c, uint64_t start = 0) const;
    int64_t ReverseFindChar(char c, uint64_t start = kEnd) const;
    int64_t ReverseFindChar(wchar_t c, uint64_t start = kEnd) const;

    UTL_String Substring(uint64_t start, uint64_t count = kEnd) const;
    // The text before the first occurrence of the first character of set (in the
    // set's order) that the text holds; the whole text when it holds none.
    UTL_String CutAtAnyOf(const UTL_String& set) const;
    // Without blanks, tabs and line feeds at both ends (carriage returns stay).
    UTL_String Trim() const;
    UTL_String Unquote() const;
    // Narrow text only: a wide master gives an empty narrow string.
    UTL_String ToLower() const;
    UTL_String ToUpper() const;
    UTL_String ExpandEnvironment() const;
    UTL_String ToShortPath() const;
    void NormalizeSlashes() noexcept;
    void SetFromWindowA(HWND window);
    void SetFromWindowW(HWND window);
    int ToInt() const;
    // "*" any run, "?" one character; exact by narrow character.
    bool Matches(const UTL_String& pattern) const;
    bool operator<(const UTL_String& other) const;

protected:
    static char* AllocateNarrow(uint64_t count);
    static wchar_t* AllocateWide(uint64_t count);
    // The master form, checked (5, 6, 15); "" for an empty string.
    const char* NarrowMaster() const;
    const wchar_t* WideMaster() const;
    // Frees both forms and takes buffer as the new master.
    void AdoptNarrow(char* buffer, uint64_t length) noexcept;
    void AdoptWide(wchar_t* buffer, uint64_t length) noexcept;

    mutable wchar_t* m_pwsz = nullptr;
    mutable char* m_psz = nullptr;
    uint64_t m_nLength = 0;
    int32_t m_eEncoding = kNarrow;

private:
    void CopyMasterOf(const UTL_String& other);
    void FormatNarrow(size_t capacity, const char* format, va_list args);
    void FormatWide(size_t capacity, const wchar_t* format, va_list args);
    void LoadNarrow(const char* moduleName, UINT id, size_t size);
    void LoadWide(const wchar_t* moduleName, UINT id, size_t size);
    template <typename Char> UTL_String TrimMaster(const Char* text) const;
    template <typename Map> UTL_String MapNarrow(Map map) const;
};

UTL_String operator+(const UTL_String& left, const UTL_String& right);
UTL_String operator+(const char* left, const UTL_String& right);
UTL_String operator+(const wchar_t* left, const UTL_String& right);
