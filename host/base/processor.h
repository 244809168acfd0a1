#pragma once

namespace torva {

/// Runs work that goes over a whole drawing's text, a tenth faster than a plain call does: it is compiled twice, together
/// with all that it calls, for any processor and for those with AVX2 and BMI, as nearly all are. Which one is run is found
/// out when the library is loaded. Sanitizers must not be asked before they have begun, so that their build has the first
/// one alone.
/// @param work a lambda without arguments; what it gives is returned
template <class Work>
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__)
[[gnu::target_clones("default", "arch=x86-64-v3"), gnu::flatten]]
#endif
static auto
runForProcessor(const Work& work) {
  return work();
}

}  // namespace torva
