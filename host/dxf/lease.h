#pragma once

#include <cstddef>
#include <optional>

namespace torva::dxf {

/// A read lease on a mapped file. When another program asks to change the file, the kernel makes it wait and tells us; the
/// map's pages are then replaced by a copy in memory at the same address, and the lease is given back.
///
/// The kernel waits for us for some time only (/proc/sys/fs/lease-break-time, 45 seconds), which a program that is stopped
/// by a debugger or a shell can miss.
///
/// The kernel speaks through a real-time signal (SIGRTMIN + 3), whose handler is installed when the first lease is taken.
/// Any thread that does not block it may be interrupted, whichever took the lease; others can go on reading the map
/// meanwhile.
class Lease {
 public:
  /// Takes a lease on a file opened for reading, of which `size` bytes are mapped at `address`.
  /// Nothing when the kernel grants none. Descriptor and map must outlive the lease.
  static std::optional<Lease> take(int descriptor, void* address, std::size_t size);

  Lease(Lease&& other) noexcept;
  Lease& operator=(Lease&&) = delete;
  ~Lease();

 private:
  explicit Lease(int slot) : m_slot(slot) {}
  int m_slot;  // in the table that the signal handler reads; -1 after a move
};

}  // namespace torva::dxf
