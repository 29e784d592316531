#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace bench {

/// The floors of opening a dialog: the same template and, one after the other, the Windows calls that its
/// content cannot do without. The names have been made wide before.
struct BareRow {
    std::wstring name;
    std::wstring target;  ///< empty for a list of single lines
    std::string path;     ///< what the icon is of
};

/// How a bare list of rows looks, in pixels.
struct BareLook {
    int step = 0;
    int height = 0;
    int textLeft = 0;
    bool framed = false;
};

/// The editor of a group: reads the section, fills name and list, makes the tip. Returns when the dialog is
/// ended from outside.
void OpenBareGroup(const std::string& ini, const std::wstring& name, const std::vector<BareRow>& rows);

/// The organiser: reads the section, sets the caption and fills the list.
void OpenBareOrganiser(const std::string& ini, const std::vector<BareRow>& rows);

/// The icon chooser: takes the icons out of the file and makes a child window for each.
void OpenBareChooser(const std::string& file);

}  // namespace bench
