/* Frame of the library: version, bitmap records, defaults, the status callback. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_FRAME_H
#define VNCORE_VN_FRAME_H

VN_BEGIN_C

typedef struct Vn_VersionRecord {
  char Description[60]; /* zero-padded, Windows-1252 */
  uint32_t Reserved;    /* 0 */
  int32_t MajorVersion;
  int32_t MinorVersion;
  char BuildDate[16]; /* zero-padded */
  char BuildTime[16]; /* zero-padded */
} Vn_VersionRecord;

/* Fills `bitmap` as a record without storage: `width` by `height` pixels of `bitsPerPixel`, bottom
 * line first, the thread's default resolution and dithering method. An allocated record is simply
 * forgotten, so free it first. Sizes beyond 32 bits wrap. What vn_storage.h does not accept,
 * a width or height of 0 or from 2^31 on, is accepted here and refused by Vn_AllocateBitmap.
 * Returns OK, or ERR_BITS_PER_PIXEL (the record is then all zero). */
VN_API Vn_Status VN_CALL Vn_InitBitmap(Vn_BitmapHandle* bitmap, uint32_t width, uint32_t height,
                                       int32_t bitsPerPixel);

/* Copies the library's fixed version record into `info`. Returns OK. */
VN_API Vn_Status VN_CALL Vn_VersionInfo(Vn_VersionRecord* info);

/* Sets the calling thread's status callback, or none for null; returns the previous one. */
VN_API Vn_StatusCallBack VN_CALL Vn_SetStatusCallBack(Vn_StatusCallBack callback);
/* The calling thread's status callback, or null. */
VN_API Vn_StatusCallBack VN_CALL Vn_GetStatusCallBack(void);

/* Sets the dithering method, 0 to 8, that new bitmaps of this thread take. Returns OK, or
 * ERR_INVALID_PARAMETER above 8, and then nothing changes. */
VN_API Vn_Status VN_CALL Vn_DefaultDithering(uint32_t method);

/* Default resolutions of the calling thread in dots per inch, stored unchecked; new bitmaps take
 * 150 for a value of 0 or less. The setters return the previous value. */
VN_API int32_t VN_CALL Vn_SetDefaultXResolution(int32_t dotsPerInch);
VN_API int32_t VN_CALL Vn_SetDefaultYResolution(int32_t dotsPerInch);
VN_API int32_t VN_CALL Vn_GetDefaultXResolution(void);
VN_API int32_t VN_CALL Vn_GetDefaultYResolution(void);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_FRAME_NAMES)
#define VNCORE_VN_FRAME_NAMES
typedef Vn_VersionRecord VersionRecord;
#endif
