#include "runtime/pictures.h"

#include "base/current.h"
#include "base/text.h"
#include "runtime/runtime.h"

namespace torva::runtime {

Result<std::string> pictureOf(KdModuleHandle library, const std::wstring& name) {
  const Runtime* runtime = Current<Runtime>::get();
  const ResourceArchive* archive = runtime ? runtime->resources.archive(library) : nullptr;
  if (!archive) return fail(ErrorCode::notApplicable, "no resource library");
  return archive->picture(utf8FromWide(name));
}

}  // namespace torva::runtime
