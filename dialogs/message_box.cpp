#include "dialogs/message_box.h"

#include <oleacc.h>

#include <algorithm>
#include <utility>

#include "res/resource.h"
#include "win/accessible.h"
#include "win/colors.h"
#include "win/geometry.h"
#include "win/icons.h"
#include "win/scale.h"
#include "win/shell_call.h"
#include "win/text.h"
#include "win/window.h"

namespace dialogs {

std::string MessageAnswer;
std::int16_t OpenDialogCount = 0;

namespace {

constexpr int kButtonLimit = 3;
constexpr const char* kSupportPage = "https://quon.example/support";
constexpr const char* kHomePage = "https://quon.example/";
// Layout pixels.
constexpr int kPictureSize = 64;
constexpr int kMarkWidth = 2;
// Twips.
constexpr int kAboutWidth = 4200;
constexpr int kAboutHeight = 4050;
// Percent: the text is made smaller in steps of this, and not below its usual size.
constexpr int kTextStep = 5;
constexpr int kUsualText = 100;

bool IsLink(HWND control) {
    const int id = GetDlgCtrlID(control);
    return id == frmMsg::SupportLink || id == frmMsg::WebLink;
}

}  // namespace

std::string ShowMessage(const std::string& sMessage, int iButtons, const std::string& sCap1,
                        const std::string& sCap2, const std::string& sCap3, bool InBox,
                        const std::string& sInBox, size_t inputLimit) {
    frmMsg window;
    window.LimitInput(inputLimit);
    window.RetMessage(sMessage, iButtons, sCap1, sCap2, sCap3, InBox, sInBox);
    return std::exchange(MessageAnswer, {});
}

void ShowNote(const std::string& sMessage) { ShowMessage(sMessage, 1, "OK"); }

void frmMsg::RetMessage(const std::string& sMessage, int iButtons, const std::string& sCap1,
                        const std::string& sCap2, const std::string& sCap3, bool InBox,
                        const std::string& sInBox) {
    message_ = sMessage;
    captions_[0] = sCap1;
    captions_[1] = sCap2;
    captions_[2] = sCap3;
    buttons_ = ButtonCount(iButtons);
    inBox_ = InBox;
    preset_ = sInBox;
    answer_.clear();
    ShowModal(win::ModalOwner(), IDD_MESSAGE);
    // Only now, because messages that are open inside one another may be closed all at once.
    MessageAnswer = answer_;
}

void frmMsg::AboutQuon() {
    about_ = true;
    ShowModal(win::ModalOwner(), IDD_MESSAGE);
}

bool frmMsg::OnInit() {
    ++OpenDialogCount;
    // Done before the tip exists: a window that owns topmost windows may not become topmost itself.
    win::SetTopmost(true, Handle());
    layoutScale_ = FittingScale();
    for (HWND child = GetWindow(Handle(), GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(win::MessageFont(layoutScale_)), FALSE);
    if (about_)
        FillAbout();
    else
        FillMessage();
    return false;
}

void frmMsg::FillMessage() {
    const int textHeight = std::min(TextHeight(layoutScale_), HighestText(layoutScale_));
    const MessageLayout layout = LayOutMessage(layoutScale_.ToTwips(textHeight), buttons_, inBox_);
    win::SetText(Item(l1), message_);
    Place(l1, layout.text);
    for (int index = 0; index < buttons_; ++index) {
        const HWND button = Item(b1 + index);
        win::SetText(button, Caption(index));
        Place(b1 + index, layout.buttons[static_cast<size_t>(index)]);
        if (index == 0 || !Caption(index).empty()) ShowWindow(button, SW_SHOW);
    }
    SizeClient(layout.clientWidth, layout.clientHeight);
    const int chosen = DefaultButton();
    SendMessageW(Handle(), DM_SETDEFID, static_cast<WPARAM>(b1 + chosen), 0);
    if (inBox_) {
        const HWND input = Item(Text1);
        Place(Text1, layout.input);
        if (!preset_.empty()) win::FillBox(input, preset_);
        if (inputLimit_ > 0) limit_.Attach(input, inputLimit_);
        ShowWindow(input, SW_SHOW);
        SendMessageW(input, EM_SETSEL, 0, -1);
        SetFocus(input);
    } else if (buttons_ > 0) {
        SetFocus(Item(b1 + chosen));
    }
}

void frmMsg::FillAbout() {
    win::SetText(Handle(), "About Quon");
    Place(Frame2, {150, 75, kAboutWidth - 300, kAboutHeight - 225});
    Place(ProductPicture, {(kAboutWidth - 960) / 2, 480, 960, 960});
    Place(VersionLabel, {300, 1590, kAboutWidth - 600, 270});
    Place(SupportLink, {900, 2130, kAboutWidth - 1800, 270});
    Place(WebLink, {900, 2475, kAboutWidth - 1800, 270});
    Place(b2, {(kAboutWidth - 1335) / 2, 3150, 1335, 390});
    SizeClient(kAboutWidth, kAboutHeight);
    ShowWindow(Item(l1), SW_HIDE);
    for (const int id : {Frame2, ProductPicture, VersionLabel, SupportLink, WebLink, b2})
        ShowWindow(Item(id), SW_SHOW);
    picture_ = win::ResourceIcon(IDI_QUON, layoutScale_(kPictureSize));
    SendMessageW(Item(ProductPicture), STM_SETICON, reinterpret_cast<WPARAM>(picture_.Get()), 0);
    LOGFONTW font{};
    GetObjectW(win::MessageFont(layoutScale_), sizeof font, &font);
    font.lfUnderline = TRUE;
    linkFont_.Reset(CreateFontIndirectW(&font));
    for (const int id : {SupportLink, WebLink})
        win::TellRole(Item(id), ROLE_SYSTEM_LINK);
    supportTip_.SetTipText(" If you have questions, suggestions, or just want to say hi ");
    supportTip_.SetParentControl(Item(SupportLink));
    supportTip_.Create();
    SendMessageW(Handle(), DM_SETDEFID, b2, 0);
    SetFocus(Item(b2));
}

/// The largest size of the text, up to the dialog's own, at which all of the window fits on its screen.
win::Scale frmMsg::FittingScale() const {
    win::Scale scale = DialogScale();
    while (scale.TextPercent() > kUsualText && !Fits(scale))
        scale = win::Scale(scale.Dpi(), std::max(kUsualText, scale.TextPercent() - kTextStep));
    return scale;
}

bool frmMsg::Fits(const win::Scale& scale) const {
    const RECT area = win::WorkAreaOf(Handle());
    const RECT frame = about_ ? OuterRect(scale, kAboutWidth, kAboutHeight)
                              : OuterRect(scale, LayOutMessage(0, buttons_, inBox_).clientWidth, 0);
    if (win::Width(frame) > win::Width(area) || win::Height(frame) > win::Height(area)) return false;
    return about_ || TextHeight(scale) <= HighestText(scale);
}

/// The height in pixels of all of the text.
int frmMsg::TextHeight(const win::Scale& scale) const {
    const win::WindowDc dc(Handle());
    const win::Selection font(dc.Get(), win::MessageFont(scale));
    RECT rect{0, 0, scale.FromTwips(MessageTextWidth()), 0};
    win::DrawPlainText(dc.Get(), message_.empty() ? " " : message_, rect,
                       DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL);
    return win::Height(rect);
}

/// The height in pixels that the text may have: a taller one would put the buttons out of reach.
int frmMsg::HighestText(const win::Scale& scale) const {
    const MessageLayout rest = LayOutMessage(0, buttons_, inBox_);
    // A pixel may be lost in each of the conversions from twips.
    const int room = win::Height(win::WorkAreaOf(Handle())) -
                     win::Height(OuterRect(scale, rest.clientWidth, rest.clientHeight)) - 2;
    return std::max(0, std::min(room, win::Height(win::ScreenOf(Handle())) * 2 / 3));
}

/// The whole window around a client area of this size in twips.
RECT frmMsg::OuterRect(const win::Scale& scale, int width, int height) const {
    RECT frame{0, 0, scale.FromTwips(width), scale.FromTwips(height)};
    win::AddFrame(frame, Handle());
    return frame;
}

const std::string& frmMsg::Caption(int index) const { return captions_[index]; }

int frmMsg::ButtonCount(int asked) const {
    if (asked == 0) return 0;
    // Every caption that is given is shown, whatever the count.
    int captioned = kButtonLimit;
    while (captioned > 1 && Caption(captioned - 1).empty())
        --captioned;
    return std::clamp(asked, captioned, kButtonLimit);
}

int frmMsg::DefaultButton() const {
    for (int index = 0; index < buttons_; ++index)
        if (Caption(index) == "OK") return index;
    return 0;
}

void frmMsg::Place(int id, const TwipsRect& rect) const {
    SetWindowPos(Item(id), nullptr, layoutScale_.FromTwips(rect.left), layoutScale_.FromTwips(rect.top),
                 layoutScale_.FromTwips(rect.width), layoutScale_.FromTwips(rect.height),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void frmMsg::SizeClient(int width, int height) const {
    const RECT frame = OuterRect(layoutScale_, width, height);
    const int outerWidth = win::Width(frame);
    const int outerHeight = win::Height(frame);
    const RECT screen = win::ScreenOf(Handle());
    SetWindowPos(Handle(), nullptr, screen.left + (win::Width(screen) - outerWidth) / 2,
                 screen.top + (win::Height(screen) - outerHeight) / 2, outerWidth, outerHeight,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

bool frmMsg::OnCommand(int id, int notification) {
    if (id == IDCANCEL) {
        Dismiss();
        return true;
    }
    if (id >= b1 && id < b1 + kButtonLimit && notification == BN_CLICKED) {
        Answer(id - b1);
        return true;
    }
    if (id == Text1 && notification == EN_CHANGE) {
        limit_.OnChange();
        return true;
    }
    // The second press of a double click on a link sends the same command, as another notification.
    if (notification != 0) return false;
    switch (id) {
        case b2: End(0); return true;
        case SupportLink: OpenAddress(kSupportPage); return true;
        case WebLink: OpenAddress(kHomePage); return true;
        default: return false;
    }
}

INT_PTR frmMsg::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CLOSE:
            // The title bar's button: no answer at all, unlike Esc, which presses "Cancel".
            End(0);
            return TRUE;
        case WM_DESTROY:
            --OpenDialogCount;
            if (about_)
                for (const int id : {SupportLink, WebLink})
                    win::ForgetTold(Item(id));
            return FALSE;
        case WM_PAINT: win::SetTopmost(true, Handle()); return FALSE;
        case WM_DRAWITEM: DrawLink(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)); return TRUE;
        case DM_GETDEFID:
            // Enter opens the link that has the focus; only real buttons take Enter of themselves.
            if (!IsLink(GetFocus())) return FALSE;
            SetWindowLongPtrW(Handle(), DWLP_MSGRESULT, MAKELONG(GetDlgCtrlID(GetFocus()), DC_HASDEFID));
            return TRUE;
        case WM_SETCURSOR:
            if (!IsLink(reinterpret_cast<HWND>(wParam))) return FALSE;
            SetCursor(LoadCursor(nullptr, IDC_HAND));
            SetWindowLongPtrW(Handle(), DWLP_MSGRESULT, TRUE);
            return TRUE;
        default: return FALSE;
    }
}

void frmMsg::DrawLink(const DRAWITEMSTRUCT& item) const {
    RECT place = item.rcItem;
    FillRect(item.hDC, &place, GetSysColorBrush(COLOR_BTNFACE));
    const win::Selection font(item.hDC, linkFont_.Get());
    SetBkMode(item.hDC, TRANSPARENT);
    SetTextColor(item.hDC, win::ColorOf(win::Color::kLink));
    win::DrawPlainText(item.hDC, win::WindowText(item.hwndItem), place, DT_CENTER | DT_WORDBREAK);
    if ((item.itemState & ODS_FOCUS) == 0 || (item.itemState & ODS_NOFOCUSRECT) != 0) return;
    place = item.rcItem;
    win::DrawSystemFrame(item.hDC, place, layoutScale_(kMarkWidth), COLOR_HIGHLIGHT);
}

void frmMsg::Answer(int index) {
    // The answer depends on the caption that the button carries.
    const std::string caption = win::WindowText(Item(b1 + index));
    const bool typed = (caption == "OK" && inBox_) || caption == "Create group";
    answer_ = typed ? win::WindowText(Item(Text1)) : caption;
    End(0);
}

void frmMsg::Dismiss() {
    for (int index = 0; index < buttons_; ++index) {
        if (Caption(index) != "Cancel") continue;
        Answer(index);
        return;
    }
    End(0);
}

void frmMsg::OpenAddress(const char* address) {
    win::OpenInShell(nullptr, address, nullptr, nullptr, SW_SHOWNORMAL);
}

}  // namespace dialogs
