#include "dxf/lease.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace torva::dxf {
namespace {

enum class SlotState : int { unused, preparing, leased, copying };

// Read by the signal handler, which may touch nothing but lock-free atomics and what they guard.
struct Slot {
  std::atomic<SlotState> state = SlotState::unused;
  std::atomic<int> descriptor = -1;
  void* address = nullptr;
  std::size_t size = 0;
};
static_assert(std::atomic<SlotState>::is_always_lock_free && std::atomic<int>::is_always_lock_free);

std::array<Slot, 64> slots;

int leaseSignal() {
  return SIGRTMIN + 3;
}

/// Replaces a map by a copy of the file in memory. Calls only what a signal handler may call.
void copyIntoMemory(const Slot& slot) {
  void* memory = mmap(nullptr, slot.size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return;
  std::size_t done = 0;
  while (done < slot.size) {
    const ssize_t count =
        pread(slot.descriptor, static_cast<char*>(memory) + done, slot.size - done, static_cast<off_t>(done));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    done += static_cast<std::size_t>(count);
  }
  mprotect(memory, slot.size, PROT_READ);
  mremap(memory, slot.size, slot.size, MREMAP_MAYMOVE | MREMAP_FIXED, slot.address);
}

void onLeaseBreak(int, siginfo_t* info, void*) {
  const int keptErrno = errno;
  for (Slot& slot : slots) {
    if (slot.state.load() != SlotState::leased || slot.descriptor != info->si_fd) continue;
    auto expected = SlotState::leased;
    if (!slot.state.compare_exchange_strong(expected, SlotState::copying)) continue;
    copyIntoMemory(slot);
    fcntl(slot.descriptor, F_SETLEASE, F_UNLCK);
    slot.state.store(SlotState::leased);
  }
  errno = keptErrno;
}

bool installHandler() {
  struct sigaction former {};
  if (sigaction(leaseSignal(), nullptr, &former) != 0) return false;
  if ((former.sa_flags & SA_SIGINFO) == 0 && former.sa_handler != SIG_DFL) return false;  // somebody else's
  if ((former.sa_flags & SA_SIGINFO) != 0 && former.sa_sigaction != onLeaseBreak) return false;
  struct sigaction action {};
  action.sa_sigaction = onLeaseBreak;
  action.sa_flags = SA_SIGINFO | SA_RESTART;
  sigfillset(&action.sa_mask);
  return sigaction(leaseSignal(), &action, nullptr) == 0;
}

int takeSlot(int descriptor, void* address, std::size_t size) {
  for (std::size_t i = 0; i < slots.size(); ++i) {
    auto expected = SlotState::unused;
    if (!slots[i].state.compare_exchange_strong(expected, SlotState::preparing)) continue;
    slots[i].descriptor = descriptor;
    slots[i].address = address;
    slots[i].size = size;
    slots[i].state.store(SlotState::leased);
    return static_cast<int>(i);
  }
  return -1;
}

void giveBack(int slotNumber) {
  Slot& slot = slots[static_cast<std::size_t>(slotNumber)];
  fcntl(slot.descriptor, F_SETLEASE, F_UNLCK);
  auto expected = SlotState::leased;
  while (!slot.state.compare_exchange_weak(expected, SlotState::unused)) expected = SlotState::leased;
}

}  // namespace

std::optional<Lease> Lease::take(int descriptor, void* address, std::size_t size) {
  static const bool kHasHandler = installHandler();
  if (!kHasHandler) return std::nullopt;
  const int slot = takeSlot(descriptor, address, size);
  if (slot < 0) return std::nullopt;
  Lease lease(slot);
  if (fcntl(descriptor, F_SETSIG, leaseSignal()) != 0) return std::nullopt;
  // Without an owner the lease belongs to the thread that takes it, and nobody is told once that thread has ended.
  if (fcntl(descriptor, F_SETOWN, getpid()) != 0) return std::nullopt;
  if (fcntl(descriptor, F_SETLEASE, F_RDLCK) != 0) return std::nullopt;
  return lease;
}

Lease::Lease(Lease&& other) noexcept : m_slot(std::exchange(other.m_slot, -1)) {}

Lease::~Lease() {
  if (m_slot >= 0) giveBack(m_slot);
}

}  // namespace torva::dxf
