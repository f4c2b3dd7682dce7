// Which vector instructions the rooms may use. Asked once; what an operation runs is chosen when it
// is prepared.
//
// A subject's vector form lies in `<subject>_avx2.cpp` beside its plain file and is compiled by
// itself for AVX2. Such a file includes no header with inline functions of the rooms and no
// template of the standard library: the linker keeps one copy of an inline function for everybody,
// and that copy must run on any processor. Both forms give the same bytes.
#ifndef VNCORE_KERNEL_VECTOR_H
#define VNCORE_KERNEL_VECTOR_H

namespace vn {

enum class VectorLevel { kNone, kAvx2 };

// The level that is in force: the machine's own, unless the environment variable VNCORE_VECTOR says
// "none" or SetVectorLevel was called.
VectorLevel ActiveVectorLevel();

// Sets the level of the process, for comparing the forms; a level above the machine's becomes the
// machine's. Returns the one before. Not for a time when other threads prepare operations.
VectorLevel SetVectorLevel(VectorLevel level);

}  // namespace vn

// The form of a loop that this machine runs. Builds without vector forms never name the second.
#ifdef VNCORE_HAVE_AVX2
#define VNCORE_VECTOR_FORM(plain, avx2) \
  (vn::ActiveVectorLevel() == vn::VectorLevel::kAvx2 ? (avx2) : (plain))
#else
#define VNCORE_VECTOR_FORM(plain, avx2) (plain)
#endif

#endif
