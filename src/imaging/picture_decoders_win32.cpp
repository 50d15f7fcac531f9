#include <utility>

#include "imaging/imaging_component_win32.h"
#include "imaging/picture_decoders.h"
#include "imaging/row_packer.h"
#include "platform/memory.h"

namespace {

Failure MeaningOf(HRESULT result) {
    switch (result) {
        case S_OK: return Failure::kNone;
        case E_OUTOFMEMORY: return Failure::kNoMemory;
        case WINCODEC_ERR_COMPONENTNOTFOUND: return Failure::kNoDecoder;
        case WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT: return Failure::kNotSupported;
        default: return FAILED(result) ? Failure::kDamaged : Failure::kNone;
    }
}

// A row of 1, 2 or 4 bits a pixel, or of 8, as bytes.
void SpreadRow(const uint8_t* row, int width, unsigned bits, uint8_t* indexes) {
    if (bits != 2) return UnpackRow(indexes, row, width, static_cast<int>(bits));
    for (int x = 0; x < width; ++x) indexes[x] = row[x / 4] >> (6 - x % 4 * 2) & 3;
}

unsigned BitsOfIndexed(const WICPixelFormatGUID& format) {
    if (IsEqualGUID(format, GUID_WICPixelFormat1bppIndexed)) return 1;
    if (IsEqualGUID(format, GUID_WICPixelFormat2bppIndexed)) return 2;
    if (IsEqualGUID(format, GUID_WICPixelFormat4bppIndexed)) return 4;
    return IsEqualGUID(format, GUID_WICPixelFormat8bppIndexed) ? 8 : 0;
}

// One file on its way through the component.
class Decoding {
public:
    Failure Run(std::span<const uint8_t> file, REFGUID container, Picture* picture) {
        picture_ = picture;
        if (const HRESULT found = FindImagingComponent(&factory_); FAILED(found))
            return found == E_OUTOFMEMORY ? Failure::kNoMemory : Failure::kNoDecoder;
        if (const HRESULT opened = Open(file, container); FAILED(opened)) return MeaningOf(opened);
        WICPixelFormatGUID format = {};
        UINT width = 0, height = 0;
        HRESULT result = frame_->GetSize(&width, &height);
        if (SUCCEEDED(result)) result = frame_->GetPixelFormat(&format);
        const unsigned bits = BitsOfIndexed(format);
        if (SUCCEEDED(result) && bits) result = TakeColours();
        if (FAILED(result)) return MeaningOf(result);
        if (const Failure failure = MakeRoom(picture, width, height); failure != Failure::kNone) return failure;
        if (bits) return CopyIndexes(bits);
        return IsEqualGUID(format, GUID_WICPixelFormat32bppCMYK) ? CopyInks() : CopyColours();
    }

private:
    HRESULT Open(std::span<const uint8_t> file, REFGUID container) {
        // The stream only reads, and takes bytes as if it wrote.
        auto* bytes = const_cast<uint8_t*>(file.data());
        HRESULT result = factory_->CreateStream(stream_.Receive());
        if (SUCCEEDED(result)) result = stream_->InitializeFromMemory(bytes, static_cast<DWORD>(file.size()));
        if (SUCCEEDED(result)) result = factory_->CreateDecoder(container, nullptr, decoder_.Receive());
        if (SUCCEEDED(result)) result = decoder_->Initialize(stream_.Get(), WICDecodeMetadataCacheOnDemand);
        if (SUCCEEDED(result)) result = decoder_->GetFrame(0, frame_.Receive());
        return result;
    }

    HRESULT TakeColours() {
        Owned<IWICPalette> palette;
        WICColor colours[Picture::kMostColours] = {};
        UINT count = 0;
        HRESULT result = factory_->CreatePalette(palette.Receive());
        if (SUCCEEDED(result)) result = frame_->CopyPalette(palette.Get());
        if (SUCCEEDED(result)) result = palette->GetColors(Picture::kMostColours, colours, &count);
        if (SUCCEEDED(result) && count == 0) result = WINCODEC_ERR_PALETTEUNAVAILABLE;
        if (FAILED(result)) return result;
        GiveColours(picture_, static_cast<int>(count));
        for (UINT i = 0; i < count; ++i)
            picture_->colours[i] = {static_cast<uint8_t>(colours[i] >> 16), static_cast<uint8_t>(colours[i] >> 8),
                                    static_cast<uint8_t>(colours[i]), static_cast<uint8_t>(colours[i] >> 24)};
        return S_OK;
    }

    // All at once: asked for row after row, some decoders start over each time.
    Failure Copy(IWICBitmapSource* source, size_t rowBytes, uint8_t* to) {
        const uint64_t bytes = uint64_t{rowBytes} * static_cast<uint64_t>(picture_->height);
        return MeaningOf(source->CopyPixels(nullptr, static_cast<UINT>(rowBytes), static_cast<UINT>(bytes), to));
    }

    Failure CopyIndexes(unsigned bits) {
        if (bits == 8) return Copy(frame_.Get(), picture_->RowBytes(), picture_->pixels.get());
        const size_t rowBytes = (static_cast<size_t>(picture_->width) * bits + 7) / 8;
        auto rows = AllocateScratch(uint64_t{rowBytes} * static_cast<uint64_t>(picture_->height));
        if (!rows) return Failure::kNoMemory;
        if (const Failure failure = Copy(frame_.Get(), rowBytes, rows.get()); failure != Failure::kNone) return failure;
        for (int y = 0; y < picture_->height; ++y)
            SpreadRow(&rows[static_cast<size_t>(y) * rowBytes], picture_->width, bits, picture_->Row(y));
        return Failure::kNone;
    }

    Failure CopyInks() {
        const Failure failure = Copy(frame_.Get(), picture_->RowBytes(), picture_->pixels.get());
        for (int y = 0; failure == Failure::kNone && y < picture_->height; ++y)
            RgbaFromInks(picture_->Row(y), static_cast<size_t>(picture_->width), picture_->Row(y));
        return failure;
    }

    Failure CopyColours() {
        Owned<IWICFormatConverter> converter;
        HRESULT result = factory_->CreateFormatConverter(converter.Receive());
        if (SUCCEEDED(result))
            result = converter->Initialize(frame_.Get(), GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone, nullptr,
                                           0, WICBitmapPaletteTypeCustom);
        if (FAILED(result)) return result == E_OUTOFMEMORY ? Failure::kNoMemory : Failure::kNotSupported;
        const Failure failure = Copy(converter.Get(), picture_->RowBytes(), picture_->pixels.get());
        for (int y = 0; failure == Failure::kNone && y < picture_->height; ++y) {
            uint8_t* pixel = picture_->Row(y);
            for (int x = 0; x < picture_->width; ++x, pixel += 4) std::swap(pixel[0], pixel[2]);
        }
        return failure;
    }

    ComponentScope scope_;  // outlives the interfaces
    Owned<IWICImagingFactory> factory_;
    Owned<IWICStream> stream_;
    Owned<IWICBitmapDecoder> decoder_;
    Owned<IWICBitmapFrameDecode> frame_;
    Picture* picture_ = nullptr;
};

}  // namespace

Failure DecodePng(std::span<const uint8_t> file, Picture* picture) {
    return Decoding().Run(file, GUID_ContainerFormatPng, picture);
}

Failure DecodeJpeg(std::span<const uint8_t> file, Picture* picture) {
    return Decoding().Run(file, GUID_ContainerFormatJpeg, picture);
}
