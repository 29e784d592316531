#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace sys {
/// General routines.
inline namespace m_Funkcije {

/// Which piece of a path PathPart gives.
enum PathPartCode : std::int16_t {
    kExtension = 0,  ///< the text after the last "."; "" without one
    kBareName = 1,   ///< the name without folder and extension; of a URL its last element
    kFileName = 2,   ///< the name with extension
    kFolder = 3,     ///< the parent folder without a trailing "\"; "" without a "\"
    kIsFolder = 4,   ///< "yes" when the path is an existing folder, else "no" (PathIsDirectoryA)
};

/// A piece of a path or URL by its code; "" for any other code.
std::string PathPart(const std::string& path, std::int16_t part);

/// True when the text has the form of a URL (PathIsURLA).
bool IsUrl(const std::string& path);

/// The size of a file as a tip shows it; "" for a URL, an empty path, a file that cannot be read and one of 2
/// GiB or more.
std::string FileSizeText(const std::string& path);

/// The same from what Windows has said about the file; "" for a folder.
std::string FileSizeText(const WIN32_FILE_ATTRIBUTE_DATA& data);

/// The text for a length in bytes, "" for exactly 1 GiB; the digits are grouped as in the user's settings
/// (GetNumberFormatEx).
std::string SizeText(std::int32_t length);

/// When a file was last modified, in the user's short date and time; "" when it cannot be read.
std::string FileTimeText(const std::string& path);

/// The same from what Windows has said about the file.
std::string FileTimeText(const WIN32_FILE_ATTRIBUTE_DATA& data);

/// A URL with each "|" written as "%7C", which means the same: a bare "|" stands between the targets of a
/// group.
std::string EncodeBars(const std::string& url);

}  // namespace m_Funkcije
}  // namespace sys
