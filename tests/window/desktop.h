// A desktop of its own for a window under test: a virtual X server, with keys and a mouse as a user
// has them.
#ifndef VNCORE_TESTS_DESKTOP_H
#define VNCORE_TESTS_DESKTOP_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vn::test {

class Desktop {
 public:
  Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  ~Desktop();  // clients that are left lose their display

  // False where no server can be started.
  bool works() const;
  // ":1"
  const std::string& name() const { return name_; }

  // Waits for a window and gives it the keys. False when none comes.
  bool FindWindow();
  // What the window shows, 0xRRGGBB, rows from the top; empty when it is gone.
  std::vector<uint32_t> Pixels() const;
  // A key goes down and up: "n", "Escape", "plus".
  void Press(const std::string& key);
  void PressWithControl(const std::string& key);
  // Positions in the window.
  void MoveMouse(int x, int y);
  void HoldButton(unsigned button, bool down);
  // A file is dragged onto the window from another program and let go. False when the window does
  // not take it.
  bool Drop(const std::string& path);
  // What a window manager sends for its close button.
  void AskToClose();

 private:
  unsigned long Atom(const char* name) const;
  void HoldKey(const std::string& key, bool down);
  // A client message to the window.
  void Send(const char* type, const std::vector<long>& data);
  // To an X event that asks for a selection.
  void Answer(void* request, const std::string& bytes);

  struct Server;
  std::unique_ptr<Server> server_;
  std::string name_;
};

}  // namespace vn::test

#endif
