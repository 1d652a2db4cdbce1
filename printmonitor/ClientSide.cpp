#include "printmonitor/ClientSide.h"

#include <windows.h>

#include "foundation/UniqueHandle.h"
#include "printmonitor/PrintMonitorRecords.h"
#include "printmonitor/Spooler.h"

namespace kypm {

namespace {

bool ReadValue(HKEY key, const wchar_t* name, DWORD wanted, std::vector<wchar_t>& data) {
    DWORD type = 0, size = 0;
    if (RegQueryValueExW(key, name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) return false;
    if (type != wanted && !(wanted == REG_SZ && type == REG_EXPAND_SZ)) return false;
    data.assign(size / sizeof(wchar_t) + 2, L'\0');
    return RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size) ==
           ERROR_SUCCESS;
}

std::wstring ReadText(HKEY key, const wchar_t* name) {
    std::vector<wchar_t> data;
    return ReadValue(key, name, REG_SZ, data) ? std::wstring(data.data()) : std::wstring();
}

bool ReadList(HKEY key, const wchar_t* name, std::vector<std::wstring>& list) {
    list.clear();
    std::vector<wchar_t> data;
    if (!ReadValue(key, name, REG_MULTI_SZ, data)) return false;
    for (const wchar_t* item = data.data(); *item; item += wcslen(item) + 1) list.emplace_back(item);
    return true;
}

bool ReadFlag(HKEY key, const wchar_t* name, bool fallback) {
    DWORD type = 0, value = 0, size = sizeof value;
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size) !=
            ERROR_SUCCESS ||
        type != REG_DWORD)
        return fallback;
    return value != 0;
}

bool Contains(const std::vector<std::wstring>& names, const std::wstring& name) {
    for (const std::wstring& known : names)
        if (Spooler::SameName(known, name)) return true;
    return false;
}

}  // namespace

bool ClientSide::Load() {
    *this = ClientSide();
    ky::UniqueHKey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kClientKey, 0, KEY_READ, key.put()) != ERROR_SUCCESS)
        return false;
    m_inSession = true;
    m_printingSupported = ReadFlag(key.get(), L"ClientPrinting", true);
    m_hasPrinters = ReadList(key.get(), L"Printers", m_printers);
    m_onlyOffered = m_hasPrinters && ReadFlag(key.get(), L"OnlyOffered", true);
    ReadList(key.get(), L"Fixed", m_fixed);
    m_driver = ReadText(key.get(), L"Driver");
    m_port = ReadText(key.get(), L"Port");
    m_defaultPrinter = ReadText(key.get(), L"DefaultPrinter");
    return true;
}

bool ClientSide::Offers(const std::wstring& name) const { return Contains(m_printers, name); }

bool ClientSide::IsFixed(const std::wstring& name) const { return Contains(m_fixed, name); }

std::wstring ClientSide::DefaultPrinter() const {
    if (!m_defaultPrinter.empty()) return m_defaultPrinter;
    return m_printers.empty() ? std::wstring() : m_printers.front();
}

}  // namespace kypm
