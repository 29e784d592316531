#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "dialogs/shortcut_name.h"
#include "model/button_records.h"
#include "res/resource.h"
#include "win/byte_limit.h"
#include "win/dialog.h"
#include "win/handles.h"
#include "win/picture_box.h"

namespace dialogs {

/// The editor of a single shortcut: its name and the file, folder or URL that it opens.
class frmEdit : public win::Dialog {
  public:
    /// Its controls.
    enum Control {
        t1 = frmEdit_t1,          ///< + kName or kFile: the boxes
        l1 = frmEdit_l1,          ///< + index, 0 to 2: their labels; + kExists: the warning
        c1 = frmEdit_c1,          ///< + kSelectFile to kCancel: the buttons
        p1 = frmEdit_p1,          ///< the file's icon
        Frame1 = frmEdit_Frame1,  ///< around the boxes
    };
    static constexpr int kName = 0;
    static constexpr int kFile = 1;
    static constexpr int kExists = 3;
    static constexpr int kSelectFile = 0;
    static constexpr int kSelectFolder = 1;
    static constexpr int kApply = 2;
    static constexpr int kCancel = 3;

    /// The table of `context` follows each change of a button's record.
    explicit frmEdit(model::ButtonContext& context) noexcept : context_(context) {}

    /// Takes a shortcut by its name. Its target is the part of `fileText` before the first line feed; both
    /// boxes get `color` as their background, unless the user has a contrast theme.
    void PrepareWindow(const std::string& name, const std::string& fileText, COLORREF color);

    /// Shows the editor above all windows until it is applied or cancelled.
    void Show(HWND owner);

    /// The name that the shortcut was stored under; nothing when it was not stored.
    [[nodiscard]] const std::optional<std::string>& StoredName() const noexcept { return storedName_; }

  protected:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnColors() override;

  private:
    void CreatePicture();
    void DrawFileIcon();
    void DrawPicture();
    void Pick(bool folder);
    void Apply();
    [[nodiscard]] bool Store(const std::string& name);
    [[nodiscard]] std::string NameToStore() const;
    [[nodiscard]] std::string File() const;

    model::ButtonContext& context_;
    std::string OldName;  // the shortcut's when the editor was opened
    std::string OldFile;  // the file's text as it was shown first
    std::optional<std::string> storedName_;
    COLORREF color_ = 0;
    win::Brush background_;
    ShortcutNameBox name_;
    win::ByteLimit fileLimit_;
    win::Icon icon_;
    win::PictureBox picture_;
};

}  // namespace dialogs
