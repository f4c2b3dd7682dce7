/* Return codes, and the progress callback that can add codes of its own. */
#ifndef VNCORE_VN_STATUS_H
#define VNCORE_VN_STATUS_H

#include "vn_platform.h"

VN_BEGIN_C

/* `OK`, a negative `ERR_` code, or whatever value the caller's status callback returned to stop an
 * operation. */
typedef int32_t VnStatus;

enum {
  OK = 1,                      /* success */
  ERR_NO_MEMORY = -1,          /* allocation failed; row access: the record has no storage */
  ERR_NO_BITMAP = -2,          /* null handle pointer, or FLAG_ALLOCATED clear */
  ERR_FILE_SEEK = -4,          /* a seek in a temporary file landed elsewhere than asked */
  ERR_FILE_WRITE = -5,         /* a write to a temporary file failed */
  ERR_FILE_READ = -7,          /* a read from a temporary file failed */
  ERR_EMPTY_BITMAP = -11,      /* no pixels to allocate; a pixel write outside the bitmap */
  ERR_INVALID_PARAMETER = -13, /* an argument out of range, or a state that forbids the call */
  ERR_UNSUPPORTED = -16,       /* a structure or request that the library does not handle */
  ERR_BITS_PER_PIXEL = -27     /* depth other than 1, 4, 8, 16, 24, 32 */
};

/* Hears the percentage done of a long operation, 0 to 100, on the calling thread, from inside the
 * row loop. `OK` means go on. Any other value stops the operation, which releases what it holds and
 * returns exactly that value. */
typedef VnStatus(VN_CALL* VnStatusCallBack)(int32_t percent);

VN_END_C

#endif
