// The practical floor: map a DXF file and split it into (code, value) lines
// with memchr, storing nothing.   scan FILE [numbers | format | index | blocks | save OUT [N]]
//   numbers  also turns every real and integer value into a number
//   format   also writes each real as text again (shortest form)
//   index    also records where each record begins (offset, handle)
//   blocks   the same index without memchr: 64 bytes at a time as a bit mask
//            of line ends (SSE2, on every x86-64), one look at each code line
//   save     blocks, then writes the file to OUT from the map, in N + 1 ranges
//            with a few new bytes between them: the floor of N edits
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <emmintrin.h>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>
#include <vector>

static bool real(int c) {
  return (c >= 10 && c < 60) || (c >= 110 && c < 150) || (c >= 210 && c < 240) || (c >= 460 && c < 470) ||
         (c >= 1010 && c < 1060);
}
static bool integer(int c) {
  return (c >= 60 && c < 80) || (c >= 90 && c < 100) || (c >= 160 && c < 180) || (c >= 270 && c < 300) ||
         (c >= 370 && c < 390) || (c >= 400 && c < 410) || (c >= 420 && c < 430) || (c >= 440 && c < 460) ||
         (c >= 1060 && c < 1072);
}

struct Entry {
  size_t offset, handle;
};

static std::vector<Entry> blocks(const char* begin, size_t size) {
  std::vector<Entry> entries;
  const char* line = begin;
  bool value = false, handle = false;  // what the line that ends next holds
  size_t lines = 0;
  const auto ends = [&](const char* eol) {
    if (value) {
      if (handle) std::from_chars(line, eol, entries.back().handle, 16);
      handle = false;
    } else {
      const char* last = eol - (eol[-1] == '\r') - 1;
      if (last == line || last[-1] == ' ') {  // a code of one digit
        if (*last == '0') entries.push_back({size_t(line - begin), 0});
        handle = *last == '5' && !entries.empty();
      }
    }
    value = !value;
    line = eol + 1;
    ++lines;
  };
  const __m128i lf = _mm_set1_epi8('\n');
  size_t at = 0;
  for (; at + 64 <= size; at += 64) {
    unsigned long mask = 0;
    for (int k = 0; k < 4; ++k)
      mask |= static_cast<unsigned long>(
                  _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(begin + at) + k), lf)))
              << 16 * k;
    for (; mask; mask &= mask - 1) ends(begin + at + __builtin_ctzl(mask));
  }
  for (; at < size; ++at)
    if (begin[at] == '\n') ends(begin + at);
  printf("%zu lines, %zu indexed\n", lines, entries.size());
  return entries;
}

static bool save(const char* begin, size_t size, const char* out, size_t edits) {
  const auto entries = blocks(begin, size);
  std::vector<iovec> ranges;
  static char news[] = " 41\n1234.5678901234\n 41\n2345.6789012345\n";
  size_t from = 0;
  for (size_t k = 1; k <= edits; ++k) {
    const size_t to = entries[entries.size() * k / (edits + 1)].offset;
    ranges.push_back({const_cast<char*>(begin) + from, to - from});
    ranges.push_back({news, sizeof news - 1});
    from = to;
  }
  ranges.push_back({const_cast<char*>(begin) + from, size - from});
  const int fd = open(out, O_WRONLY | O_CREAT | O_TRUNC, 0644);
  for (size_t k = 0; k < ranges.size(); k += 1024)
    if (writev(fd, &ranges[k], int(std::min<size_t>(1024, ranges.size() - k))) < 0) return false;
  return close(fd) == 0;
}

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const std::string mode = argc > 2 ? argv[2] : "";
  const bool format = mode == "format", numbers = format || mode == "numbers", index = mode == "index";
  const int fd = open(argv[1], O_RDONLY);
  struct stat st;
  if (fd < 0 || fstat(fd, &st)) return 1;
  const size_t size = st.st_size;
  auto* p = static_cast<const char*>(mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0));
  if (p == MAP_FAILED) return 1;
  const char *const begin = p, *const end = p + size;
  if (mode == "blocks") return blocks(begin, size), 0;
  if (mode == "save" && argc > 3) return !save(begin, size, argv[3], argc > 4 ? atoi(argv[4]) : 0);
  std::vector<Entry> entries;
  size_t pairs = 0, records = 0, length = 0, digits = 0, reals = 0, formatted = 0;
  double sum = 0;
  while (p < end) {
    const char* const first = p;
    const char* eol = static_cast<const char*>(memchr(p, '\n', end - p));
    if (!eol) break;
    while (*p == ' ') ++p;
    int code = 0;
    for (; *p >= '0' && *p <= '9'; ++p) code = code * 10 + (*p - '0');
    const char* const value = eol + 1;
    eol = value < end ? static_cast<const char*>(memchr(value, '\n', end - value)) : nullptr;
    if (!eol) eol = end;
    const char* stop = eol;
    if (stop > value && stop[-1] == '\r') --stop;
    ++pairs;
    records += code == 0;
    length += stop - value;
    if (numbers && real(code)) {
      double d = 0;
      std::from_chars(value, stop, d);
      sum += d, ++digits, ++reals;
      if (format) {
        char text[32];
        formatted += std::to_chars(text, text + sizeof text, d).ptr - text;
      }
    } else if (numbers && integer(code)) {
      const char* v = value;
      while (v < stop && *v == ' ') ++v;
      long n = 0;
      std::from_chars(v, stop, n);
      sum += n, ++digits;
    }
    if (index && code == 0) entries.push_back({size_t(first - begin), 0});
    if (index && code == 5 && !entries.empty()) std::from_chars(value, stop, entries.back().handle, 16);
    p = eol + 1;
  }
  printf(
      "%zu pairs, %zu records, %zu value bytes, %zu numbers (%zu reals, sum %g), "
      "%zu bytes formatted, %zu indexed\n",
      pairs, records, length, digits, reals, sum, formatted, entries.size());
}
