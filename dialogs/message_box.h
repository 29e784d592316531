#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "dialogs/message_layout.h"
#include "res/resource.h"
#include "sys/tooltip.h"
#include "win/byte_limit.h"
#include "win/dialog.h"
#include "win/handles.h"

namespace dialogs {

/// The user's answer to the last message; ShowMessage clears it once it is read.
extern std::string MessageAnswer;

/// The message when a target cannot become a shortcut.
constexpr const char* kCouldNotMake = "Couldn't make this shortcut, sorry.";

/// How many message boxes and options dialogs are open.
extern std::int16_t OpenDialogCount;

/// Asks the user with up to three buttons and, when `InBox` is set, one line of input with `sInBox` in it.
/// Returns the caption of the button pressed, the typed text for "OK" beside an input line and for
/// "Create group", or "" when the window was closed otherwise. The input line takes at most `inputLimit`
/// bytes; 0 for no limit.
std::string ShowMessage(const std::string& sMessage, int iButtons, const std::string& sCap1,
                        const std::string& sCap2 = {}, const std::string& sCap3 = {}, bool InBox = false,
                        const std::string& sInBox = {}, size_t inputLimit = 0);

/// Shows a note with the single button "OK".
void ShowNote(const std::string& sMessage);

/// The message window, which is the About box in its other mode.
class frmMsg : public win::Dialog {
  public:
    /// Its controls.
    enum Control {
        l1 = frmMsg_l1,                      ///< the message
        b1 = frmMsg_b1,                      ///< + index, 0 to 2: the answers
        Text1 = frmMsg_Text1,                ///< the input line
        b2 = frmMsg_b2,                      ///< "Close" of the About box
        Frame2 = frmMsg_Frame2,              ///< the About box's panel
        VersionLabel = frmMsg_VersionLabel,  ///< on the panel, as are those that follow
        SupportLink = frmMsg_SupportLink,
        WebLink = frmMsg_WebLink,
        ProductPicture = frmMsg_ProductPicture,
    };

    /// Lays the window out and shows it; the answer is left in MessageAnswer.
    void RetMessage(const std::string& sMessage, int iButtons, const std::string& sCap1,
                    const std::string& sCap2, const std::string& sCap3, bool InBox,
                    const std::string& sInBox);

    /// Limits the input line to so many bytes, 0 for no limit; to be called before RetMessage.
    void LimitInput(size_t bytes) noexcept { inputLimit_ = bytes; }

    /// Shows the window as the About box.
    void AboutQuon();

  protected:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnColors() override { supportTip_.FollowColors(); }

  private:
    void FillMessage();
    void FillAbout();
    void DrawLink(const DRAWITEMSTRUCT& item) const;
    void Answer(int index);
    void Dismiss();
    [[nodiscard]] win::Scale FittingScale() const;
    [[nodiscard]] bool Fits(const win::Scale& scale) const;
    [[nodiscard]] int TextHeight(const win::Scale& scale) const;
    [[nodiscard]] int HighestText(const win::Scale& scale) const;
    [[nodiscard]] RECT OuterRect(const win::Scale& scale, int width, int height) const;
    [[nodiscard]] int DefaultButton() const;
    [[nodiscard]] const std::string& Caption(int index) const;
    [[nodiscard]] int ButtonCount(int asked) const;
    void Place(int id, const TwipsRect& rect) const;
    void SizeClient(int width, int height) const;
    static void OpenAddress(const char* address);

    bool about_ = false;
    /// The dialog's, but for the text's size: everything stands and is written by it.
    win::Scale layoutScale_;
    std::string message_;
    int buttons_ = 0;
    std::string captions_[3];
    bool inBox_ = false;
    std::string preset_;
    size_t inputLimit_ = 0;
    win::ByteLimit limit_;
    std::string answer_;
    sys::clsToolTip supportTip_;
    win::Font linkFont_;
    win::Icon picture_;
};

}  // namespace dialogs
