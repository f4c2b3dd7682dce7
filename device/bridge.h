// The bridge of Win32s to the 16-bit library, through which that side reaches a bitmap's rows.
#ifndef VNCORE_DEVICE_BRIDGE_H
#define VNCORE_DEVICE_BRIDGE_H

#include <vncore/vncore.h>

namespace vn {

// A word of a request's argument buffer: 32 bits on the system that has a bridge, and always wide
// enough for a pointer.
using BridgeWord = uintptr_t;

// Requests. 0 to 3 come in from the 16-bit side, 4 and 5 go out to it.
enum BridgeRequest : uint32_t {
  kBridgeAccess = 0,         // BitmapHandle*
  kBridgeRelease = 1,        // BitmapHandle*
  kBridgeGetRow = 2,         // BitmapHandle*, buffer, row, column, byte count
  kBridgePutRow = 3,         // as kBridgeGetRow
  kBridgeCreateContext = 4,  // BitmapHandle*; the result is the device context
  kBridgeDeleteContext = 5   // the device context
};

// Registers the 16-bit library; 1 if the bridge stands, else 0. Called at the first attachment of a
// process and, by intent, at the last detachment again.
int32_t SetUpBridge(HINSTANCE instance);

// Serves a request of the 16-bit side. ERR_UNSUPPORTED for one that is none of its.
int32_t WINAPI BridgeCallback(const BridgeWord* arguments, uint32_t request);

// Sends a request to the 16-bit side. `translations` lists the addresses of the argument words that
// are pointers, for the layer between to translate, and ends with null. Only with BridgeActive().
BridgeWord CallBridge(BridgeWord* arguments, BridgeRequest request, void** translations);

// Contexts on bitmaps that the 16-bit side makes and deletes; its results.
HDC CreateBridgeContext(BitmapHandle* bitmap);
int32_t DeleteBridgeContext(HDC context);

}  // namespace vn

#endif
