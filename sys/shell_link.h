#pragma once

#include <string>

namespace sys {
/// General routines.
inline namespace m_Funkcije {

/// What a shell link (a path that ends in "lnk") stands for: its target, "|" and its arguments; any other
/// path and "|". A broken link gives "|". The link is read through the scripting object "WScript.Shell",
/// and through the shell's own link object (IShellLinkW) where that gives no target or may have cut a text:
/// target and arguments come whole, and may be too long to be stored. A URL comes with each "|" as "%7C".
std::string ReadLinkTarget(const std::string& path);

}  // namespace m_Funkcije
}  // namespace sys
