#pragma once

#include <set>
#include <string>

namespace sys {

/// What Windows says about a target.
enum class TargetKind {
    kFile,
    kFolder,
    kUrl,      ///< no path of this machine, but the form of a URL
    kMissing,  ///< its place is there, but the target is not
    kUnknown,  ///< its place could not be reached or refused access, so nothing is known
};

/// What was found at a target.
struct TargetState {
    TargetKind kind = TargetKind::kUnknown;
    std::string sizeText;  ///< of a file (SizeText); "" for everything else
    std::string timeText;  ///< of a file: when it was last modified, in the user's short date and time
};

/// The servers and drives that did not answer during one refresh of several targets. Each is waited for once.
class SilentPlaces {
  public:
    /// True when the server or drive of this path is among them.
    [[nodiscard]] bool Hold(const std::string& path) const;

    /// Remembers the server or drive of this path; a path without one is not remembered.
    void Add(const std::string& path);

  private:
    std::set<std::wstring> places_;
};

/// Looks at a target (PathFileExistsA, PathIsDirectoryA, GetFileAttributesExA). A network server or a drive
/// that does not answer can take many seconds. It is remembered in `silent`; a target on one that is
/// remembered already is kUnknown at once.
TargetState LookAtTarget(const std::string& path, SilentPlaces& silent);

/// The same for one target alone.
TargetState LookAtTarget(const std::string& path);

}  // namespace sys
