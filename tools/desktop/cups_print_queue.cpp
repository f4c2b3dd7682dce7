#include <cups/cups.h>

#include <algorithm>
#include <cmath>
#include <fstream>

#include "tools/desktop/print_queue.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {
namespace {

constexpr double kPerMillimetre = 100;  // libcups counts in hundredths

// What the scheduler said last, behind what was tried.
[[noreturn]] void Fail(const std::string& what) {
  throw Failure(what + ": " + cupsLastErrorString());
}

// Options of a job, the later of one name in place of the earlier.
class Options {
 public:
  Options() = default;
  Options(const Options&) = delete;
  Options& operator=(const Options&) = delete;
  ~Options() { cupsFreeOptions(count_, options_); }

  void Set(const char* name, const std::string& value) {
    count_ = cupsAddOption(name, value.c_str(), count_, &options_);
  }
  void Drop(const char* name) { count_ = cupsRemoveOption(name, count_, &options_); }
  int count() const { return count_; }
  cups_option_t* data() const { return options_; }

 private:
  int count_ = 0;
  cups_option_t* options_ = nullptr;
};

QueuePaper PaperOfSize(const cups_size_t& size) {
  const auto millimetres = [](int hundredths) { return hundredths / kPerMillimetre; };
  return {size.media,
          millimetres(size.width),
          millimetres(size.length),
          millimetres(size.left),
          millimetres(size.top),
          millimetres(size.right),
          millimetres(size.bottom)};
}

std::string OptionOf(const cups_dest_t& queue, const char* name) {
  const char* const value = cupsGetOption(name, queue.num_options, queue.options);
  return value ? value : "";
}

std::string StateOf(const cups_dest_t& queue) {
  if (OptionOf(queue, "printer-is-accepting-jobs") == "false") return "refuses jobs";
  const std::string state = OptionOf(queue, "printer-state");
  if (state == "4") return "printing";
  return state == "5" ? "stopped" : "idle";
}

std::string FullName(const cups_dest_t& queue) {
  return queue.instance ? std::string(queue.name) + "/" + queue.instance : queue.name;
}

cups_dest_t* FindQueue(const std::string& name) {
  const size_t slash = name.find('/');
  const std::string queue = name.substr(0, slash);
  const std::string instance = slash == name.npos ? "" : name.substr(slash + 1);
  return cupsGetNamedDest(CUPS_HTTP_DEFAULT, name.empty() ? nullptr : queue.c_str(),
                          instance.empty() ? nullptr : instance.c_str());
}

}  // namespace

std::vector<QueueSummary> ListQueues() {
  cups_dest_t* queues = nullptr;
  const int count = cupsGetDests2(CUPS_HTTP_DEFAULT, &queues);
  std::vector<QueueSummary> list;
  for (int i = 0; i < count; ++i) {
    const cups_dest_t& queue = queues[i];
    list.push_back(
        {FullName(queue), OptionOf(queue, "printer-info"), queue.is_default != 0, StateOf(queue)});
  }
  cupsFreeDests(count, queues);
  // A scheduler without queues says that there are none.
  if (list.empty() && cupsLastError() > IPP_STATUS_OK_EVENTS_COMPLETE &&
      cupsLastError() != IPP_STATUS_ERROR_NOT_FOUND) {
    Fail(std::string("no print scheduler answers at ") + cupsServer());
  }
  return list;
}

struct PrintQueue::State {
  ~State() {
    cupsFreeDestInfo(info);
    cupsFreeDests(1, queue);
  }

  std::optional<QueuePaper> Named(const char* media) const {
    cups_size_t size;
    if (!cupsGetDestMediaByName(CUPS_HTTP_DEFAULT, queue, info, media, CUPS_MEDIA_FLAGS_DEFAULT,
                                &size)) {
      return std::nullopt;
    }
    return PaperOfSize(size);
  }
  ipp_attribute_t* Default(const char* option) const {
    return cupsFindDestDefault(CUPS_HTTP_DEFAULT, queue, info, option);
  }
  void SettleOptions(const QueueJob& job, Options& options) const;
  void SendDocument(int id, const std::string& path, const QueueJob& job) const;

  cups_dest_t* queue = nullptr;
  cups_dinfo_t* info = nullptr;
};

PrintQueue::PrintQueue(const std::string& name) : state_(new State) {
  state_->queue = FindQueue(name);
  if (!state_->queue) {
    ListQueues();  // the better reason, where there is no scheduler
    throw Failure(name.empty() ? "there is no default printer"
                               : "there is no printer " + name + " (vncore print --list)");
  }
  state_->info = cupsCopyDestInfo(CUPS_HTTP_DEFAULT, state_->queue);
  if (!state_->info) Fail("the printer " + Name() + " does not say what it can");
}

PrintQueue::~PrintQueue() = default;

std::string PrintQueue::Name() const { return FullName(*state_->queue); }

