#include "model/target_icon.h"

#include <windows.h>

#include <shellapi.h>

#include <utility>

#include "model/launching.h"
#include "res/resource.h"
#include "sys/utility.h"
#include "win/icons.h"
#include "win/message_ban.h"
#include "win/process_start.h"
#include "win/text.h"
#include "win/window.h"

namespace model {
namespace {

/// The Windows icon functions answer null or 1 for "no icon".
win::Icon Extracted(HICON icon) {
    const auto value = reinterpret_cast<UINT_PTR>(icon);
    return win::Icon(value > 1 ? icon : nullptr);
}

/// The same icon made for `size` pixels, if Windows has handed it out in another size.
win::Icon MadeFor(win::Icon icon, int size, const std::string& file, std::int32_t index) {
    if (!icon || size == GetSystemMetrics(SM_CXICON)) return icon;
    win::Icon made = win::FileIcon(file, index, size);
    return made ? std::move(made) : std::move(icon);
}

win::Icon ProgramIcon(const std::string& path, std::int32_t index, int size) {
    // For index -1 the answer is not an icon but how many there are.
    if (index == -1) return {};
    const std::string program = FindAssociatedExe(path);
    win::Icon icon =
        Extracted(ExtractIconA(win::ModuleInstance(), program.c_str(), static_cast<UINT>(index)));
    return MadeFor(std::move(icon), size, program, index);
}

win::Icon AssociatedIcon(const std::string& path, std::int32_t index, int size) {
    // The function has room for this many characters, and does not check whether they are enough.
    if (win::ToWide(path).size() >= MAX_PATH) return {};
    // The function writes the icon's file into the path that it is given, so it gets a copy.
    std::string copy = path;
    copy.resize(4 * MAX_PATH);
    WORD position = static_cast<WORD>(index);
    win::Icon icon = Extracted(ExtractAssociatedIconA(win::ModuleInstance(), copy.data(), &position));
    // For a target without an icon of its own the answer may be one of this program's.
    if (win::EqualIgnoringCase(copy.c_str(), win::ProgramPath())) return {};
    return MadeFor(std::move(icon), size, win::Before(copy, '\0'), position);
}

/// The program's own icon, which exists in many sizes.
win::Icon OwnIcon(int size) {
    if (size == GetSystemMetrics(SM_CXICON))
        return win::Icon(CopyIcon(LoadIconW(win::ModuleInstance(), MAKEINTRESOURCEW(IDI_QUON))));
    return win::ResourceIcon(IDI_QUON, size);
}

/// The shell's icon for a path; `kind` says how it is looked for.
win::Icon ShellIcon(const std::string& path, int size, DWORD attributes, UINT kind) {
    SHFILEINFOA info{};
    if (path.empty() || SHGetFileInfoA(path.c_str(), attributes, &info, sizeof info,
                                       SHGFI_ICON | SHGFI_LARGEICON | kind) == 0)
        return {};
    win::Icon icon = Extracted(info.hIcon);
    if (!icon || size == GetSystemMetrics(SM_CXICON)) return icon;
    win::Icon larger = win::ListedIcon(info.iIcon, size);
    return larger ? std::move(larger) : std::move(icon);
}

}  // namespace

win::Icon TargetIcon(const std::string& target, std::int32_t index, int size) {
    win::AssertMayPump("TargetIcon");
    const std::string path = sys::IsUrl(target) ? DefaultBrowserPath : target;
    win::Icon icon = ProgramIcon(path, index, size);
    if (!icon) icon = AssociatedIcon(path, index, size);
    if (!icon) icon = ShellIcon(path, size, 0, 0);
    return icon ? std::move(icon) : OwnIcon(size);
}

win::Icon IconOfKind(const std::string& target, int size) {
    win::AssertMayPump("IconOfKind");
    win::Icon icon = ShellIcon(target, size, FILE_ATTRIBUTE_NORMAL, SHGFI_USEFILEATTRIBUTES);
    return icon ? std::move(icon) : OwnIcon(size);
}

}  // namespace model
