// The local time as the texts that console messages and notifications carry.
#pragma once

namespace snmpmain {

// The local time as "[%H:%M:%S]", in a static 16-byte buffer that the next call overwrites. Main
// thread only.
const char* ClockStamp();

// The local time as "%a %b %e %H:%M:%S %Z %Y", in a static 40-byte buffer per thread that the
// thread's next call overwrites. Any thread.
const char* DateTimeString();

// Takes over a time zone that the machine has changed to. Any thread.
void RereadTimeZone();

}  // namespace snmpmain
