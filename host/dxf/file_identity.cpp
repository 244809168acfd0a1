#include "dxf/file_identity.h"

#include <sys/stat.h>

namespace torva::dxf {
namespace {

FileIdentity identityFrom(const struct stat& status) {
  return {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec,
          status.st_mtim.tv_nsec};
}

}  // namespace

std::optional<FileIdentity> identityOf(int descriptor) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return std::nullopt;
  return identityFrom(status);
}

std::optional<FileIdentity> identityOf(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return identityFrom(status);
}

}  // namespace torva::dxf
