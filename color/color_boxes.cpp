// Variance-based splitting of a colour histogram.
#include "color/color_boxes.h"

#include <algorithm>
#include <utility>

namespace vn {
namespace {

uint32_t RedOf(uint32_t cell) { return cell >> 10; }
uint32_t GreenOf(uint32_t cell) { return cell >> 5 & 31; }
uint32_t BlueOf(uint32_t cell) { return cell & 31; }

uint32_t SquareOfDifference(uint32_t a, uint32_t b) { return (a - b) * (a - b); }

// A sum that wrapped can leave a box that holds colours with a weight of 0.
uint32_t DivisorOf(const ColorBox& box) { return std::max(box.Weight, 1u); }

void ComputeMeans(ColorBox* box) {
  box->MeanRed = box->SumRed / DivisorOf(*box);
  box->MeanGreen = box->SumGreen / DivisorOf(*box);
  box->MeanBlue = box->SumBlue / DivisorOf(*box);
}

void MeasureSums(const ColorHistogram& histogram, ColorBox* box) {
  box->Weight = box->SumRed = box->SumGreen = box->SumBlue = 0;
  for (uint32_t i = box->First; i < box->First + box->Count; ++i) {
    const uint32_t cell = histogram.list[i], weight = histogram.counts[cell];
    box->Weight += weight;
    box->SumRed += RedOf(cell) * weight;
    box->SumGreen += GreenOf(cell) * weight;
    box->SumBlue += BlueOf(cell) * weight;
  }
  ComputeMeans(box);
}

void MeasureVariances(const ColorHistogram& histogram, ColorBox* box) {
  uint32_t red = 0, green = 0, blue = 0;
  for (uint32_t i = box->First; i < box->First + box->Count; ++i) {
    const uint32_t cell = histogram.list[i], weight = histogram.counts[cell];
    red += SquareOfDifference(RedOf(cell), box->MeanRed) * weight;
    green += SquareOfDifference(GreenOf(cell), box->MeanGreen) * weight;
    blue += SquareOfDifference(BlueOf(cell), box->MeanBlue) * weight;
  }
  box->VarianceRed = red / DivisorOf(*box);
  box->VarianceGreen = green / DivisorOf(*box);
  box->VarianceBlue = blue / DivisorOf(*box);
  box->VarianceTotal = box->VarianceRed + box->VarianceGreen + box->VarianceBlue;
}

// Moves the colours at or below the pivot to the front of the stretch and returns the end of that
// part. The colour where the two fronts meet is never compared: it falls to the upper part.
template <class Component>
uint32_t Partition(uint32_t* list, uint32_t first, uint32_t count, uint32_t pivot,
                   Component component) {
  uint32_t low = first, high = first + count - 1;
  while (low < high) {
    while (low < high && component(list[low]) <= pivot)
      ++low;
    while (low < high && component(list[high]) > pivot)
      --high;
    if (low < high) std::swap(list[low++], list[high--]);
  }
  return low;
}

// Partitions along the axis of greatest variance; ties go to red, then to green.
uint32_t PartitionBox(uint32_t* list, const ColorBox& box) {
  const bool blueLeads = box.VarianceBlue > box.VarianceGreen;
  if (box.VarianceRed >= (blueLeads ? box.VarianceBlue : box.VarianceGreen)) {
    return Partition(list, box.First, box.Count, box.MeanRed, RedOf);
  }
  if (blueLeads) return Partition(list, box.First, box.Count, box.MeanBlue, BlueOf);
  return Partition(list, box.First, box.Count, box.MeanGreen, GreenOf);
}

// Splits `box` into itself and `upper`. The half of fewer colours is measured, and what the parent
// had more belongs to the other.
void Split(const ColorHistogram& histogram, ColorBox* box, ColorBox* upper) {
  const ColorBox parent = *box;
  upper->First = PartitionBox(histogram.list, parent);
  upper->Count = parent.First + parent.Count - upper->First;
  box->Count = upper->First - parent.First;
  ColorBox* measured = box->Count < upper->Count ? box : upper;
  ColorBox* derived = measured == box ? upper : box;
  MeasureSums(histogram, measured);
  derived->Weight = parent.Weight - measured->Weight;
  derived->SumRed = parent.SumRed - measured->SumRed;
  derived->SumGreen = parent.SumGreen - measured->SumGreen;
  derived->SumBlue = parent.SumBlue - measured->SumBlue;
  ComputeMeans(derived);
  MeasureVariances(histogram, box);
  MeasureVariances(histogram, upper);
}

// The box to split next: the earliest of the greatest variance, or null. A single colour can show
// variance only through sums that wrapped, and cannot be split.
ColorBox* BoxToSplit(ColorBox* boxes, uint32_t count) {
  ColorBox* best = nullptr;
  for (ColorBox* box = boxes; box < boxes + count; ++box) {
    const uint32_t least = best ? best->VarianceTotal : 0;
    if (box->VarianceTotal > least && box->Count > 1) best = box;
  }
  return best;
}

}  // namespace

uint32_t SplitIntoBoxes(const ColorHistogram& histogram, ColorBox* boxes, uint32_t most) {
  boxes[0] = {};
  boxes[0].Count = histogram.listed;
  MeasureSums(histogram, &boxes[0]);
  MeasureVariances(histogram, &boxes[0]);
  uint32_t count = 1;
  for (; count < most; ++count) {
    ColorBox* box = BoxToSplit(boxes, count);
    if (!box) break;
    Split(histogram, box, &boxes[count]);
  }
  return count;
}

}  // namespace vn
