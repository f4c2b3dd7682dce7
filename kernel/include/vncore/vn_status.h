/* Return codes, and the progress callback that can add codes of its own. */
#include "vn_platform.h"

#ifndef VNCORE_VN_STATUS_H
#define VNCORE_VN_STATUS_H

VN_BEGIN_C

/* `OK`, a negative `ERR_` code, or whatever value the caller's status callback returned to stop an
 * operation. */
typedef int32_t Vn_Status;

enum {
  VN_OK = 1,                      /* success */
  VN_ERR_NO_MEMORY = -1,          /* allocation failed; row access: the record has no storage */
  VN_ERR_NO_BITMAP = -2,          /* null handle pointer, or FLAG_ALLOCATED clear */
  VN_ERR_FILE_SEEK = -4,          /* a seek in a temporary file landed elsewhere than asked */
  VN_ERR_FILE_WRITE = -5,         /* a write to a temporary file failed */
  VN_ERR_FILE_READ = -7,          /* a read from a temporary file failed */
  VN_ERR_EMPTY_BITMAP = -11,      /* no pixels to allocate; a pixel write outside the bitmap */
  VN_ERR_INVALID_PARAMETER = -13, /* an argument out of range, or a state that forbids the call */
  VN_ERR_UNSUPPORTED = -16,       /* a structure or request that the library does not handle */
  VN_ERR_BITS_PER_PIXEL = -27     /* depth other than 1, 4, 8, 16, 24, 32 */
};

/* Hears the percentage done of a long operation, 0 to 100, on the calling thread, from inside the
 * row loop. `OK` means go on. Any other value stops the operation, which releases what it holds and
 * returns exactly that value. */
typedef Vn_Status(VN_CALL* Vn_StatusCallBack)(int32_t percent);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_STATUS_NAMES)
#define VNCORE_VN_STATUS_NAMES
typedef Vn_Status VnStatus;
typedef Vn_StatusCallBack VnStatusCallBack;
enum {
  OK = VN_OK,
  ERR_NO_MEMORY = VN_ERR_NO_MEMORY,
  ERR_NO_BITMAP = VN_ERR_NO_BITMAP,
  ERR_FILE_SEEK = VN_ERR_FILE_SEEK,
  ERR_FILE_WRITE = VN_ERR_FILE_WRITE,
  ERR_FILE_READ = VN_ERR_FILE_READ,
  ERR_EMPTY_BITMAP = VN_ERR_EMPTY_BITMAP,
  ERR_INVALID_PARAMETER = VN_ERR_INVALID_PARAMETER,
  ERR_UNSUPPORTED = VN_ERR_UNSUPPORTED,
  ERR_BITS_PER_PIXEL = VN_ERR_BITS_PER_PIXEL
};
#endif
