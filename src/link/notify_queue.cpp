#include "src/link/notify_queue.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <mutex>

#include "src/base/main_thread.h"

namespace snmpmain::NotifyQueue {
namespace {

struct Queue {
    std::mutex mutex;
    std::array<NotificationRecord, kNotifyQueueSlots> slots;
    std::atomic<std::uint16_t> writeIndex{0};
    std::atomic<std::uint16_t> readIndex{0};
    std::atomic<bool> lost{false};
    int wakeDescriptor = -1;
};

Queue queue;

constexpr std::uint16_t Following(std::uint16_t index) {
    return index + 1 >= kNotifyQueueSlots ? std::uint16_t{0}
                                          : static_cast<std::uint16_t>(index + 1);
}

}  // namespace

int Open() {
    if (queue.wakeDescriptor < 0) {
        queue.wakeDescriptor = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    }
    return queue.wakeDescriptor < 0 ? -1 : 0;
}

void Put(const NotificationRecord& record) {
    {
        const std::lock_guard lock(queue.mutex);
        const std::uint16_t next = Following(queue.writeIndex);
        if (next == queue.readIndex) {
            queue.lost = true;
            return;
        }
        queue.slots[queue.writeIndex] = record;
        queue.writeIndex = next;
    }
    Wake();
}

bool TakeLost() {
    return queue.lost && queue.lost.exchange(false);
}

void Get(NotificationRecord& record) {
    AssertMainThread();
    const std::lock_guard lock(queue.mutex);
    record = queue.slots[queue.readIndex];
    queue.readIndex = Following(queue.readIndex);
}

bool Pending() {
    return queue.writeIndex != queue.readIndex;
}

const NotificationRecord& Front() {
    AssertMainThread();
    return queue.slots[queue.readIndex];
}

void Reset() {
    const std::lock_guard lock(queue.mutex);
    queue.writeIndex = 0;
    queue.readIndex = 0;
}

int WakeDescriptor() {
    return queue.wakeDescriptor;
}

void Wake() {
    if (queue.wakeDescriptor >= 0) {
        ::eventfd_write(queue.wakeDescriptor, 1);
    }
}

void AcknowledgeWake() {
    eventfd_t puts = 0;
    ::eventfd_read(queue.wakeDescriptor, &puts);
}

}  // namespace snmpmain::NotifyQueue
