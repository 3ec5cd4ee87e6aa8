#pragma once

/// Spoils files and registry values of what is installed, so that an installation over it has something to
/// mend: one that does nothing would otherwise look like one that works. What is not there is passed over.
void damage_installation();
