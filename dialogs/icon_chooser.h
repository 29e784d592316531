#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "res/resource.h"
#include "sys/mouse_wheel.h"
#include "win/dialog.h"
#include "win/handles.h"
#include "win/picture_box.h"
#include "win/scroll_bar.h"

namespace dialogs {

/// Shows all icons of one file in a strip beside the main window and lets the user pick one.
class IcoChooser : public win::Dialog {
  public:
    /// Its controls.
    enum Control {
        p1 = IcoChooser_p1,          ///< the strip that holds the icons
        View = IcoChooser_View,      ///< through which the strip is seen
        HScr = IcoChooser_HScr,      ///< the strip's scroll bar
        Image1 = IcoChooser_Image1,  ///< the cross that closes the chooser
        p2 = IcoChooser_p2,          ///< + the icon's index in the file: the icons
    };

    /// Index of the first icon to read; 0 for a whole file.
    std::int32_t FirstIcon = 0;

    /// Index in the file of the icon that was picked; meaningful after a pick only.
    std::int16_t SelectedIcon = 0;

    /// Called with the index in the file of the icon that is picked, before the chooser closes.
    std::function<void(std::int16_t)> IconSelected;

    /// Reads the icons of a program, library or icon file, up to the first index without one (ExtractIconA).
    /// A file without icons, or none, gives an empty strip.
    void ReadIcons(const std::string& file);

    /// How many icons have been read.
    [[nodiscard]] int IconCount() const noexcept { return static_cast<int>(icons_.size()); }

    /// Shows the chooser beside `owner` until an icon is picked or it is dismissed: by Esc, by its cross, by
    /// a press on the owner or by another program's window. The icons are released then.
    void Show(HWND owner);

    /// Slides the chooser away and closes it without a choice.
    void HideChooser();

  protected:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnColors() override;

  private:
    static LRESULT CALLBACK WatchOwner(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                       DWORD_PTR chooser) noexcept;

    void LayOut();
    void MakeStrip();
    void MakeBoxes();
    void MakeBox(int index);
    [[nodiscard]] int BoxLeft(int index) const noexcept;
    HICON IconFor(int index);
    void PlaceBeside(int height);
    void Scroll(int code);
    void OnWheel(int rotation);
    void PlaceStrip();
    void PlaceBoxes();
    void Pick(int index);
    bool OnKey(int index, WPARAM key);
    void FocusOn(int index);

    HWND owner_ = nullptr;
    win::PictureBox strip_;
    int visibleWidth_ = 0;
    /// How far from the first box the strip begins, in pixels: 0 unless there are too many for one strip.
    int stripStart_ = 0;
    bool rightOfOwner_ = false;
    bool closing_ = false;
    std::string file_;
    std::vector<win::Icon> icons_;
    std::vector<std::unique_ptr<win::PictureBox>> boxes_;
    win::PictureBox Image1_;
    win::ScrollBar scroll_;
    sys::WheelNotches wheel_;
};

}  // namespace dialogs
