// Where temporary files are made.
#ifndef VNCORE_PLATFORM_HEADLESS_TEMP_NAMES_H
#define VNCORE_PLATFORM_HEADLESS_TEMP_NAMES_H

#include <string>

namespace headless {

// The folder of temporary files with its trailing separator: $TMPDIR, or /tmp.
std::string TempFolder();

// Whether GetTempFileNameA makes such names. In a folder that others may write to, somebody may have
// put a link or another file in the place of what it made.
bool IsTempName(const char* name);

// A new file without a name, gone when it is closed; -1 on failure.
int OpenUnlinkedTempFile();

}  // namespace headless

#endif
