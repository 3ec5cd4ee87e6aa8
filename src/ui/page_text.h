#pragma once

#include <string>

/// The whole installer page, markup, styles and script, as the control takes it. Plain ASCII.
std::wstring page_text();
