#include "tools/formats/jpeg_writer.h"

#include <algorithm>

#include <vncore/vn_convert.h>
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

constexpr int kQuality = 90;

bool IsGrayPalette(const PictureInfo& info) {
  return info.bits <= 8 &&
         std::all_of(info.colors.begin(), info.colors.end(), [](const RGBQUAD& color) {
           return color.rgbRed == color.rgbGreen && color.rgbGreen == color.rgbBlue;
         });
}

}  // namespace

void JpegWriter::OnStart(j_compress_ptr jpeg) {
  auto* output = reinterpret_cast<Output*>(jpeg->dest);
  output->manager.next_output_byte = output->bytes;
  output->manager.free_in_buffer = sizeof output->bytes;
}

// Full means full: what next_output_byte says is not to be heeded here.
boolean JpegWriter::OnFull(j_compress_ptr jpeg) {
  auto* output = reinterpret_cast<Output*>(jpeg->dest);
  if (!output->file->Write(output->bytes, sizeof output->bytes)) {
    GiveUp(reinterpret_cast<j_common_ptr>(jpeg), output->file->ErrorText());
  }
  OnStart(jpeg);
  return TRUE;
}

void JpegWriter::OnEnd(j_compress_ptr jpeg) {
  auto* output = reinterpret_cast<Output*>(jpeg->dest);
  const size_t count = sizeof output->bytes - output->manager.free_in_buffer;
  if (!output->file->Write(output->bytes, count)) {
    GiveUp(reinterpret_cast<j_common_ptr>(jpeg), output->file->ErrorText());
  }
}

JpegWriter::State::State() {
  ReportTo(&error, &jpeg);
  jpeg_compress_struct* const made = &jpeg;
  if (!GuardJpeg(error, [made] { jpeg_create_compress(made); })) {
    jpeg_destroy_compress(&jpeg);
    throw Failure(std::string("libjpeg cannot start: ") + error.text);
  }
}

JpegWriter::JpegWriter(std::unique_ptr<OutputFile> file, const PictureInfo& info)
    : file_(std::move(file)),
      info_(info),
      gray_(IsGrayPalette(info)),
      markers_(info.metadata, gray_) {
  jpeg_destination_mgr& destination = state_.output.manager;
  state_.output.file = file_.get();
  destination.init_destination = &OnStart;
  destination.empty_output_buffer = &OnFull;
  destination.term_destination = &OnEnd;
  state_.jpeg.dest = &destination;
  if (info.bits <= 8) {
    const auto width = static_cast<uint32_t>(info.width);
    row_.resize(Vn_CalcConvertSize(width, static_cast<uint32_t>(info.bits), width, 24));
  }
  Start();
}

void JpegWriter::Start() {
  jpeg_compress_struct* const jpeg = &state_.jpeg;
  const PictureInfo* const info = &info_;
  const JpegMarkers* const markers = &markers_;
  const bool gray = gray_;
  const bool started = GuardJpeg(state_.error, [jpeg, info, markers, gray] {
    jpeg->image_width = static_cast<JDIMENSION>(info->width);
    jpeg->image_height = static_cast<JDIMENSION>(info->height);
    jpeg->input_components = gray ? 1 : 3;
    jpeg->in_color_space = gray ? JCS_GRAYSCALE : JCS_EXT_BGR;
    jpeg_set_defaults(jpeg);
    jpeg_set_quality(jpeg, kQuality, TRUE);
    for (int i = 0; i < jpeg->num_components; ++i) {
      jpeg->comp_info[i].h_samp_factor = jpeg->comp_info[i].v_samp_factor = 1;
    }
    const auto fits = [](int32_t dots) { return dots > 0 && dots <= 0xFFFF; };
    if (fits(info->xDotsPerInch) && fits(info->yDotsPerInch)) {
      jpeg->density_unit = 1;  // dots per inch
      jpeg->X_density = static_cast<UINT16>(info->xDotsPerInch);
      jpeg->Y_density = static_cast<UINT16>(info->yDotsPerInch);
    }
    jpeg_start_compress(jpeg, TRUE);
    markers->Write(jpeg);
  });
  if (!started) Fail();
}

void JpegWriter::WriteRow(const uint8_t* row) {
  if (!row_.empty()) {
    const auto bits = static_cast<uint32_t>(info_.bits);
    std::copy_n(row, (static_cast<size_t>(info_.width) * bits + 7) / 8, row_.data());
    // A gray's own level is the gray of its colour.
    const VnStatus status =
        Vn_ConvertBuffer(row_.data(), static_cast<uint32_t>(info_.width), bits,
                         gray_ ? BPP_GRAY : 24, ORDER_BGR, ORDER_BGR, info_.colors.data(), nullptr);
    if (status != OK) throw Failure(StatusText(status));
    row = row_.data();
  }
  jpeg_compress_struct* const jpeg = &state_.jpeg;
  if (!GuardJpeg(state_.error, [jpeg, row] {
        auto one = const_cast<JSAMPROW>(row);  // read only
        jpeg_write_scanlines(jpeg, &one, 1);
      })) {
    Fail();
  }
}

void JpegWriter::Finish() {
  jpeg_compress_struct* const jpeg = &state_.jpeg;
  if (!GuardJpeg(state_.error, [jpeg] { jpeg_finish_compress(jpeg); })) Fail();
  file_->Commit();
}

void JpegWriter::Fail() const {
  throw Failure("cannot write " + file_->Path() + ": " + state_.error.text);
}

}  // namespace vn::tool
