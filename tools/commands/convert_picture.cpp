#include "tools/commands/convert_picture.h"

#include <utility>

#include "tools/formats/page_files.h"
#include "tools/operations/load_bitmap.h"
#include "tools/operations/row_streams.h"
#include "tools/operations/save_bitmap.h"
#include "tools/terminal/progress_bar.h"

namespace vn::tool {
namespace {

// One page on its way; the bar shows it as one of several.
class PageConversion {
 public:
  PageConversion(const Conversion& conversion, std::unique_ptr<PictureSource> picture,
                 int32_t storage, PageFiles& files, ProgressBar& bar)
      : conversion_(conversion),
        picture_(std::move(picture)),
        storage_(storage),
        files_(files),
        bar_(bar) {}

  void Run(int32_t page, int32_t pages) {
    // A storage that is asked for is also used.
    if (!conversion_.storage.kind) Stream();
    const auto steps = static_cast<int32_t>(conversion_.operations.size() - done_);
    const bool straight = steps == 0 && !conversion_.storage.kind && ComesInOrder(*picture_);
    stages_ = straight ? 1 : steps + 2;
    stage_ = page * stages_;
    stages_ *= pages;
    straight ? CopyThrough() : WorkOnBitmap();
  }

 private:
  // The first operations, as far as rows can pass them as they come.
  void Stream() {
    const std::vector<Operation>& operations = conversion_.operations;
    for (; done_ < operations.size() && IsStream(*picture_); ++done_) {
      const Operation::Stream& stream = operations[done_].AsStream();
      if (!stream) return;
      picture_ = stream(std::move(picture_));
    }
  }

  void BeginStage() { bar_.BeginStage(stage_++, stages_); }

  PictureSink& BeginPage(PictureInfo info) {
    info.metadata = conversion_.write.MetadataOf(picture_->Info());
    return files_.Begin(info);
  }

  void CopyThrough() {
    BeginStage();
    CopyRows(*picture_, BeginPage(picture_->Info()));
    picture_->Finish();
  }

  void WorkOnBitmap() {
    Bitmap bitmap;
    BeginStage();
    LoadBitmap(*picture_, storage_, bitmap);
    for (; done_ < conversion_.operations.size(); ++done_) {
      BeginStage();
      conversion_.operations[done_](bitmap);
    }
    BeginStage();
    SaveBitmap(bitmap, BeginPage(InfoOf(bitmap)));
  }

  const Conversion& conversion_;
  std::unique_ptr<PictureSource> picture_;
  const int32_t storage_;
  PageFiles& files_;
  ProgressBar& bar_;
  size_t done_ = 0;  // operations
  int32_t stage_ = 0, stages_ = 1;
};

}  // namespace

void ConvertPicture(const Conversion& conversion, const std::string& in, const std::string& out) {
  ReadOptions read = conversion.read;
  auto picture = conversion.allPages ? OpenPicture(in, read) : OpenOnePicture(in, read);
  const int32_t pages = conversion.allPages ? picture->Info().facts.pages : 1;
  PageFiles files(out, conversion.write.form, pages);
  const int32_t storage = conversion.storage.Settle(picture->Info());
  ProgressBar bar("converting " + in);
  for (int32_t page = 0; page < pages; ++page) {
    if (page > 0) {
      read.page = page + 1;
      picture = OpenPicture(in, read);
    }
    PageConversion(conversion, std::move(picture), storage, files, bar).Run(page, pages);
  }
  files.Finish();
}

}  // namespace vn::tool
