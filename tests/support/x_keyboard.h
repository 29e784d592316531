// Modifier keys of the X server that Wine draws on.
//
// What SendInput presses, the X server knows nothing of: with each move of the pointer it tells Wine that no
// key is down. Later versions of Wine then let the keys go at once; pressed in X itself, they stay down.
#pragma once

#include <windows.h>

#include <functional>
#include <vector>

namespace testkit {

/// Whether the X server has to press this key: a modifier, under a Wine that lets go what SendInput presses.
bool IsKeyOfXServer(WORD key);

/// Presses such keys among `keys` until they stay down after `wakeUp`, which has the program in front go
/// through its message loop.
void PressInXServer(const std::vector<WORD>& keys, const std::function<void()>& wakeUp);

/// Lets such keys among `keys` go, and waits until they are up.
void LetGoInXServer(const std::vector<WORD>& keys);

/// Has the program in front see the keys as they are now. Wine locks a thread's own view of the keys while it
/// handles input, and Wine 10 may never unlock it in the second program of a desktop: GetKeyState there then
/// misses what X pressed or let go. Joining the thread's input for a moment (AttachThreadInput) unlocks it.
void BringKeyStatesUpToDate();

/// Lets go the modifiers that a test which was killed has left down.
void LetModifiersGo();

}  // namespace testkit
