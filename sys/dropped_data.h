#pragma once

#include <windows.h>

#include <objidl.h>

#include <optional>
#include <string>

namespace sys {

/// What a data object of a drop offers, in the process code page.
struct DroppedData {
    bool isText = false;  ///< Unicode text was offered; otherwise the first file of a list
    std::string value;    ///< the text, or the file's full path
};

/// Reads Unicode text, else the first file of a file list; nothing when the object offers neither.
std::optional<DroppedData> ReadDroppedData(IDataObject* object);

/// True when the object offers Unicode text or a file list.
bool OffersDroppableData(IDataObject* object);

/// The wide text in a block of memory, converted to the process code page: up to its NUL, or the whole block
/// without one.
std::string WideTextIn(HGLOBAL memory);

/// The first line of a text, without its line feed and carriage return.
std::string FirstLine(const std::string& text);

}  // namespace sys
