#include "tests/support/png_reading.h"

#include "platform/windows_api.h"

// clang-format off
#include <objbase.h>
#include <wincodec.h>
// clang-format on

namespace {

// The interfaces live as long as the test program: what it reads is little.
IWICBitmapFrameDecode* FirstFrame(IWICImagingFactory* factory, std::span<const uint8_t> png) {
    IWICStream* stream = nullptr;
    IWICBitmapDecoder* decoder = nullptr;
    IWICBitmapFrameDecode* frame = nullptr;
    auto* bytes = const_cast<uint8_t*>(png.data());
    if (SUCCEEDED(factory->CreateStream(&stream)) &&
        SUCCEEDED(stream->InitializeFromMemory(bytes, static_cast<DWORD>(png.size()))) &&
        SUCCEEDED(factory->CreateDecoderFromStream(stream, nullptr, WICDecodeMetadataCacheOnLoad, &decoder)))
        (void)decoder->GetFrame(0, &frame);
    return frame;
}

}  // namespace

bool ReadPng::Decode(std::span<const uint8_t> png) {
    IWICImagingFactory* factory = nullptr;
    IWICFormatConverter* converter = nullptr;
    (void)CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                reinterpret_cast<void**>(&factory))))
        return false;
    IWICBitmapFrameDecode* frame = FirstFrame(factory, png);
    UINT columns = 0, rows = 0;
    if (!frame || FAILED(frame->GetSize(&columns, &rows)) || FAILED(factory->CreateFormatConverter(&converter)) ||
        FAILED(converter->Initialize(frame, GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone, nullptr, 0,
                                     WICBitmapPaletteTypeCustom)))
        return false;
    width = columns;
    height = rows;
    pixels.resize(size_t{width} * height);
    auto* bytes = reinterpret_cast<uint8_t*>(pixels.data());
    if (FAILED(converter->CopyPixels(nullptr, width * 4, static_cast<UINT>(pixels.size() * 4), bytes))) return false;
    for (size_t i = 0; i < pixels.size(); ++i) std::swap(bytes[4 * i], bytes[4 * i + 2]);
    return true;
}
