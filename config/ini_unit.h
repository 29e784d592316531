#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "config/file_state.h"

namespace config {

/// One write to the configuration file.
struct IniWrite {
    /// What takes the place of a section's rewrite in a file that was made after the section was read.
    struct InNewFile {
        unsigned Reading = 0;  ///< IniUnit::TimesMade() when the section was read
        std::string Key;       ///< is taken out; "" for nothing to be done
    };

    std::string Section;              ///< "": nothing is written but what every unit takes away
    std::optional<std::string> Key;   ///< none: the whole section, whose entries end with a NUL each
    std::optional<std::string> Text;  ///< none: the key is taken out
    std::optional<InNewFile> Otherwise = std::nullopt;
};

/// One unit of writes: Quon.ini is at every moment what it was before the unit or what it is after it. The
/// writes go to a new file beside it, which is made from it at the first write and takes its place at the
/// end; reads inside the unit see the unit. When another program has written Quon.ini meanwhile, all writes
/// are made once more on what it wrote. Units nest, the outermost one counts. While one is open, nothing that
/// lets messages run may be called.
class IniUnit {
  public:
    IniUnit() noexcept;
    /// A unit that is made for Quon.ini in this state alone, because of what was read in it: when another
    /// program has written the file since, or writes it before the end, the unit fails. Must be outermost.
    explicit IniUnit(const std::optional<FileState>& onlyFor) noexcept;
    IniUnit(const IniUnit&) = delete;
    IniUnit& operator=(const IniUnit&) = delete;
    IniUnit(IniUnit&&) = delete;
    IniUnit& operator=(IniUnit&&) = delete;
    /// A unit that was not finished has not happened.
    ~IniUnit();

    /// Ends the unit. For the outermost one: true when everything stands in Quon.ini, false when Quon.ini is
    /// as it was. For an inner one: whether the unit is good so far. The first failure ends the unit: later
    /// writes are left out.
    [[nodiscard]] bool Finish();

    /// Notes that something has failed on which the open unit depends; none open: does nothing.
    static void Fail() noexcept;

    /// Gives the open unit its file, if no write has done so yet: from here on its reads see the file as it
    /// is now, whatever other programs write. False when that failed; the unit has failed then.
    static bool BeginWriting();

    /// Whether the open unit writes the file itself, because there can be no other: what it writes is seen at
    /// once, and a kill leaves it there.
    static bool WritesItself() noexcept;

    /// How often the open unit's file has been made: another number says that it was made anew, on what other
    /// programs have written.
    static unsigned TimesMade() noexcept;

    /// Whether a unit is open that has failed: nothing more needs to be tried in it.
    static bool HasFailed() noexcept;

    /// Whether a unit is open.
    static bool AnyOpen() noexcept;

  private:
    size_t writesBefore_;
    bool ended_ = false;
};

/// Deletes the files that a killed program's unit has left beside Quon.ini, whatever they hold, except the
/// one that another session's unit is working with at this moment.
void RemoveInterruptedUnits();

/// Takes the mark of UTF-8 away that some editors put before the first line of Quon.ini, in a unit of its
/// own. False when it failed, and where no new file can be made.
bool RemoveUtf8Mark();

/// Carries out one write in the unit that is open, else in a unit of its own. False when it failed.
bool CarryOut(IniWrite write);

/// The file that reads go to now.
const std::string& FileToRead() noexcept;

/// After a read that failed with this Windows error: waits a moment for a file that is held, or makes the
/// unit's own file anew. True to try again.
bool MakeReadable(unsigned long error);

}  // namespace config
