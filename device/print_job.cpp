#include "device/print_job.h"

#include <cstring>

namespace vn {
namespace {

constexpr uint32_t kProfileBytes = 81;  // of the profile's "name,driver,port"

// Ends a part at its comma and returns the next one, which is empty where there is none.
char* CutAtComma(char* part) {
  char* const comma = std::strchr(part, ',');
  if (!comma) return part + std::strlen(part);
  *comma = '\0';
  return comma + 1;
}

HDC CreateDefaultPrinterDC() {
  char name[kProfileBytes] = "";
  GetProfileStringA("windows", "device", "", name, kProfileBytes);
  char* const driver = CutAtComma(name);
  char* const port = CutAtComma(driver);
  return CreateDCA(driver, name, port, nullptr);
}

}  // namespace

HDC OpenPrintJob() {
  const HDC context = CreateDefaultPrinterDC();
  if (!context) return nullptr;
  DOCINFOA document{};
  document.cbSize = sizeof document;
  document.lpszDocName = "VORN GRAPHIC";
  if (StartDocA(context, &document) <= 0) {
    DeleteDC(context);
    return nullptr;
  }
  StartPage(context);
  return context;
}

bool FinishPrintJob(HDC context) {
  const bool pageEnded = EndPage(context) > 0;
  const bool documentEnded = EndDoc(context) > 0;
  DeleteDC(context);
  return pageEnded && documentEnded;
}

void AbortPrintJob(HDC context) {
  AbortDoc(context);
  DeleteDC(context);
}

}  // namespace vn
