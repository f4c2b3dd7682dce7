// A build without libcups.
#include "tools/desktop/print_queue.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

[[noreturn]] void Fail() {
  throw Failure("this program was built without libcups and knows no printers");
}

}  // namespace

struct PrintQueue::State {};

std::vector<QueueSummary> ListQueues() { Fail(); }
PrintQueue::PrintQueue(const std::string&) { Fail(); }
PrintQueue::~PrintQueue() = default;
std::string PrintQueue::Name() const { Fail(); }
std::optional<int32_t> PrintQueue::DotsPerInch() const { Fail(); }
QueuePaper PrintQueue::UsualPaper() const { Fail(); }
QueuePaper PrintQueue::PaperOf(double, double) const { Fail(); }
std::vector<QueuePaper> PrintQueue::Papers() const { Fail(); }
std::string PrintQueue::Send(const std::string&, const QueueJob&) const { Fail(); }

}  // namespace vn::tool
