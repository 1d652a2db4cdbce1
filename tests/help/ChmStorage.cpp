#include "tests/help/ChmStorage.h"

namespace lptest {
namespace {

// The storage object of the InfoTech storage system and its interface, as the
// system registers them.
const CLSID kClsidITStorage = {0x5D02926A, 0x212E, 0x11D0, {0x9D, 0xF9, 0x00, 0xA0, 0xC9, 0x22, 0xE6, 0xEC}};
const IID kIidITStorage = {0x88CC31DE, 0x27AB, 0x11D0, {0x9D, 0xF9, 0x00, 0xA0, 0xC9, 0x22, 0xE6, 0xEC}};

}  // namespace

// Only the methods up to the one called are declared. The interface has external
// linkage on purpose: the compiler must not conclude from a local type without
// implementations that its calls cannot happen.
struct IITStorage : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE StgCreateDocfile(const WCHAR*, DWORD, DWORD, IStorage**) = 0;
    virtual HRESULT STDMETHODCALLTYPE StgCreateDocfileOnILockBytes(ILockBytes*, DWORD, DWORD, IStorage**) = 0;
    virtual HRESULT STDMETHODCALLTYPE StgIsStorageFile(const WCHAR*) = 0;
    virtual HRESULT STDMETHODCALLTYPE StgIsStorageILockBytes(ILockBytes*) = 0;
    virtual HRESULT STDMETHODCALLTYPE StgOpenStorage(const WCHAR*, IStorage*, DWORD, SNB, DWORD, IStorage**) = 0;
};

ChmStorage::ChmStorage(const std::wstring& path) {
    m_comStarted = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    IITStorage* factory = nullptr;
    m_error = CoCreateInstance(kClsidITStorage, nullptr, CLSCTX_INPROC_SERVER, kIidITStorage,
                               reinterpret_cast<void**>(&factory));
    if (FAILED(m_error)) return;
    m_error = factory->StgOpenStorage(path.c_str(), nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0,
                                      &m_storage);
    factory->Release();
    if (FAILED(m_error)) m_storage = nullptr;
}

ChmStorage::~ChmStorage() {
    if (m_storage) m_storage->Release();
    if (m_comStarted) CoUninitialize();
}

bool ChmStorage::Has(const std::wstring& name) const {
    IStream* stream = nullptr;
    if (!m_storage || FAILED(m_storage->OpenStream(name.c_str(), nullptr, STGM_READ, 0, &stream))) return false;
    stream->Release();
    return true;
}

std::string ChmStorage::Read(const std::wstring& name) const {
    IStream* stream = nullptr;
    std::string bytes;
    if (!m_storage || FAILED(m_storage->OpenStream(name.c_str(), nullptr, STGM_READ, 0, &stream))) return bytes;
    char chunk[4096];
    ULONG got = 0;
    while (SUCCEEDED(stream->Read(chunk, sizeof chunk, &got)) && got > 0) bytes.append(chunk, got);
    stream->Release();
    return bytes;
}

}  // namespace lptest
