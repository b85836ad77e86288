// ReadDbPath: the store's path from brindlewayProj.ini beside the component. The reader knows
// no ini structure beyond two word searches: the first line holding "brindleway" opens the
// section, and the first later line holding "DbPath" is the key line.
#include <brindleway/brindleway.h>
#include <brindleway/hooks.h>
#include "platform/ascii.h"
#include "platform/paths.h"
#include "platform/text_file.h"
#include "store/store_name.h"

namespace brindlewayProj {

namespace {

// What follows the first "=" of the key line, or the whole line without one; blanks trimmed.
String KeyLineValue(const String& line) {
  const auto equals = line.find('=');
  return Trim(equals == String::npos ? line : line.substr(equals + 1));
}

// A network path ("\\server\..."), a drive path ("...:\...") or a connection URI stands as it
// is; anything else lies below the component's folder.
String ResolveAgainstAppPath(const String& value) {
  const bool absolute = value.starts_with("\\\\") || value.find(":\\") != String::npos ||
                        store::IsConnectionUri(value);
  return absolute ? value : platform::App::Path() + "\\" + value;
}

}  // namespace

// No failure path: a file that cannot be opened or read fails the caller.
String brindleway::ReadDbPath() {
  const String iniPath = platform::App::Path() + "\\" + platform::App::EXEName() + ".ini";
  if (platform::Dir(iniPath, 0).empty()) return String();

  platform::TextFile ini(iniPath);
  bool sectionFound = false;
  while (!sectionFound && !ini.Eof()) sectionFound = platform::ContainsIgnoringAsciiCase(ini.LineInput(), "brindleway");
  // The section line itself is not searched for the key; nothing closes the section.
  while (sectionFound && !ini.Eof()) {
    const String line = ini.LineInput();
    if (platform::ContainsIgnoringAsciiCase(line, "DbPath")) return ResolveAgainstAppPath(KeyLineValue(line));
  }
  return String();
}

}  // namespace brindlewayProj
