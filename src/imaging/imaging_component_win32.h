// The imaging component of Windows, and what holding its interfaces needs.
#pragma once

#include "platform/windows_api.h"

// clang-format off
#include <objbase.h>
#include <wincodec.h>
// clang-format on

// Holds an interface and releases it.
template <typename T>
class Owned {
public:
    Owned() = default;
    ~Owned() {
        if (interface_) interface_->Release();
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    T** Receive() { return &interface_; }
    T* Get() const { return interface_; }
    T* operator->() const { return interface_; }

private:
    T* interface_ = nullptr;
};

// The calling thread may use the system's components for as long as this lives.
class ComponentScope {
public:
    ComponentScope() : entered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
    ~ComponentScope() {
        if (entered_) CoUninitialize();
    }
    ComponentScope(const ComponentScope&) = delete;
    ComponentScope& operator=(const ComponentScope&) = delete;

private:
    bool entered_;
};

// Gets hold of the component, which Windows XP has from its third service pack on. Fails where it is missing.
inline HRESULT FindImagingComponent(Owned<IWICImagingFactory>* factory) {
    return CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                            reinterpret_cast<void**>(factory->Receive()));
}
