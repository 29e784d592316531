#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "config/file_state.h"
#include "win/handles.h"

namespace config {

/// What became of an attempt to make a side file.
enum class SideFileResult {
    kMade,
    kImpossible,  ///< the folder takes no new file, nothing may take the file's place, or the path leaves no
                  ///< room for a longer name
    kRefused      ///< the file may not be written, or the disk is full: nothing is to be written at all
};

/// A new file beside the configuration file that is to take its place. Until then nobody else can delete or
/// rename it. Deleted together with this value unless it has taken the place.
class SideFile {
  public:
    SideFile() = default;
    SideFile(const SideFile&) = delete;
    SideFile& operator=(const SideFile&) = delete;
    SideFile(SideFile&&) = delete;
    SideFile& operator=(SideFile&&) = delete;
    ~SideFile() { Drop(); }

    /// Makes a copy of the file at `path` under the first name of this process that is free (CopyFileA), or
    /// an empty file where there is none. For a symbolic link the file that it leads to counts. An earlier
    /// side file is dropped.
    SideFileResult Make(const std::string& path);

    /// The full path of the file whose place is to be taken.
    [[nodiscard]] const std::string& Target() const noexcept { return target_; }

    /// The file's full path; "" when there is none.
    [[nodiscard]] const std::string& Path() const noexcept { return path_; }

    /// The target's state when the copy was begun; nothing where there was no target.
    [[nodiscard]] const std::optional<FileState>& CopiedState() const noexcept { return state_; }

    /// Whether another program keeps the file from us.
    [[nodiscard]] bool IsHeld() const noexcept;

    /// Whether the target began with the mark of UTF-8 then.
    [[nodiscard]] bool HadUtf8Mark() const noexcept { return hadUtf8Mark_; }

    /// Whether another program keeps the target from being replaced.
    [[nodiscard]] bool IsTargetHeld() const noexcept;

    /// Whether there is no such file any more.
    [[nodiscard]] bool IsGone() const noexcept;

    /// Whether another program has written the target since the copy was made, as far as its size and the
    /// time of its last write tell. A target that is not there now has not been written.
    [[nodiscard]] bool TargetHasChanged() const noexcept;

    /// Whether the target is empty now or not there, and was neither when the copy was made.
    [[nodiscard]] bool TargetWasEmptied() const noexcept;

    /// Gives the file the target's attributes and creation time and writes what Windows still
    /// keeps in memory to the disk (FlushFileBuffers). From here on nobody else can write it either. False
    /// for a full disk, too; the last error says why.
    [[nodiscard]] bool Flush();

    /// Takes the target's place, after Flush(), in one step wherever Windows has one
    /// (SetFileInformationByHandle), else in two (ReplaceFileA). A target that has changed is not replaced.
    /// False when it failed: the last error says why, and both files are as they were, unless TargetIsLost().
    [[nodiscard]] bool Replace();

    /// Whether Windows has stopped halfway: there is no target any more, and this file holds everything.
    [[nodiscard]] bool TargetIsLost() const noexcept;

    /// Leaves the file where it is; returns its path.
    std::string Leave() noexcept;

    /// Deletes the file.
    void Drop() noexcept;

  private:
    [[nodiscard]] SideFileResult MakeUnderAName();
    [[nodiscard]] bool MakeNew(const std::string& path) const;
    [[nodiscard]] bool TakePlace();
    [[nodiscard]] bool ReplaceWithBackup();

    /// What the new file takes over from the old one beside its text. Whatever Windows does not let us set
    /// stays as the folder gives it.
    struct Identity {
        DWORD Attributes;
        FILETIME Created;
        std::vector<std::byte> Rights;  ///< who may do what with it, as Windows writes it; none: unknown
    };
    static std::optional<Identity> IdentityOf(HANDLE file);
    void TakeOverIdentity(HANDLE file) const;
    void TakeOverRights() const;
    [[nodiscard]] bool Keep(const std::string& path);
    [[nodiscard]] bool KeepForMove(DWORD access);

    std::string target_;
    std::string path_;
    win::File kept_;                  ///< keeps others from deleting the file
    std::optional<FileState> state_;  ///< of the target, before it was copied
    std::optional<Identity> identity_;
    bool targetIsNew_ = false;
    bool hadUtf8Mark_ = false;
};

/// Deletes the side files that a killed program has left beside the file at `path`, whatever they hold, but
/// not those that a running program is working with. Nothing is deleted when there is no file at `path`.
void RemoveSideFiles(const std::string& path);

}  // namespace config
