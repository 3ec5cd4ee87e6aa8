#pragma once

#include <istream>

#include "webview2/interfaces.h"

// What the probe has been given by the runtime so far; null before. Window's thread only.
extern ICoreWebView2Environment* g_environment;
extern ICoreWebView2Controller* g_controller;
extern ICoreWebView2* g_view;

/// The window that the view is to fill.
extern HWND g_parent;

/// Loads the runtime under test. False when it or its entry is not there.
bool load_runtime(const char* path);

/// Lets go of what the commands have kept.
void release_everything();

// Commands about the objects; each reads its words and prints what came of it.
void create_environment(std::istream& words);
void create_controller(std::istream& words);
void set_bounds(std::istream& words);
void set_background(std::istream& words);
void change_settings(std::istream& words);
void check_identities(std::istream& words);
void print_pixel(std::istream& words);
