#include "tools/commands/convert_picture.h"

#include <optional>
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
    Reduce();
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
  // Lets the picture come smaller where it is averaged first.
  void Reduce() {
    const std::vector<Operation>& operations = conversion_.operations;
    const auto* const averaging = operations.empty() ? nullptr : operations[0].AsAveraging();
    if (!averaging) return;
    const PictureInfo& info = picture_->Info();
    const Operation::WideSize size = averaging->sizeOf(info.UprightWidth(), info.UprightHeight());
    averaged_ = size;
    info.LiesOnItsSide() ? picture_->Reduce(size.height, size.width)
                         : picture_->Reduce(size.width, size.height);
  }

  // The first operations, as far as rows can pass them as they come.
  void Stream() {
    const std::vector<Operation>& operations = conversion_.operations;
    for (; done_ < operations.size() && IsStream(*picture_); ++done_) {
      if (operations[done_].AsAveraging()) {
        const Operation::WideSize size = AveragedSize();
        if (!CanAverageRows(*picture_, size.width, size.height)) return;
        picture_ = AverageRows(std::move(picture_), size.width, size.height);
        continue;
      }
      const Operation::Stream& stream = operations[done_].AsStream();
      if (!stream) return;
      picture_ = stream(std::move(picture_));
    }
  }

  // What the next operation makes of the picture; the first one has seen it before it was reduced.
  Operation::WideSize AveragedSize() const {
    if (done_ == 0 && averaged_) return *averaged_;
    const PictureInfo& info = picture_->Info();
    return conversion_.operations[done_].AsAveraging()->sizeOf(info.width, info.height);
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
      const Operation& operation = conversion_.operations[done_];
      done_ == 0 && averaged_ ? operation.AsAveraging()->run(bitmap, *averaged_)
                              : operation(bitmap);
    }
    BeginStage();
    SaveBitmap(bitmap, BeginPage(InfoOf(bitmap)));
  }

  const Conversion& conversion_;
  std::unique_ptr<PictureSource> picture_;
  const int32_t storage_;
  PageFiles& files_;
  ProgressBar& bar_;
  size_t done_ = 0;                              // operations
  std::optional<Operation::WideSize> averaged_;  // what the first operation makes of the whole
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
