/* The version of these headers, for the preprocessor. Vn_VersionInfo tells the one of the library that
 * is loaded. The build takes its own version from here. */
#ifndef VNCORE_VN_VERSION_H
#define VNCORE_VN_VERSION_H

#define VNCORE_VERSION_MAJOR 6 /* rises with changes that programs built before would notice */
#define VNCORE_VERSION_MINOR 2 /* rises with new functions */
#define VNCORE_VERSION_PATCH 0 /* rises with corrections */

/* A version as one number: #if VNCORE_VERSION >= VNCORE_MAKE_VERSION(6, 2, 0) */
#define VNCORE_MAKE_VERSION(major, minor, patch) ((major)*1000000 + (minor)*1000 + (patch))
#define VNCORE_VERSION \
  VNCORE_MAKE_VERSION(VNCORE_VERSION_MAJOR, VNCORE_VERSION_MINOR, VNCORE_VERSION_PATCH)

#endif
