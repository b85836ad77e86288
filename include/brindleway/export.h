// What the library file brindlewayProj.so exports. It is built with every symbol hidden; the
// public classes and functions carry BRINDLEWAY_API, and the few members of those classes that
// only the component itself calls carry BRINDLEWAY_HIDDEN.
#pragma once

#define BRINDLEWAY_API __attribute__((visibility("default")))
#define BRINDLEWAY_HIDDEN __attribute__((visibility("hidden")))
