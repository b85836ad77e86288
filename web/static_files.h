// The storefront's files, compiled into the program from web/static/ at build time.
#pragma once

#include <span>
#include <string_view>

namespace brindlewayProj::web {

struct StaticFile {
  std::string_view name;  // "index.html"
  std::string_view bytes;
};

std::span<const StaticFile> StaticFiles();

}  // namespace brindlewayProj::web
