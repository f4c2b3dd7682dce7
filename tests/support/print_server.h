// A print scheduler of a test's own; see print_server.sh.
#ifndef VNCORE_TESTS_PRINT_SERVER_H
#define VNCORE_TESTS_PRINT_SERVER_H

#include <unistd.h>

#include <cstdio>
#include <string>

#include "tests/support/temporary_folder.h"

namespace vn::test {

class PrintServer {
 public:
  // This process and its children print there from now on.
  PrintServer()
      : process_(popen(("exec sh '" VNCORE_PRINT_SERVER "' '" + folder_.Path() + "' >'" +
                        folder_.File("log") + "' 2>&1")
                           .c_str(),
                       "w")) {
    setenv("CUPS_SERVER", folder_.File("socket").c_str(), 1);
    for (int i = 0; i < 2000 && !Exists("ready") && !Exists("over"); ++i)
      usleep(10000);
    works_ = Exists("ready");
  }
  PrintServer(const PrintServer&) = delete;
  PrintServer& operator=(const PrintServer&) = delete;
  ~PrintServer() {
    if (process_) pclose(process_);
  }

  bool works() const { return works_; }
  std::string Log() const { return ReadFile(folder_.File("log")); }
  // What a job left, ".pdf" or ".told", once it has.
  std::string JobFile(int number, const std::string& extension) const {
    const std::string name = "jobs/" + std::to_string(number);
    for (int i = 0; i < 2000 && !Exists(name + ".pdf"); ++i)
      usleep(10000);
    EXPECT_TRUE(Exists(name + ".pdf"));
    return folder_.File(name + extension);
  }

 private:
  bool Exists(const std::string& name) const {
    return access(folder_.File(name).c_str(), F_OK) == 0;
  }

  const TemporaryFolder folder_;
  std::FILE* const process_;
  bool works_ = false;
};

}  // namespace vn::test

#endif
