// The life of a print job, which is its device context.
#ifndef VNCORE_DEVICE_PRINT_JOB_H
#define VNCORE_DEVICE_PRINT_JOB_H

#include <vncore/vncore.h>

namespace vn {

// Opens the default printer, a document and its first page. Null when there is no printer or it
// takes no document; nothing is left open then.
HDC OpenPrintJob();

// Ends page and document and deletes the context. True when the printer took both ends.
bool FinishPrintJob(HDC context);

// Drops the document and deletes the context.
void AbortPrintJob(HDC context);

}  // namespace vn

#endif
