#pragma once

#include <string>

namespace model {
/// General routines.
inline namespace m_Funkcije {

/// The program that opens .HTM files, found once at start-up; "" when there is none.
extern std::string DefaultBrowserPath;

/// Sets DefaultBrowserPath with a probe file in the program folder.
void FindDefaultBrowser();

/// The program that the shell associates with a path (FindExecutableA); for a URL without one the default
/// browser; "" when there is none.
std::string FindAssociatedExe(const std::string& path);

/// Opens a target, or each member of a group in order, and waits 500 ms. `showCommand` is an SW_ value; 0
/// becomes 1, in the caller's variable too. With a switch, `target` becomes the command line that is started.
/// Returns "OK" when the last call to the shell succeeded, else "".
std::string LaunchTarget(std::string& target, bool isGroup, int& showCommand, const std::string& switchText);

}  // namespace m_Funkcije
}  // namespace model
