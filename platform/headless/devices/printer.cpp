// The printer: its contexts, the life of their documents, and the profile that names it.
#include <strings.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "platform/headless/base/faults.h"
#include "platform/headless/devices/context.h"

namespace headless {
namespace {

struct Printer {
  std::string device;  // "name,driver,port"; empty: there is none
  Headless_Display page{};
  int32_t colors = 0;

  std::string Name() const { return device.substr(0, device.find(',')); }
};

struct Sink {
  Headless_PrintSink call = nullptr;
  void* data = nullptr;
};

Printer& InstalledPrinter() {
  static auto* printer = new Printer;
  return *printer;
}

Sink& PageSink() {
  static Sink sink;
  return sink;
}

// A device of its own for each context: its surface is the page in work.
std::shared_ptr<Device> MakePage(const Headless_Display& page, int32_t colors) {
  std::shared_ptr<Device> made = MakeDevice(page);
  if (made) made->colors = colors;
  return made;
}

class PrinterContext : public Context {
 public:
  explicit PrinterContext(std::shared_ptr<Device> page) : Context(OBJ_DC, std::move(page)) {}
  ~PrinterContext() override {
    if (open_) Abort();
  }

  void BindTo(HDC self) { self_ = self; }

  int StartDocument(const char* name) {
    if (open_) return SP_ERROR;
    document_ = name ? name : "";
    pages_ = 0;
    open_ = true;
    return 1;
  }
  // White paper: all bits are set in the last colour of every table, and in white itself.
  int StartPage() {
    if (!open_ || onPage_) return SP_ERROR;
    std::fill(device().pixels.begin(), device().pixels.end(), uint8_t{0xFF});
    onPage_ = true;
    return 1;
  }
  int EndPage() {
    if (!onPage_) return SP_ERROR;
    onPage_ = false;
    ++pages_;
    return Tell(HEADLESS_PRINT_PAGE) ? 1 : SP_ERROR;
  }
  // A page that is still open counts.
  int EndDocument() {
    if (!open_) return SP_ERROR;
    const bool page = !onPage_ || EndPage() > 0;
    open_ = false;
    return Tell(HEADLESS_PRINT_DONE) && page ? 1 : SP_ERROR;
  }
  int Abort() {
    if (!open_) return SP_ERROR;
    open_ = onPage_ = false;
    return Tell(HEADLESS_PRINT_ABORTED) ? 1 : SP_ERROR;
  }

 private:
  bool Tell(Headless_PrintEvent event) {
    const Sink& sink = PageSink();
    if (!sink.call) return true;
    Headless_Page page{self_, document_.c_str(), pages_, device().traits.dotsPerInch, {}};
    if (event == HEADLESS_PRINT_PAGE) Headless_GetSurface(self_, &page.surface);
    return sink.call(sink.data, event, &page) != 0;
  }

  HDC self_ = nullptr;
  std::string document_;
  int32_t pages_ = 0;
  bool open_ = false;
  bool onPage_ = false;
};

template <class Call>
int WithPrinter(HDC context, Call call) {
  return Enter<int>(SP_ERROR, [&] {
    auto* found = Find<PrinterContext>(context);
    return found ? call(*found) : SP_ERROR;
  });
}

bool SameWord(const char* a, const char* b) { return a && b && strcasecmp(a, b) == 0; }

}  // namespace
}  // namespace headless

using namespace headless;

int32_t Headless_SetPrinter(const Headless_Printer* printer) {
  return Enter<int32_t>(0, [&]() -> int32_t {
    if (!printer) {
      InstalledPrinter() = {};
      return 1;
    }
    if (!MakePage(printer->page, printer->colors)) return 0;
    InstalledPrinter() = {printer->device, printer->page, printer->colors};
    return 1;
  });
}

void Headless_SetPrintSink(Headless_PrintSink sink, void* data) {
  const std::lock_guard lock(GdiMutex());
  PageSink() = {sink, data};
}

DWORD GetProfileStringA(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR buffer, DWORD size) {
  if (!buffer || size == 0) return 0;
  const std::lock_guard lock(GdiMutex());
  const bool asked = SameWord(section, "windows") && SameWord(key, "device");
  const char* value = fallback ? fallback : "";
  if (asked && !InstalledPrinter().device.empty()) value = InstalledPrinter().device.c_str();
  const size_t length = std::min<size_t>(std::strlen(value), size - 1);
  std::memcpy(buffer, value, length);
  buffer[length] = '\0';
  return static_cast<DWORD>(length);
}

// The printer answers to its name, whatever is said of driver and port; "DISPLAY" is the screen.
HDC CreateDCA(LPCSTR driver, LPCSTR device, LPCSTR, const DEVMODEA*) {
  if (SameWord(driver, "DISPLAY")) return GetDC(nullptr);
  return Enter<HDC>(nullptr, [&]() -> HDC {
    const Printer& printer = InstalledPrinter();
    if (printer.device.empty() || !SameWord(device, printer.Name().c_str())) return nullptr;
    std::shared_ptr<Device> page = MakePage(printer.page, printer.colors);
    if (!page) return nullptr;
    const auto context = AddNew<HDC>(std::make_unique<PrinterContext>(std::move(page)));
    if (context) Find<PrinterContext>(context)->BindTo(context);
    return context;
  });
}

int StartDocA(HDC context, const DOCINFOA* document) {
  return WithPrinter(context, [&](PrinterContext& printer) {
    if (!document || FailsNow(HEADLESS_OBJECT)) return SP_ERROR;
    return printer.StartDocument(document->lpszDocName);
  });
}

int StartPage(HDC context) {
  return WithPrinter(context, [](PrinterContext& printer) { return printer.StartPage(); });
}

int EndPage(HDC context) {
  return WithPrinter(context, [](PrinterContext& printer) { return printer.EndPage(); });
}

int EndDoc(HDC context) {
  return WithPrinter(context, [](PrinterContext& printer) { return printer.EndDocument(); });
}

int AbortDoc(HDC context) {
  return WithPrinter(context, [](PrinterContext& printer) { return printer.Abort(); });
}