std::optional<int32_t> PrintQueue::DotsPerInch() const {
  ipp_attribute_t* const told = state_->Default("printer-resolution");
  if (!told || ippGetValueTag(told) != IPP_TAG_RESOLUTION) return std::nullopt;
  int y = 0;
  ipp_res_t units = IPP_RES_PER_INCH;
  const int x = ippGetResolution(told, 0, &y, &units);
  const double dots = std::min(x, y) * (units == IPP_RES_PER_CM ? 2.54 : 1);
  if (dots < 1) return std::nullopt;
  return static_cast<int32_t>(std::lround(dots));
}

QueuePaper PrintQueue::UsualPaper() const {
  // What the user has set for the queue goes before what the queue has.
  std::string media = OptionOf(*state_->queue, "media");
  if (media.empty()) {
    ipp_attribute_t* const told = state_->Default("media");
    const char* const name = told ? ippGetString(told, 0, nullptr) : nullptr;
    if (name) media = name;
  }
  if (!media.empty()) {
    if (const auto paper = state_->Named(media.c_str())) return *paper;
  }
  cups_size_t size;
  if (cupsGetDestMediaDefault(CUPS_HTTP_DEFAULT, state_->queue, state_->info,
                              CUPS_MEDIA_FLAGS_DEFAULT, &size)) {
    return PaperOfSize(size);
  }
  throw Failure("the printer " + Name() + " does not say what paper it has; give --paper");
}

QueuePaper PrintQueue::PaperOf(double width, double height) const {
  cups_size_t size;
  const auto hundredths = [](double side) {
    return static_cast<int>(std::lround(side * kPerMillimetre));
  };
  if (cupsGetDestMediaBySize(CUPS_HTTP_DEFAULT, state_->queue, state_->info, hundredths(width),
                             hundredths(height), CUPS_MEDIA_FLAGS_DEFAULT, &size)) {
    return PaperOfSize(size);
  }
  throw Failure("the printer " + Name() + " has no such paper (--list --printer " + Name() +
                " names what it has)");
}

std::vector<QueuePaper> PrintQueue::Papers() const {
  std::vector<QueuePaper> papers;
  const int count = cupsGetDestMediaCount(CUPS_HTTP_DEFAULT, state_->queue, state_->info,
                                          CUPS_MEDIA_FLAGS_DEFAULT);
  for (int i = 0; i < count; ++i) {
    cups_size_t size;
    if (cupsGetDestMediaByIndex(CUPS_HTTP_DEFAULT, state_->queue, state_->info, i,
                                CUPS_MEDIA_FLAGS_DEFAULT, &size)) {
      papers.push_back(PaperOfSize(size));
    }
  }
  return papers;
}

// The user's own options for the queue, with the job's over them.
void PrintQueue::State::SettleOptions(const QueueJob& job, Options& options) const {
  for (int i = 0; i < queue->num_options; ++i)
    options.Set(queue->options[i].name, queue->options[i].value);
  for (const char* const paper : {"PageSize", "PageRegion", "media-col"})
    options.Drop(paper);
  options.Set("media", job.paper);
  options.Set("copies", std::to_string(job.copies));
  // The pages are the paper's size already.
  options.Set("print-scaling", "none");
  if (job.mono) options.Set("print-color-mode", "monochrome");
}

void PrintQueue::State::SendDocument(int id, const std::string& path, const QueueJob& job) const {
  if (cupsStartDestDocument(CUPS_HTTP_DEFAULT, queue, info, id, job.title.c_str(), CUPS_FORMAT_PDF,
                            0, nullptr, 1) != HTTP_STATUS_CONTINUE) {
    Fail("the printer does not take the job");
  }
  std::ifstream file(path, std::ios::binary);
  char buffer[1 << 16];
  while (file.read(buffer, sizeof buffer), file.gcount() > 0) {
    ThrowIfInterrupted();
    if (cupsWriteRequestData(CUPS_HTTP_DEFAULT, buffer, static_cast<size_t>(file.gcount())) !=
        HTTP_STATUS_CONTINUE) {
      Fail("the printer does not take the job");
    }
  }
  if (file.bad()) throw Failure("cannot read " + path);
  ThrowIfInterrupted();
  if (cupsFinishDestDocument(CUPS_HTTP_DEFAULT, queue, info) > IPP_STATUS_OK_EVENTS_COMPLETE)
    Fail("the printer does not take the job");
}

std::string PrintQueue::Send(const std::string& path, const QueueJob& job) const {
  Options options;
  state_->SettleOptions(job, options);
  int id = 0;
  if (cupsCreateDestJob(CUPS_HTTP_DEFAULT, state_->queue, state_->info, &id, job.title.c_str(),
                        options.count(), options.data()) > IPP_STATUS_OK_EVENTS_COMPLETE) {
    Fail("the printer " + Name() + " does not take the job");
  }
  try {
    state_->SendDocument(id, path, job);
  } catch (...) {
    cupsCancelDestJob(CUPS_HTTP_DEFAULT, state_->queue, id);
    throw;
  }
  return std::string(state_->queue->name) + "-" + std::to_string(id);
}

}  // namespace vn::tool
