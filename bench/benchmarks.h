#pragma once

#include "bench/measure.h"
#include "bench/scene.h"

namespace bench {

/// From the start of the process until the panel stands painted on the screen.
void MeasureStart(const Scene& scene, const Effort& effort, Table& table);

/// A switch of tabs inside this process beside the Windows calls that it cannot do without.
void MeasureTabSwitch(const Scene& scene, const Effort& effort, Table& table);

/// From the hover to the shown panel and from the command to the docked one, and what the docked panel costs
/// while nothing happens.
void MeasureDock(const Effort& effort, Table& table);

/// Filling the drop-down with as many names as a section holds, beside the combo box's own calls, and
/// completing a name in it.
void MeasureShortcutList(const Effort& effort, Table& table);

/// Storing and removing one of a thousand records of Quon.ini beside the bare profile calls, which nothing
/// protects.
void MeasureRecords(const Effort& effort, Table& table);

/// From the command until the group editor, the organiser and the icon chooser are painted, all with long
/// contents, each beside its bare Windows calls.
void MeasureDialogs(const Scene& scene, const Effort& effort, Table& table);

/// Listing the running programs beside the Windows calls that it takes.
void MeasureProcessList(const Effort& effort, Table& table);

/// The executable's size.
void MeasureSize(const Scene& scene, Table& table);

/// Memory and objects after the start and after a long run of switches.
void MeasureMemory(const Scene& scene, const Effort& effort, Table& table);

}  // namespace bench
