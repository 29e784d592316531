#pragma once

#include <windows.h>

#include <array>
#include <string>

#include "bench/scene.h"
#include "win/handles.h"

namespace bench {

/// The floor of switching tabs: the Windows calls that a switch cannot do without, one after the other, with
/// nothing between them. Everything that can be prepared has been: wide names, brushes, windows.
class BarePanel {
  public:
    /// Creates the windows on `parent`: two headers and the nine buttons, where the panel has its own.
    BarePanel(HWND parent, const Scene& scene);
    BarePanel(const BarePanel&) = delete;
    BarePanel& operator=(const BarePanel&) = delete;
    ~BarePanel();

    /// Shows tab 1 or 2. Throws when a call that draws has nothing to draw.
    void Show(int tab);

    /// The picture of a button, 1 to 9.
    [[nodiscard]] HDC Dc(int button) const { return boxes_.at(static_cast<size_t>(button) - 1).dc.Get(); }

  private:
    /// A child window with a picture that its painting copies out.
    struct Box {
        HWND window = nullptr;
        win::Bitmap bitmap;
        win::MemoryDc dc;
        HICON icon = nullptr;
    };
    /// What is known of a button before the switch.
    struct Record {
        std::string name;
        std::wstring caption;
    };

    static void Create(Box& box, HWND parent, RECT place);
    void ShowButton(Box& box, const Record& record) const;
    static void ReadFileDetails(const char* target);
    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    std::string ini_;
    std::array<std::array<Record, model::kButtonCount>, 2> records_;
    std::array<Box, model::kButtonCount> boxes_;
    std::array<Box, 2> headers_;
};

}  // namespace bench
