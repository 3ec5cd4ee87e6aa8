#pragma once

#include <string>

/// Reports of a component as messages to the page, during an installation and during a removal.
void install_reporter(const std::string& message, bool ok);
void uninstall_reporter(const std::string& message, bool ok);

/// What windowless runs hand to the components: every report vanishes.
void silent_progress(const std::string& message, bool ok);
