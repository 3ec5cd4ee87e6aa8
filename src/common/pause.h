#pragma once

/// A wait that the sequence itself prescribes, in milliseconds.
using PauseFn = void (*)(unsigned long milliseconds);

/// Every prescribed wait goes through here; it is Sleep unless a test records the waits instead. Set before
/// any worker exists.
extern PauseFn g_pause;
