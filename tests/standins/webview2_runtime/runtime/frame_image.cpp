#include "frame_image.h"

#include <initguid.h>
#include <objbase.h>
#include <wincodec.h>

namespace {

/// A COM pointer that lets go at the end of its block.
template<typename Interface>
struct Held {
    Interface* pointer = nullptr;
    Held() = default;
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() {
        if (pointer != nullptr) {
            pointer->Release();
        }
    }
    Interface* operator->() const { return pointer; }
};

} // namespace

FrameImage decode_png(std::string_view file) {
    Held<IWICImagingFactory> factory;
    Held<IWICStream> stream;
    Held<IWICBitmapDecoder> decoder;
    Held<IWICBitmapFrameDecode> picture;
    Held<IWICFormatConverter> converter;
    UINT width = 0;
    UINT height = 0;
    // WIC reads from the buffer and never writes to it; only its signature is not const.
    auto* const bytes = reinterpret_cast<BYTE*>(const_cast<char*>(file.data()));
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_IWICImagingFactory, reinterpret_cast<void**>(&factory.pointer))) ||
        FAILED(factory->CreateStream(&stream.pointer)) ||
        FAILED(stream->InitializeFromMemory(bytes, static_cast<DWORD>(file.size()))) ||
        FAILED(factory->CreateDecoderFromStream(stream.pointer, nullptr, WICDecodeMetadataCacheOnDemand,
                                                &decoder.pointer)) ||
        FAILED(decoder->GetFrame(0, &picture.pointer)) ||
        FAILED(factory->CreateFormatConverter(&converter.pointer)) ||
        FAILED(converter->Initialize(picture.pointer, GUID_WICPixelFormat32bppBGR, WICBitmapDitherTypeNone,
                                     nullptr, 0, WICBitmapPaletteTypeCustom)) ||
        FAILED(converter->GetSize(&width, &height))) {
        return {};
    }
    FrameImage image;
    image.pixels.resize(std::size_t{4} * width * height);
    if (FAILED(converter->CopyPixels(nullptr, width * 4, static_cast<UINT>(image.pixels.size()),
                                     image.pixels.data()))) {
        return {};
    }
    image.width = static_cast<int>(width);
    image.height = static_cast<int>(height);
    return image;
}
