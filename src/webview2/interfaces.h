#pragma once

// The WebView2 interfaces in use, with Microsoft's names so that the SDK can
// take their place. Rules that every one of these files keeps:
//
// - Published interfaces never change; a new runtime adds new ones. So each
//   table is complete and in the order of the published binary interface, which
//   is not the alphabetical order of the reference pages. A unit test reads
//   every slot number back from the compiler.
// - Pure virtual functions only, no data, no overloads and no virtual
//   destructor: with GCC and clang a destructor would take two slots.
// - GCC attaches no id to an interface (its __uuidof does not link): the ids
//   are constants.

#include "webview2/controller_interfaces.h"
#include "webview2/environment_interface.h"
#include "webview2/event_interfaces.h"
#include "webview2/settings_interface.h"
#include "webview2/view_interface.h"
