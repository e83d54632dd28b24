#include "src/base/system_log.h"

#include <syslog.h>

#include <cstdarg>

namespace snmpmain {

static_assert((LOG_USER | LOG_EMERG) == 8);

void SystemLog(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    ::vsyslog(LOG_USER | LOG_EMERG, format, arguments);
    va_end(arguments);
}

}  // namespace snmpmain
