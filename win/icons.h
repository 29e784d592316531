#pragma once

#include <windows.h>

#include <string>

#include "win/handles.h"

namespace win {

/// An icon of this module's resources, of the stored size that is nearest to `size` pixels (LoadImageW); none
/// when Windows has none.
Icon ResourceIcon(int id, int size) noexcept;

/// The same from an icon file that is stored as data (RT_RCDATA), in the smallest stored size that is at
/// least `size`, else in the largest, stretched to `size` if it differs (CreateIconFromResourceEx).
Icon DataIcon(int id, int size) noexcept;

/// The icon with this index in a program, library or icon file, of the size that is nearest to `size` pixels
/// (PrivateExtractIconsW); none when the file has none, or a path that the function has no room for.
Icon FileIcon(const std::string& file, int index, int size);

/// The icon with this index in the system's list of icons (SHGetImageList), in `size` pixels if the list has
/// it that large, and as large as the list has it otherwise; none when Windows gives none larger than usual.
Icon ListedIcon(int index, int size);

/// Draws an icon that is to be `size` pixels wide and high: as it is (DrawIcon) where that is the system's
/// size of icons, else in that size (DrawIconEx).
void DrawIconOfSize(HDC dc, POINT at, HICON icon, int size) noexcept;

}  // namespace win
