#include <new>

#include "imaging/imaging_component_win32.h"
#include "imaging/png_writer.h"
#include "platform/memory.h"

namespace {

// A colour as the component wants it: opacity in the highest byte, then red, green, blue.
WICColor ColourOf(const uint8_t* rgba) {
    return static_cast<WICColor>(rgba[3]) << 24 | static_cast<WICColor>(rgba[0]) << 16 |
           static_cast<WICColor>(rgba[1]) << 8 | rgba[2];
}

WICPixelFormatGUID FormatOf(PngForm form) {
    if (form == PngForm::kIndexed) return GUID_WICPixelFormat8bppIndexed;
    return form == PngForm::kOpaque ? GUID_WICPixelFormat24bppBGR : GUID_WICPixelFormat32bppBGRA;
}

uint64_t RowBytesOf(const PngLayout& layout) {
    return uint64_t{layout.width} * (layout.form == PngForm::kIndexed ? 1 : layout.form == PngForm::kOpaque ? 3 : 4);
}

}  // namespace

struct PngWriter::System {
    ComponentScope scope;  // outlives the interfaces
    Owned<IWICImagingFactory> factory;
    Owned<IStream> stream;
    Owned<IWICBitmapEncoder> encoder;
    Owned<IWICBitmapFrameEncode> frame;
    PngLayout layout;
    ByteBuffer* out = nullptr;
    std::unique_ptr<uint8_t[]> row;  // in the component's order of bytes

    bool Open();
    bool StartFrame();
    bool SetColours();
    const uint8_t* Turned(const uint8_t* rgba);
    bool HandOver();
};

bool PngWriter::System::Open() {
    return SUCCEEDED(FindImagingComponent(&factory)) &&
           SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive())) &&
           SUCCEEDED(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.Receive())) &&
           SUCCEEDED(encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache)) &&
           SUCCEEDED(encoder->CreateNewFrame(frame.Receive(), nullptr)) && SUCCEEDED(frame->Initialize(nullptr));
}

bool PngWriter::System::StartFrame() {
    const WICPixelFormatGUID wanted = FormatOf(layout.form);
    WICPixelFormatGUID given = wanted;
    if (FAILED(frame->SetSize(layout.width, layout.height)) || FAILED(frame->SetPixelFormat(&given)) ||
        !IsEqualGUID(given, wanted))
        return false;
    return layout.form != PngForm::kIndexed || SetColours();
}

bool PngWriter::System::SetColours() {
    WICColor colours[256];
    UINT count = 0;
    for (const uint32_t& colour : layout.colours)
        colours[count++] = ColourOf(reinterpret_cast<const uint8_t*>(&colour));
    Owned<IWICPalette> palette;
    return SUCCEEDED(factory->CreatePalette(palette.Receive())) &&
           SUCCEEDED(palette->InitializeCustom(colours, count)) && SUCCEEDED(frame->SetPalette(palette.Get()));
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what its members point to
const uint8_t* PngWriter::System::Turned(const uint8_t* rgba) {
    uint8_t* to = row.get();
    const bool isOpaque = layout.form == PngForm::kOpaque;
    for (uint32_t x = 0; x < layout.width; ++x, rgba += 4) {
        *to++ = rgba[2];
        *to++ = rgba[1];
        *to++ = rgba[0];
        if (!isOpaque) *to++ = rgba[3];
    }
    return row.get();
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what its members point to
bool PngWriter::System::HandOver() {
    STATSTG status = {};
    HGLOBAL memory = nullptr;
    if (FAILED(stream->Stat(&status, STATFLAG_NONAME)) || FAILED(GetHGlobalFromStream(stream.Get(), &memory)))
        return false;
    const void* bytes = GlobalLock(memory);
    const bool taken = bytes && out->Append(bytes, static_cast<size_t>(status.cbSize.QuadPart));
    if (bytes) GlobalUnlock(memory);
    return taken;
}

PngWriter::PngWriter() = default;
PngWriter::~PngWriter() = default;

bool PngWriter::Start(const PngLayout& layout, ByteBuffer* out) {
    system_.reset(new (std::nothrow) System);
    if (!system_) return false;
    system_->layout = layout;
    system_->out = out;
    if (RowBytesOf(layout) > UINT32_MAX) return false;
    if (layout.form != PngForm::kIndexed && !(system_->row = AllocateScratch(RowBytesOf(layout)))) return false;
    return system_->Open() && system_->StartFrame();
}

bool PngWriter::AddRow(const uint8_t* row) {
    const auto bytes = static_cast<UINT>(RowBytesOf(system_->layout));
    const uint8_t* turned = system_->row ? system_->Turned(row) : row;
    // The interface takes bytes that it only reads as if they were to be written.
    return SUCCEEDED(system_->frame->WritePixels(1, bytes, bytes, const_cast<uint8_t*>(turned)));
}

bool PngWriter::Finish() {
    return SUCCEEDED(system_->frame->Commit()) && SUCCEEDED(system_->encoder->Commit()) && system_->HandOver();
}
