// The viewer and the desktop around it: its clipboard, its printer, files that are dropped.
#include <algorithm>
#include <filesystem>
#include <utility>

#include "tools/desktop/clipboard.h"
#include "tools/desktop/queue_pages.h"
#include "tools/terminal/failure.h"
#include "tools/window/viewer.h"

namespace vn::tool {
namespace {

constexpr int32_t kUsualDots = 300;

// Makes `part` what the region spans of the picture. False where there is none.
bool CopySelected(BitmapHandle* bitmap, BitmapHandle* part) {
  RECT spanned{};
  if (!Vn_BitmapHasRgn(bitmap) || Vn_GetBitmapRgnBounds(bitmap, &kAsSeen, &spanned) != OK)
    return false;
  const auto within = [](LONG edge, int32_t side) {
    return std::clamp(static_cast<int32_t>(edge), 0, side);
  };
  const int32_t x = within(spanned.left, bitmap->Width), y = within(spanned.top, bitmap->Height);
  const int32_t width = within(spanned.right, bitmap->Width) - x;
  const int32_t height = within(spanned.bottom, bitmap->Height) - y;
  if (width < 1 || height < 1) return false;
  const RECT rows = StorageRect(*bitmap, {x, y, width, height});
  const VnStatus copied = Vn_CopyBitmapRect(
      part, bitmap, static_cast<uint32_t>(rows.left), static_cast<uint32_t>(rows.top),
      static_cast<uint32_t>(width), static_cast<uint32_t>(height));
  if (copied != OK) throw Failure(StatusText(copied));
  return true;
}

}  // namespace

void Viewer::Attempt(void (Viewer::*work)()) {
  try {
    (this->*work)();
  } catch (const Failure& failure) {
    TellFailure(failure);
  }
}

void Viewer::CopyPicture() {
  Bitmap part;
  const bool selected = CopySelected(*bitmap_, part);
  CopyToDesktop(selected ? part : *bitmap_);
  note_ = selected ? "copied the region" : "copied";
}

void Viewer::PastePicture() {
  const PastedPicture picture;
  std::unique_ptr<Bitmap> pasted = Load(picture.Path());
  if (!pasted) return;
  pasted_ = true;
  Replace(std::move(pasted));
}

// As large as the default printer's paper takes it, upright or on its side.
void Viewer::PrintPicture() {
  const PrintQueue queue("");
  QueueWish wish;
  wish.title =
      pasted_ ? "clipboard" : std::filesystem::path(options_.pictures[at_]).filename().string();
  wish.paper = queue.UsualPaper();
  wish.dotsPerInch = queue.DotsPerInch().value_or(kUsualDots);
  wish.landscape = (*bitmap_)->Width > (*bitmap_)->Height;
  std::string name;
  PrintJob job(PrintablePage(wish), CreateQueuePages(queue, wish, name));
  const StatusListener listener(ProgressOf("printing on " + queue.Name()));
  job.Print(*bitmap_, 0, 0, 0, 0);
  job.Finish();
  note_ = "printing as " + name;
}

void Viewer::ShowDropped() {
  const std::vector<std::string> files = std::exchange(dropped_, {});
  note_.clear();
  stale_ = true;
  std::unique_ptr<Bitmap> next;
  const auto first = std::find_if(files.begin(), files.end(), [&](const std::string& file) {
    next = Load(file);
    return next != nullptr;
  });
  if (!next) return;
  const auto behind = options_.pictures.begin() + static_cast<ptrdiff_t>(at_) + 1;
  options_.pictures.insert(behind, first, files.end());
  ++at_;
  pasted_ = false;
  Replace(std::move(next));
}

}  // namespace vn::tool
