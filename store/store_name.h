// Which engine a store name belongs to, and how a connection URI may be shown in messages.
#pragma once

#include <string>
#include <string_view>

namespace brindlewayProj::store {

// Whether `name` is a PostgreSQL connection URI (postgresql:// or postgres://, any case);
// every other name is a file path.
bool IsConnectionUri(std::string_view name);

// `uri` without its password, both the one after the user name and a password= parameter.
std::string WithoutPassword(std::string_view uri);

// `message` (a server's or libpq's words about `uri`) with the URI's password, wherever it
// stands, replaced by "****".
std::string ConcealPassword(std::string message, std::string_view uri);

}  // namespace brindlewayProj::store
