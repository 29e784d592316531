#pragma once

#include <string>

namespace sys {

/// What a shell link (a path that ends in "lnk") stands for: its target, "|" and its arguments; any other
/// path and "|". A broken link gives "|". The link is read through the scripting object "WScript.Shell",
/// and through the shell's own link object where that gives no target.
std::string ReadLinkTarget(const std::string& path);

}  // namespace sys
