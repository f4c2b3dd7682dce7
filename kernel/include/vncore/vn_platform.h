/* What every public header of VNCORE32 stands on: the platform's types, the calling convention and
 * the export mark. */
#include <stdint.h>

#include <vncore/platform/types.h>
#ifndef VNCORE_PREFIXED
#include <vncore/platform/win32.h>
#endif

#ifndef VNCORE_VN_PLATFORM_H
#define VNCORE_VN_PLATFORM_H

/* Calling convention of every exported function and of every callback. */
#if defined(_WIN32) && !defined(_WIN64)
#define VN_CALL __stdcall
#else
#define VN_CALL
#endif

/* Export mark. On Windows the module-definition file exports the names, undecorated. */
#if defined(_WIN32)
#define VN_API
#else
#define VN_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#define VN_BEGIN_C extern "C" {
#define VN_END_C }
#else
#define VN_BEGIN_C
#define VN_END_C
#endif

#endif
