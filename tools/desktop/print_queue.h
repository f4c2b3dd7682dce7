// The system's printers: the queues of its print scheduler, through libcups. Everything here throws
// Failure, also where the program was built without that library.
#ifndef VNCORE_TOOLS_PRINT_QUEUE_H
#define VNCORE_TOOLS_PRINT_QUEUE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vn::tool {

// Paper that a queue has, upright, in millimetres.
struct QueuePaper {
  std::string name;                                 // the queue's own
  double width = 0, height = 0;                     // of the sheet
  double left = 0, top = 0, right = 0, bottom = 0;  // margins where it does not print
};

struct QueueSummary {
  std::string name, description;
  bool isDefault = false;
  std::string state;  // "idle", "printing", "stopped", "refuses jobs"
};

// All that the scheduler names; none is no failure.
std::vector<QueueSummary> ListQueues();

struct QueueJob {
  std::string title;
  std::string paper;  // QueuePaper's name
  int32_t copies = 1;
  bool mono = false;
};

class PrintQueue {
 public:
  // The queue of this name, also "queue/instance"; an empty name is the system's default.
  explicit PrintQueue(const std::string& name);
  PrintQueue(const PrintQueue&) = delete;
  PrintQueue& operator=(const PrintQueue&) = delete;
  ~PrintQueue();

  std::string Name() const;
  // Its usual resolution, the coarser of both directions; none where it does not say.
  std::optional<int32_t> DotsPerInch() const;
  QueuePaper UsualPaper() const;
  // The paper of about this size, in millimetres.
  QueuePaper PaperOf(double width, double height) const;
  std::vector<QueuePaper> Papers() const;

  // Sends a PDF file and returns the job's name, "office-12", by which the system's own programs know
  // it. A job whose file does not arrive whole is cancelled; so it is by a signal, which throws
  // Interruption.
  std::string Send(const std::string& path, const QueueJob& job) const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vn::tool

#endif
