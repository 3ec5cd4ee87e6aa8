#pragma once

#include <string>

/// Addresses of the browser extension's pages.
std::wstring store_page_address();
std::wstring firefox_addon_page_address();

/// Starts a browser's program with the store page as its only argument; returns when it has been launched.
/// A program that cannot be started is passed over (the shell says so itself).
void open_store_page(const std::wstring& browser_program);

/// Opens the Firefox add-on page in the default browser.
void open_firefox_addon_page();
