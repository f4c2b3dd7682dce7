#include "tools/formats/pnm_reader.h"

#include <algorithm>

#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

constexpr uint32_t kMostPnmSide = 1'000'000, kMostSample = 0xFFFF;

bool IsSpace(uint8_t c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

}  // namespace

bool IsPnm(const InputFile& file) {
  const uint8_t* const head = file.Head();
  return file.HeadCount() >= 3 && head[0] == 'P' && head[1] >= '1' && head[1] <= '6' &&
         (IsSpace(head[2]) || head[2] == '#');
}

PnmReader::PnmReader(std::unique_ptr<InputFile> file, const ReadOptions&) : file_(std::move(file)) {
  Next();
  const int kind = Next() - '1';
  const int channels = kind % 3;  // 0: bits
  digits_ = kind < 3;
  info_.width = static_cast<int32_t>(Number(kMostPnmSide));
  info_.height = static_cast<int32_t>(Number(kMostPnmSide));
  if (channels > 0) most_ = Number(kMostSample);
  if (most_ == 0) Fail("no range of samples");
  info_.bits = channels == 0 ? 1 : channels == 1 ? 8 : 24;
  RequirePossibleSize(file_->Path(), info_.width, info_.height, info_.bits);
  const char* const kNames[] = {"PBM", "PGM", "PPM"};
  info_.facts.format = kNames[channels];
  info_.facts.model = channels == 2 ? "RGB" : "gray";
  info_.facts.sampleBits = channels == 0 ? 1 : most_ > 255 ? 16 : 8;
  if (channels == 0) info_.colors = {{255, 255, 255, 0}, {0, 0, 0, 0}};
  if (channels == 1) info_.colors = GrayRamp(256);
  const auto width = static_cast<size_t>(info_.width);
  if (channels) samples_.resize(width * (channels == 2 ? 3 : 1));
  if (channels && !digits_) bytes_.resize(samples_.size() * (most_ > 255 ? 2 : 1));
}

uint8_t PnmReader::Next() {
  uint8_t byte = ' ';
  if (file_->ReadSome(&byte, 1) == 0) {
    if (ended_ || file_->HasError()) Fail(file_->ErrorText());
    ended_ = true;
  }
  return byte;
}

uint8_t PnmReader::NextOfText() {
  uint8_t c = Next();
  if (c != '#') return c;
  while (c != '\n' && c != '\r')
    c = Next();
  return c;
}

uint8_t PnmReader::NextAfterSpace() {
  uint8_t c = NextOfText();
  while (IsSpace(c))
    c = NextOfText();
  return c;
}

uint32_t PnmReader::Number(uint32_t most) {
  uint32_t number = 0;
  uint8_t c = NextAfterSpace();
  if (c < '0' || c > '9') Fail("not a number where one belongs");
  for (; c >= '0' && c <= '9'; c = NextOfText()) {
    number = number * 10 + (c - uint32_t{'0'});
    if (number > most) Fail("a number is too large");
  }
  if (!IsSpace(c)) Fail("not a number where one belongs");
  return number;
}

void PnmReader::ReadBytes(void* to, size_t count) {
  if (!file_->Read(to, count)) Fail(file_->ErrorText());
}

void PnmReader::ReadBits(uint8_t* row) {
  const auto width = static_cast<size_t>(info_.width);
  if (!digits_) return ReadBytes(row, (width + 7) / 8);
  PixelWriter<1> writer(row);
  for (size_t x = 0; x < width; ++x) {
    const uint8_t bit = NextAfterSpace();
    if (bit != '0' && bit != '1') Fail("not a bit where one belongs");
    writer.Put(bit - uint32_t{'0'});
  }
  writer.Finish();
}

void PnmReader::ReadSamples() {
  const auto level = [most = most_](uint32_t sample) {
    return static_cast<uint8_t>((std::min(sample, most) * 255 + most / 2) / most);
  };
  if (digits_) {
    for (uint8_t& sample : samples_)
      sample = level(Number(most_));
    return;
  }
  ReadBytes(bytes_.data(), bytes_.size());
  if (most_ > 255) {
    for (size_t i = 0; i < samples_.size(); ++i)
      samples_[i] = level(bytes_[2 * i] * 256u + bytes_[2 * i + 1]);
  } else if (most_ < 255) {
    std::transform(bytes_.begin(), bytes_.end(), samples_.begin(), level);
  } else {
    samples_ = bytes_;
  }
}

void PnmReader::ReadRow(uint8_t* row) {
  ++line_;
  if (info_.bits == 1) return ReadBits(row);
  ReadSamples();
  std::copy(samples_.begin(), samples_.end(), row);
  if (info_.bits == 8) return;
  for (size_t i = 0; i < samples_.size(); i += 3)
    std::swap(row[i], row[i + 2]);
}

void PnmReader::Fail(const char* text) const { throw Failure(file_->Path() + ": " + text); }

}  // namespace vn::tool
