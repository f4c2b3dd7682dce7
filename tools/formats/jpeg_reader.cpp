#include "tools/formats/jpeg_reader.h"

#include "tools/formats/jpeg_markers.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {
namespace {

// Real files have about ten scans. Each costs a pass over all coefficients, so that a small file of
// thousands of empty ones would run for hours.
constexpr int kMostScans = 500;

// The scans of a progressive picture are taken in by one call, in which nobody else looks.
void OnProgress(j_common_ptr jpeg) {
  if (PendingSignal()) GiveUp(jpeg, "interrupted");
  if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number > kMostScans) {
    GiveUp(jpeg, "more than 500 scans");
  }
}

void OnSource(j_decompress_ptr) {}

int32_t DotsPerInch(const jpeg_decompress_struct& jpeg, int32_t density) {
  enum { kPerInch = 1, kPerCentimeter = 2 };
  if (jpeg.density_unit == kPerInch) return density;
  return jpeg.density_unit == kPerCentimeter ? (density * 254 + 50) / 100 : 0;
}

}  // namespace

bool IsJpeg(const InputFile& file) {
  const uint8_t* const head = file.Head();
  return file.HeadCount() >= 3 && head[0] == 0xFF && head[1] == 0xD8 && head[2] == 0xFF;
}

boolean JpegReader::OnFill(j_decompress_ptr jpeg) {
  auto* input = reinterpret_cast<Input*>(jpeg->src);
  const size_t count = input->file->ReadSome(input->bytes, sizeof input->bytes);
  if (count == 0) GiveUp(reinterpret_cast<j_common_ptr>(jpeg), input->file->ErrorText());
  input->manager.next_input_byte = input->bytes;
  input->manager.bytes_in_buffer = count;
  return TRUE;
}

void JpegReader::OnSkip(j_decompress_ptr jpeg, long count) {
  if (count <= 0) return;
  auto left = static_cast<size_t>(count);
  while (left > jpeg->src->bytes_in_buffer) {
    left -= jpeg->src->bytes_in_buffer;
    OnFill(jpeg);
  }
  jpeg->src->next_input_byte += left;
  jpeg->src->bytes_in_buffer -= left;
}

JpegReader::State::State() {
  ReportTo(&error, &jpeg);
  jpeg_decompress_struct* const made = &jpeg;
  if (!GuardJpeg(error, [made] { jpeg_create_decompress(made); })) {
    jpeg_destroy_decompress(&jpeg);
    throw Failure(std::string("libjpeg cannot start: ") + error.text);
  }
}

JpegReader::JpegReader(std::unique_ptr<InputFile> file, const ReadOptions& options)
    : file_(std::move(file)) {
  jpeg_decompress_struct& jpeg = state_.jpeg;
  state_.input.file = file_.get();
  jpeg_source_mgr& source = state_.input.manager;
  source.init_source = &OnSource;
  source.fill_input_buffer = &OnFill;
  source.skip_input_data = &OnSkip;
  source.resync_to_restart = &jpeg_resync_to_restart;
  source.term_source = &OnSource;
  jpeg.src = &source;
  state_.progress.progress_monitor = &OnProgress;
  jpeg.progress = &state_.progress;

  ReadHeader();
  ChooseForm();
  info_.width = static_cast<int32_t>(jpeg.image_width);
  info_.height = static_cast<int32_t>(jpeg.image_height);
  if (jpeg.saw_JFIF_marker) {
    info_.xDotsPerInch = DotsPerInch(jpeg, jpeg.X_density);
    info_.yDotsPerInch = DotsPerInch(jpeg, jpeg.Y_density);
  }
  TakeMarkers(state_.error, &jpeg, info_);
  SettleOrientation(options, info_);
  // Before anyone allocates rows of that width.
  RequirePossibleSize(file_->Path(), info_.width, info_.height, info_.bits);
  ChooseColors(options);
}

void JpegReader::ReadHeader() {
  jpeg_decompress_struct* const jpeg = &state_.jpeg;
  const bool read = GuardJpeg(state_.error, [jpeg] {
    KeepMarkers(jpeg);
    jpeg_read_header(jpeg, TRUE);
  });
  if (!read) Fail();
}

