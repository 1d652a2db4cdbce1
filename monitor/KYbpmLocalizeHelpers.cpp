#include "monitor/KYbpmLocalizeHelpers.h"

#include <cwchar>
#include <string>
#include <vector>

namespace {

bool CopyOut(const std::wstring& text, wchar_t* out, uint32_t capacity) {
    if (!out || capacity == 0) return false;
    out[0] = L'\0';
    if (text.size() >= capacity) return false;
    wmemcpy(out, text.c_str(), text.size() + 1);
    return true;
}

// The version resource of module as a private copy that VerQueryValueW may read.
bool LoadVersionBlock(HMODULE module, std::vector<BYTE>& block) {
    if (!module) module = GetModuleHandleW(nullptr);
    HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
    if (!found) return false;
    HGLOBAL loaded = LoadResource(module, found);
    const DWORD size = SizeofResource(module, found);
    const void* data = loaded ? LockResource(loaded) : nullptr;
    if (!data || size == 0) return false;
    const BYTE* bytes = static_cast<const BYTE*>(data);
    block.assign(bytes, bytes + size);
    block.resize(static_cast<size_t>(size) * 2);  // room VerQueryValueW may use
    return true;
}

std::wstring FirstTranslation(std::vector<BYTE>& block) {
    struct Translation { WORD language; WORD codePage; };
    void* value = nullptr;
    UINT length = 0;
    if (VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &value, &length) && value &&
        length >= sizeof(Translation)) {
        const auto* first = static_cast<const Translation*>(value);
        wchar_t text[16];
        swprintf(text, 16, L"%04x%04x", first->language, first->codePage);
        return text;
    }
    return L"040904b0";
}

bool ExtractValue(HMODULE module, const wchar_t* name, wchar_t* out, uint32_t capacity,
                  const wchar_t* langCodepage, const wchar_t* block, wchar_t separator) {
    if (!out || capacity == 0) return false;
    out[0] = L'\0';
    std::vector<BYTE> version;
    if (!LoadVersionBlock(module, version)) return false;
    const std::wstring sep(1, separator ? separator : L'\\');
    const std::wstring language = langCodepage && *langCodepage ? langCodepage : FirstTranslation(version);
    const std::wstring path = sep + (block && *block ? block : L"StringFileInfo") + sep + language + sep + name;
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(version.data(), path.c_str(), &value, &length) || !value) return false;
    const auto* text = static_cast<const wchar_t*>(value);
    return CopyOut(std::wstring(text, wcsnlen(text, length)), out, capacity);
}

}  // namespace

bool KYbpmLocalizeHelpers::expandEnvironmentVarStrsW(const wchar_t* source, wchar_t* out, wchar_t* work,
                                                     uint32_t* outLength, uint32_t capacity) {
    if (outLength) *outLength = 0;
    if (!source || !out || capacity == 0) return false;
    // The source is kept apart from out, which may be the same buffer.
    std::wstring kept;
    const wchar_t* from = nullptr;
    if (work && work != out) {
        const size_t length = wcslen(source);
        if (length >= capacity) {
            out[0] = L'\0';
            return false;
        }
        if (work != source) wmemmove(work, source, length + 1);
        from = work;
    } else {
        kept = source;
        from = kept.c_str();
    }
    const DWORD needed = ExpandEnvironmentStringsW(from, out, capacity);
    if (needed == 0 || needed > capacity) {
        out[0] = L'\0';
        return false;
    }
    if (outLength) *outLength = needed - 1;
    return true;
}

bool KYbpmLocalizeHelpers::obtainVersionQRW(wchar_t* out, uint32_t capacity, int form, HMODULE module) {
    const wchar_t* name = form == 4 ? L"BuildIdentifier" : form == 13 ? L"ErrorCodePrefix" : nullptr;
    if (!name) {
        if (out && capacity) out[0] = L'\0';
        return false;
    }
    return ExtractValue(module, name, out, capacity, nullptr, L"StringFileInfo", L'\\');
}

bool KYbpmLocalizeHelpers::extractModuleVerValueSFI_OrigFNm(HMODULE module, wchar_t* out, uint32_t capacity,
                                                            const wchar_t* langCodepage, const wchar_t* block,
                                                            wchar_t separator) {
    return ExtractValue(module, L"OriginalFilename", out, capacity, langCodepage, block, separator);
}

bool KYbpmLocalizeHelpers::extractModuleVerValueSFI_LegalCN(HMODULE module, wchar_t* out, uint32_t capacity,
                                                            const wchar_t* langCodepage, const wchar_t* block,
                                                            wchar_t separator) {
    return ExtractValue(module, L"LegalCopyright", out, capacity, langCodepage, block, separator);
}

bool KYbpmLocalizeHelpers::extractModuleVerValueSFI_LegalTM(HMODULE module, wchar_t* out, uint32_t capacity,
                                                            const wchar_t* langCodepage, const wchar_t* block,
                                                            wchar_t separator) {
    return ExtractValue(module, L"LegalTrademarks", out, capacity, langCodepage, block, separator);
}

bool KYbpmLocalizeHelpers::extractModuleVerValueSFI_ProductName(HMODULE module, wchar_t* out, uint32_t capacity,
                                                                const wchar_t* langCodepage, const wchar_t* block,
                                                                wchar_t separator) {
    return ExtractValue(module, L"ProductName", out, capacity, langCodepage, block, separator);
}

bool KYbpmLocalizeHelpers::convertIntToPunctuatedStrW(int64_t value, wchar_t* out, uint32_t capacity) {
    wchar_t separator[8] = L",";
    if (GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_STHOUSAND, separator, 8) <= 0) wcscpy(separator, L",");
    // The magnitude as unsigned, so that the smallest value has one too.
    uint64_t magnitude = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
    std::wstring digits = std::to_wstring(magnitude);
    std::wstring text;
    for (size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) text += separator;
        text += digits[i];
    }
    if (value < 0) text.insert(0, 1, L'-');
    return CopyOut(text, out, capacity);
}
