// Where temporary files are made.
#ifndef VNCORE_PLATFORM_HEADLESS_TEMP_NAMES_H
#define VNCORE_PLATFORM_HEADLESS_TEMP_NAMES_H

#include <string>

namespace headless {

// The folder of temporary files with its trailing separator: $TMPDIR, or /tmp.
std::string TempFolder();

// A new file without a name, gone when it is closed; -1 on failure.
int OpenUnlinkedTempFile();

}  // namespace headless

#endif
