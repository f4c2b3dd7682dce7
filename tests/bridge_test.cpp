// The bridge of Win32s: what is registered, and the requests that come in.
#include "device/bridge.h"

#include <gtest/gtest.h>

#include <string>

#include "kernel/process.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {
namespace {

TEST(Bridge, ServesRowsAndRefusesTheRest) {
  Bitmap bitmap(16, 4, 8);
  const auto word = [](const void* pointer) { return reinterpret_cast<BridgeWord>(pointer); };
  const BridgeWord record[] = {word(bitmap.get())};
  EXPECT_EQ(BridgeCallback(record, kBridgeAccess), 0);

  Bytes bytes{1, 2, 3, 4, 5}, back(5);
  const BridgeWord put[] = {word(bitmap.get()), word(bytes.data()), 2, 3, 5};
  EXPECT_EQ(BridgeCallback(put, kBridgePutRow), 5);
  const BridgeWord get[] = {word(bitmap.get()), word(back.data()), 2, 3, 5};
  EXPECT_EQ(BridgeCallback(get, kBridgeGetRow), 5);
  EXPECT_EQ(back, bytes);

  EXPECT_EQ(BridgeCallback(record, kBridgeRelease), 0);
  EXPECT_FALSE(bitmap->Flags & FLAG_LOCKED);
  EXPECT_EQ(BridgeCallback(nullptr, 4), ERR_UNSUPPORTED);
}

#ifndef _WIN32  // what follows steers the headless platform

// A thunk layer as Win32s has one, with its other side here.
struct FakeThunks {
  int registrations = 0;
  BOOL answer = TRUE;
  std::string names;
} thunks;

BridgeWord WINAPI OtherSide(void* arguments, DWORD request, void** translations) {
  return *static_cast<BridgeWord*>(arguments) + request + (translations[0] == arguments);
}

BOOL WINAPI FakeRegister(HINSTANCE, LPCSTR library, LPCSTR init, LPCSTR proc, void* procVariable,
                         void* callback, void* initData) {
  ++thunks.registrations;
  thunks.names = std::string(library) + ' ' + init + ' ' + proc;
  EXPECT_EQ(callback, reinterpret_cast<void*>(&BridgeCallback));
  EXPECT_EQ(initData, nullptr);
  *static_cast<void**>(procVariable) = reinterpret_cast<void*>(&OtherSide);
  return thunks.answer;
}

// Makes the two entries of the thunk layer appear for the length of a test.
class ThunkScope {
 public:
  explicit ThunkScope(bool unregisterToo = true) {
    const auto proc = reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(&FakeRegister));
    Headless_SetProcedure("KERNEL32", "UTRegister", proc);
    if (unregisterToo) Headless_SetProcedure("KERNEL32", "UTUnRegister", proc);
    thunks = {};
  }
  ThunkScope(const ThunkScope&) = delete;
  ThunkScope& operator=(const ThunkScope&) = delete;
  ~ThunkScope() {
    Headless_SetProcedure("KERNEL32", "UTRegister", nullptr);
    Headless_SetProcedure("KERNEL32", "UTUnRegister", nullptr);
  }
};

TEST(Bridge, StandsOnWin32sWithAThunkLayer) {
  const UINT mode = SetErrorMode(0x1234);
  {
    const ThunkScope scope;
    {
      const Win32sScope win32s;
      EXPECT_TRUE(BridgeActive());
      EXPECT_EQ(thunks.registrations, 1);
      EXPECT_EQ(thunks.names, "VNBRDG32.DLL UTInit UTProc");
      BridgeWord arguments[] = {1000};
      void* translations[] = {arguments, nullptr};
      EXPECT_EQ(CallBridge(arguments, kBridgeCreateContext, translations), 1005u);
    }
    // The last detachment runs the set-up again; the new attachment is no Win32s.
    EXPECT_EQ(thunks.registrations, 2);
    EXPECT_FALSE(BridgeActive());
  }
  EXPECT_EQ(SetErrorMode(mode), 0x1234u);
}

TEST(Bridge, MissingPiecesOnlyLeaveItOut) {
  for (const bool unregisterToo : {false, true}) {
    const ThunkScope scope(unregisterToo);
    thunks.answer = FALSE;
    const Win32sScope win32s;
    EXPECT_FALSE(BridgeActive());
    EXPECT_EQ(thunks.registrations, unregisterToo);
  }
}

#endif

}  // namespace
}  // namespace vn::test
