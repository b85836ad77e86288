// The entry points of the server file, with C linkage, as clients and the registration tool
// find them by name in brindlewayProj.so: the four of an in-process server, and its version.
#pragma once

#include <cstdint>

#include <brindleway/export.h>

namespace brindlewayProj::server {
class ClassFactory;

// Result codes of the entry points, as the platform numbers them.
using HResult = std::int32_t;
inline constexpr HResult kOk = 0;
inline constexpr HResult kFalse = 1;
inline constexpr HResult kPointerError = static_cast<HResult>(0x80004003u);
inline constexpr HResult kClassNotAvailable = static_cast<HResult>(0x80040111u);
inline constexpr HResult kRegistrationFailed = static_cast<HResult>(0x80040201u);

// What the server file tells of itself: its version and names, as installers and file
// managers show them. Plain C layout; `size` lets a client check for fields added later.
struct VersionInfo {
  std::uint32_t size;            // sizeof(VersionInfo)
  std::uint16_t fileVersion[4];  // major, minor, patch, tweak: 1, 0, 0, 0
  std::uint16_t productVersion[4];
  const char* fileVersionText;  // as shown: "1.00"
  const char* productVersionText;
  const char* productName;  // "brindlewayProj"
  const char* internalName;
  const char* fileName;  // "brindlewayProj.so"
};
}  // namespace brindlewayProj::server

extern "C" {
// kOk when no object made by the factory is alive any more, otherwise kFalse.
BRINDLEWAY_API brindlewayProj::server::HResult DllCanUnloadNow();
// Hands out the factory of the class `classGuid` ("{...}", in any case) in `*factory`;
// kClassNotAvailable for another class, kPointerError for a null argument.
BRINDLEWAY_API brindlewayProj::server::HResult DllGetClassObject(
    const char* classGuid, brindlewayProj::server::ClassFactory** factory);
// Enters this file in the registry (see registry.h); kRegistrationFailed when the registry
// cannot be read or written.
BRINDLEWAY_API brindlewayProj::server::HResult DllRegisterServer();
// Takes this server's entries out of the registry; kRegistrationFailed as above.
BRINDLEWAY_API brindlewayProj::server::HResult DllUnregisterServer();
// The version block of this file; it stays valid while the file is loaded.
BRINDLEWAY_API const brindlewayProj::server::VersionInfo* DllGetVersionInfo();
}

// The entry points' types, for clients that look them up with dlsym.
namespace brindlewayProj::server {
using DllCanUnloadNowFn = decltype(&DllCanUnloadNow);
using DllGetClassObjectFn = decltype(&DllGetClassObject);
using DllRegisterServerFn = decltype(&DllRegisterServer);
using DllUnregisterServerFn = decltype(&DllUnregisterServer);
using DllGetVersionInfoFn = decltype(&DllGetVersionInfo);
}  // namespace brindlewayProj::server
