#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <utility>

namespace torva {

/// A long piece of work as others see it, mostly from another thread: how far it is, and whether it is still wanted.
class Watch {
 public:
  Watch() = default;
  /// @param onProgress called with the share done, by the thread that works
  explicit Watch(std::function<void(double)> onProgress) : m_onProgress(std::move(onProgress)) {}

  /// The share of the work that is done, 0 to 1; never falls.
  double share() const { return m_share.load(std::memory_order_relaxed); }
  /// Asks the work to end without a result. Work that is all but done may end with one all the same.
  void cancel() { m_isCancelled.store(true, std::memory_order_relaxed); }
  bool isCancelled() const { return m_isCancelled.load(std::memory_order_relaxed); }

 private:
  friend class Progress;

  bool goOn(double share) {
    m_share.store(std::max(share, this->share()), std::memory_order_relaxed);
    if (m_onProgress) m_onProgress(this->share());
    return !isCancelled();
  }

  std::atomic<double> m_share = 0;
  std::atomic<bool> m_isCancelled = false;
  const std::function<void(double)> m_onProgress;
};

/// How many bytes of a file are worked on between two looks at whether that is still wanted: too many to cost anything, too
/// few to wait for.
constexpr std::size_t kWatchedStretch = std::size_t{2} << 20;

/// The side of the work itself: a part of what a Watch sees, or nothing where nobody watches. The watch must outlive it.
class Progress {
 public:
  Progress() = default;
  // NOLINTNEXTLINE(google-explicit-constructor): a watch stands for the whole of its work
  Progress(Watch& watch) : m_watch(&watch) {}

  /// The part from where the work stands to the share `to` of this one.
  Progress upTo(double to) const {
    Progress part(*this);
    if (m_watch != nullptr) part.m_from = std::max(m_from, m_watch->share());
    part.m_to = m_from + to * (m_to - m_from);
    return part;
  }

  /// Says which share of this part is done, 0 to 1. @return whether the work is still wanted
  [[nodiscard]] bool goOn(double share) const {
    return m_watch == nullptr || m_watch->goOn(m_from + share * (m_to - m_from));
  }

 private:
  Watch* m_watch = nullptr;
  double m_from = 0, m_to = 1;
};

}  // namespace torva