void JpegReader::ChooseForm() {
  jpeg_decompress_struct& jpeg = state_.jpeg;
  info_.facts.format = "JPEG";
  switch (jpeg.jpeg_color_space) {
    case JCS_GRAYSCALE:
      jpeg.out_color_space = JCS_GRAYSCALE;
      info_.bits = 8;
      info_.colors = GrayRamp(256);
      info_.facts.model = "gray";
      break;
    case JCS_RGB:
    case JCS_YCbCr:
      info_.facts.model = jpeg.jpeg_color_space == JCS_RGB ? "RGB" : "YCbCr";
      jpeg.out_color_space = JCS_EXT_BGR;
      break;
    case JCS_CMYK:
    case JCS_YCCK:
      info_.facts.model = jpeg.jpeg_color_space == JCS_CMYK ? "CMYK" : "YCCK";
      jpeg.out_color_space = JCS_CMYK;
      break;
    default:
      throw Failure(file_->Path() + ": " + std::to_string(jpeg.num_components) +
                    " components that are no colour model");
  }
}

void JpegReader::ChooseColors(const ReadOptions& options) {
  if (state_.jpeg.out_color_space == JCS_CMYK) {
    inks_ = std::make_unique<Inks>(info_.metadata);
  } else if (options.srgb && !info_.colors.empty()) {
    PaletteToSrgb(file_->Path(), info_);
  } else if (options.srgb) {
    toSrgb_ = TakeToSrgb(file_->Path(), info_.metadata, ToSrgb::Samples::kBgr);
  }
}

void JpegReader::Reduce(int64_t width, int64_t height) {
  jpeg_decompress_struct* const jpeg = &state_.jpeg;
  const int64_t wholeWidth = info_.width, wholeHeight = info_.height;
  for (const unsigned of : {8u, 4u, 2u}) {
    const int64_t across = (wholeWidth + of - 1) / of, down = (wholeHeight + of - 1) / of;
    // Cells of one or two pixels by turns would show: nothing is left to average, or enough.
    const bool fits =
        (across == width && down == height) || (across >= 2 * width && down >= 2 * height);
    if (!fits) continue;
    jpeg->scale_num = 1;
    jpeg->scale_denom = of;
    if (!GuardJpeg(state_.error, [jpeg] { jpeg_calc_output_dimensions(jpeg); })) Fail();
    info_.width = static_cast<int32_t>(jpeg->output_width);
    info_.height = static_cast<int32_t>(jpeg->output_height);
    return;
  }
}

// Takes in all scans but the last, where there are several: not before somebody wants rows.
void JpegReader::Start() {
  jpeg_decompress_struct* const jpeg = &state_.jpeg;
  CoefficientStore* const store = &store_;
  const bool startedUp = GuardJpeg(state_.error, [jpeg, store] {
    if (jpeg_has_multiple_scans(jpeg)) store->Serve(jpeg);
    jpeg_start_decompress(jpeg);
  });
  if (!startedUp) Fail();
  if (inks_) row_.resize(size_t{4} * static_cast<size_t>(info_.width));
  started_ = true;
}

void JpegReader::ReadRow(uint8_t* row) {
  if (!started_) Start();
  jpeg_decompress_struct* const jpeg = &state_.jpeg;
  uint8_t* const to = inks_ ? row_.data() : row;
  if (!GuardJpeg(state_.error, [jpeg, to] {
        JSAMPROW one = to;
        jpeg_read_scanlines(jpeg, &one, 1);
      })) {
    Fail();
  }
  ++line_;
  const auto width = static_cast<size_t>(info_.width);
  if (toSrgb_) toSrgb_->Apply(row, row, width);
  if (!inks_) return;
  // Adobe's programs write the light that an ink lets through instead of the ink.
  if (jpeg->saw_Adobe_marker) {
    for (uint8_t& ink : row_)
      ink = static_cast<uint8_t>(255 - ink);
  }
  inks_->Show(row_.data(), row, width);
}

void JpegReader::Finish() {
  jpeg_decompress_struct* const jpeg = &state_.jpeg;
  if (!GuardJpeg(state_.error, [jpeg] { jpeg_finish_decompress(jpeg); })) Fail();
}

void JpegReader::Fail() const { throw Failure(file_->Path() + ": " + state_.error.text); }

}  // namespace vn::tool
