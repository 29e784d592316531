#include "tests/support/screen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <set>
#include <stdexcept>
#include <type_traits>

#include "tests/support/paths.h"
#include "tests/support/text.h"

namespace testkit {
namespace {

struct ReleaseScreen {
    void operator()(HDC dc) const { ReleaseDC(nullptr, dc); }
};
struct DeleteMemoryDc {
    void operator()(HDC dc) const { DeleteDC(dc); }
};
struct DeleteGdiObject {
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using ScreenDc = std::unique_ptr<std::remove_pointer_t<HDC>, ReleaseScreen>;
using MemoryDc = std::unique_ptr<std::remove_pointer_t<HDC>, DeleteMemoryDc>;
using Bitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, DeleteGdiObject>;

BITMAPINFOHEADER TopDownHeader(int width, int height) {
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = -height;
    header.biPlanes = 1;
    header.biBitCount = 32;
    header.biCompression = BI_RGB;
    return header;
}

bool picture_taken = false;

class FailureListener : public ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo& /*test*/) override { picture_taken = false; }

    void OnTestPartResult(const ::testing::TestPartResult& result) override {
        if (result.failed()) CaptureScreenOfFailure();
    }
};

}  // namespace

Picture::Picture(int width, int height, std::vector<DWORD> pixels)
    : width_(width), height_(height), pixels_(std::move(pixels)) {}

COLORREF Picture::At(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        throw std::out_of_range("no pixel " + std::to_string(x) + ", " + std::to_string(y) +
                                " in a picture of " + std::to_string(width_) + " x " +
                                std::to_string(height_));
    }
    const DWORD pixel =
        pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
    return RGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF);
}

Picture Picture::Part(RECT part) const {
    const RECT whole = {0, 0, width_, height_};
    RECT cut = {};
    IntersectRect(&cut, &whole, &part);
    std::vector<DWORD> pixels;
    for (LONG y = cut.top; y < cut.bottom; ++y) {
        const auto row = pixels_.begin() + static_cast<std::ptrdiff_t>(y) * width_;
        pixels.insert(pixels.end(), row + cut.left, row + cut.right);
    }
    return {cut.right - cut.left, cut.bottom - cut.top, std::move(pixels)};
}

std::size_t Picture::ColourCount() const { return std::set<DWORD>(pixels_.begin(), pixels_.end()).size(); }

std::size_t Picture::PixelCount(COLORREF colour) const {
    const DWORD pixel = RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour));
    return static_cast<std::size_t>(std::count(pixels_.begin(), pixels_.end(), pixel));
}

std::size_t Picture::DifferenceCount(const Picture& other) const {
    if (width_ != other.width_ || height_ != other.height_) {
        throw std::invalid_argument("pictures of different sizes");
    }
    std::size_t count = 0;
    for (std::size_t i = 0; i < pixels_.size(); ++i)
        count += pixels_[i] != other.pixels_[i];
    return count;
}

std::string Picture::SaveAs(const std::string& name) const {
    const BITMAPINFOHEADER header = TopDownHeader(width_, height_);
    const DWORD pixel_bytes = static_cast<DWORD>(pixels_.size() * sizeof(DWORD));
    BITMAPFILEHEADER file = {};
    file.bfType = 0x4D42;  // "BM"
    file.bfOffBits = sizeof file + sizeof header;
    file.bfSize = file.bfOffBits + pixel_bytes;
    std::string bytes(file.bfSize, '\0');
    std::memcpy(bytes.data(), &file, sizeof file);
    std::memcpy(bytes.data() + sizeof file, &header, sizeof header);
    if (pixel_bytes) std::memcpy(bytes.data() + file.bfOffBits, pixels_.data(), pixel_bytes);
    const std::string path = ArtifactsFolder() + "\\" + name;
    WriteBytes(path, bytes);
    return path;
}

Picture CaptureScreen(RECT rect) {
    const RECT screen = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    RECT cut = {};
    if (!IntersectRect(&cut, &screen, &rect)) return {};
    const int width = cut.right - cut.left;
    const int height = cut.bottom - cut.top;
    BITMAPINFO info = {};
    info.bmiHeader = TopDownHeader(width, height);
    const ScreenDc source(GetDC(nullptr));
    const MemoryDc memory(CreateCompatibleDC(source.get()));
    void* bits = nullptr;
    const Bitmap bitmap(CreateDIBSection(source.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!bitmap) ThrowWindowsError("CreateDIBSection");
    const HGDIOBJ before = SelectObject(memory.get(), bitmap.get());
    const BOOL copied = BitBlt(memory.get(), 0, 0, width, height, source.get(), cut.left, cut.top, SRCCOPY);
    GdiFlush();
    const auto* first = static_cast<const DWORD*>(bits);
    std::vector<DWORD> pixels(first, first + static_cast<std::ptrdiff_t>(width) * height);
    SelectObject(memory.get(), before);
    if (!copied) ThrowWindowsError("BitBlt");
    // The fourth byte has no meaning on the screen.
    for (DWORD& pixel : pixels)
        pixel &= 0x00FFFFFF;
    return {width, height, std::move(pixels)};
}

Picture CaptureScreen() {
    return CaptureScreen({0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)});
}

Picture CaptureWindow(Window window) { return CaptureScreen(window.Rect()); }

std::string ArtifactsFolder() {
    const std::string given = EnvironmentValue("QUON_ARTIFACTS");
    const std::string folder = given.empty() ? TestProgramFolder() + "\\artifacts" : WindowsPath(given);
    MakeFolders(folder);
    return folder;
}

void CaptureScreenOfFailure() {
    const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
    if (picture_taken || !test) return;
    picture_taken = true;
    std::string name = std::string(test->test_suite_name()) + "." + test->name() + ".bmp";
    std::replace(name.begin(), name.end(), '/', '_');
    try {
        std::printf("The screen at this failure: %s\n", CaptureScreen().SaveAs(name).c_str());
    } catch (const std::exception& error) {
        std::printf("No picture of the screen: %s\n", error.what());
    }
}

void CaptureScreenOnFailures() {
    // GoogleTest takes the ownership.
    ::testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<FailureListener>().release());
}

}  // namespace testkit
