// Room on disk for files that grow.
#ifndef VNCORE_PLATFORM_HEADLESS_DISK_SPACE_H
#define VNCORE_PLATFORM_HEADLESS_DISK_SPACE_H

#include <cstdint>

namespace headless {

// Makes a file of `from` bytes one of `end` bytes, zeros behind the old ones. Their blocks are
// reserved, so that a full disk is a failure here, as on Windows, and no hole that a later write or
// a mapping falls into. False leaves the file as it was.
bool ExtendFile(int file, int64_t from, int64_t end);

}  // namespace headless

#endif
