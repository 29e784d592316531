// What can be seen: pictures of the screen, their pixels, and files of them to look at.
//
//     const Picture before = CaptureWindow(button);
//     mouse::MoveTo(button.Centre());
//     WaitFor("the button lights up", [&] { return CaptureWindow(button) != before; });
//     EXPECT_GT(before.ColourCount(), 3u);
//     before.SaveAs("button-before.bmp");            // into the artifacts folder
//
// The artifacts folder is the environment's QUON_ARTIFACTS or else "artifacts" beside the test program. Every
// test that fails leaves a picture of the whole screen there, taken at its first failure.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/window.h"

namespace testkit {

class Picture {
  public:
    Picture() = default;
    Picture(int width, int height, std::vector<DWORD> pixels);

    int Width() const { return width_; }
    int Height() const { return height_; }
    bool IsEmpty() const { return pixels_.empty(); }
    /// The colour of a pixel, from the top left. Throws outside the picture.
    COLORREF At(int x, int y) const;
    /// A rectangle of it, cut at its borders.
    Picture Part(RECT part) const;
    std::size_t ColourCount() const;
    std::size_t PixelCount(COLORREF colour) const;
    /// How many pixels of two pictures of the same size differ. Throws when the sizes do.
    std::size_t DifferenceCount(const Picture& other) const;
    bool operator==(const Picture&) const = default;

    /// Writes a BMP file into the artifacts folder; returns its full path.
    std::string SaveAs(const std::string& name) const;

  private:
    int width_ = 0;
    int height_ = 0;
    /// 0x00RRGGBB, row by row from the top.
    std::vector<DWORD> pixels_;
};

/// What the screen shows at these screen coordinates, whoever drew it. Parts beyond the screen are left out.
Picture CaptureScreen(RECT rect);
Picture CaptureScreen();
/// What the screen shows at the window's place; what covers the window is in the picture.
Picture CaptureWindow(Window window);

/// The folder for what tests leave behind for people to look at; it is made when missing.
std::string ArtifactsFolder();
/// Saves a picture of the screen, named after the running test, unless that has been done for this test.
void CaptureScreenOfFailure();
/// From now on a test's first failure saves a picture of the screen, named after the test.
void CaptureScreenOnFailures();

}  // namespace testkit
