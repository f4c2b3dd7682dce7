// Match tables made for callers: the nearest entry for every 15-bit colour.
#include "color/color_match.h"
#include "kernel/pixel_format.h"
#include "kernel/scratch_buffer.h"
#include "kernel/thread_settings.h"

uint32_t* VN_CALL Vn_CreateUserMatchTable(const RGBQUAD* colors, uint32_t count) {
  vn::ScratchBuffer<uint32_t> table(vn::kMatchCells, vn::Fill::kZero);
  if (!table) return nullptr;
  if (!colors || count == 0) return table.Release();
  for (uint32_t cell = 0; cell < vn::kMatchCells; ++cell) {
    // A cell is searched for by its low corner, not by its middle.
    table[cell] = 1 + vn::ColorMatch(colors, count, (cell >> 10 & 31) * 8, (cell >> 5 & 31) * 8,
                                     (cell & 31) * 8);
  }
  return table.Release();
}

uint32_t* VN_CALL Vn_SetUserMatchTable(uint32_t* table) {
  return std::exchange(vn::CurrentThreadSettings().UserMatchTable, table);
}

VnStatus VN_CALL Vn_FreeUserMatchTable(uint32_t* table) {
  if (table) Vn_OsFree(table);
  return OK;
}
